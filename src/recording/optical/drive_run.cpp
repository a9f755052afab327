#include "drive_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "drive_device.h"
#include "drive_facts.h"
#include "libburn.h"
#include "recorders/disc_operations.h"
#include "recorders/image_reading.h"
#include "recorders/progress.h"
#include "run_parts.h"
#include "sector_queue.h"
#include "win32/utf8.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

// Discs that cannot take a second session and stay readable in players.
constexpr std::array kPlayerProfiles{0x11, 0x14, 0x15, 0x1B, 0x2B};

// Discs that a drive can go through the motions of writing.
constexpr std::array kSimulatingProfiles{0x09, 0x0A, 0x11, 0x14, 0x15};

// Longer than libburn's thread rests before it ends when it has failed before the first sector.
constexpr std::chrono::seconds kEndOfIdleThread{1};

template <typename List>
bool contains(const List& list, int value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

template <auto kFree>
struct Freer {
  template <typename Object>
  void operator()(Object* object) const {
    kFree(object);
  }
};
using Disc = std::unique_ptr<burn_disc, Freer<&burn_disc_free>>;
using Session = std::unique_ptr<burn_session, Freer<&burn_session_free>>;
using Track = std::unique_ptr<burn_track, Freer<&burn_track_free>>;
using Options = std::unique_ptr<burn_write_opts, Freer<&burn_write_opts_free>>;

class Run {
 public:
  Run(const GrabbedDrive& grabbed, const std::string& address, const WriteRequest& request)
      : drive_(grabbed.drive()),
        address_(address),
        request_(request),
        profile_(profileOf(grabbed)),
        progress_(std::in_place, request.progress, DiscStage::Writing, request.sectors) {}

  // The whole image in one go.
  DiscResult writeSequentially();
  DiscResult writeOver();

 private:
  // What is in the queue already, and then the image from its position on.
  DiscResult writeTrack(SectorQueue& queue, std::uint64_t fed);
  DiscResult setUp(burn_write_opts& options, burn_disc& disc);
  DiscResult pump(SectorQueue& queue, std::uint64_t fed);
  DiscResult feed(SectorQueue& queue, std::uint64_t& fed);
  DiscResult failed() { return burnFailure(E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, address_); }
  DiscResult writeAt(std::uint32_t sector, std::vector<char>& bytes);

  burn_drive* drive_;
  const std::string& address_;
  const WriteRequest& request_;
  int profile_;
  std::optional<ProgressReporter> progress_;
};

DiscResult Run::writeAt(std::uint32_t sector, std::vector<char>& bytes) {
  const std::lock_guard lock(burnMutex());
  forgetBurnMessages();
  const int done = burn_random_access_write(drive_, off_t{sector} * kSectorBytes, bytes.data(),
                                            static_cast<off_t>(bytes.size()), 1);
  return done == 1 ? DiscResult() : failed();
}

// A stream that fails at once costs no disc: the first of it is read before the drive is asked to
// do anything.
DiscResult Run::writeSequentially() {
  SectorQueue queue(request_.sectors * kSectorBytes);
  std::uint64_t fed = 0;
  while (fed < queue.totalBytes() && queue.hasRoom()) {
    DiscResult result = feed(queue, fed);
    if (result.failed()) return result;
  }
  return writeTrack(queue, fed);
}

// With zeros in the place of its first sectors, which follow at the end. It is in the writing of
// the track that libburn formats a new disc.
DiscResult Run::writeOver() {
  const std::uint64_t headSectors = std::min<std::uint64_t>(request_.sectors, kHeadSectors);
  std::vector<char> head(std::size_t{kHeadSectors} * kSectorBytes);
  DiscResult result = takeBlock(request_, head, headSectors * kSectorBytes);
  if (result.failed()) return result;
  SectorQueue queue(std::max<std::uint64_t>(request_.sectors, kHeadSectors) * kSectorBytes);
  queue.put(std::vector<char>(head.size()));
  result = writeTrack(queue, head.size());
  if (!result.failed()) result = writeAt(0, head);
  if (!result.failed()) progress_->reach(request_.sectors);
  return result;
}

DiscResult Run::setUp(burn_write_opts& options, burn_disc& disc) {
  // Discs that can be overwritten have no sessions.
  const bool isClosed =
      request_.closeDisc || isOverwritableProfile(profile_) || contains(kPlayerProfiles, profile_);
  burn_write_opts_set_perform_opc(&options, 0);
  burn_write_opts_set_multi(&options, isClosed ? 0 : 1);
  burn_write_opts_set_underrun_proof(&options, 1);
  burn_write_opts_set_simulate(&options, request_.isTestRun ? 1 : 0);
  if (isOverwritableProfile(profile_)) {
    burn_write_opts_set_start_byte(&options, 0);
  }
  if (request_.sectorsPerSecond > 0) {
    burn_drive_set_speed(drive_, 0, speedUnitsOf(request_.sectorsPerSecond, profile_));
  }
  std::array<char, BURN_REASONS_LEN> reasons{};
  if (burn_write_opts_auto_write_type(&options, &disc, reasons.data(), 0) != BURN_WRITE_NONE) {
    return S_OK;
  }
  std::string reason = reasons.data();
  reason.resize(reason.find_last_not_of(", ") + 1);
  return {E_IMAPI_DF2DATA_INVALID_MEDIA_STATE,
          wideFromNative("The drive \"" + address_ + "\" cannot write the disc: " + reason + ".")};
}

DiscResult Run::writeTrack(SectorQueue& queue, std::uint64_t fed) {
  std::unique_lock lock(burnMutex());
  forgetBurnMessages();
  const Disc disc(burn_disc_create());
  const Session session(burn_session_create());
  const Track track(burn_track_create());
  const Options options(burn_write_opts_new(drive_));
  burn_source* source = queue.makeSource();
  if (!disc || !session || !track || !options || source == nullptr) return E_OUTOFMEMORY;
  burn_disc_add_session(disc.get(), session.get(), BURN_POS_END);
  burn_session_add_track(session.get(), track.get(), BURN_POS_END);
  burn_track_define_data(track.get(), 0, 0, 1, BURN_MODE1);
  const burn_source_status attached = burn_track_set_source(track.get(), source);
  burn_source_free(source);
  if (attached != BURN_SOURCE_OK) return failed();
  DiscResult result = setUp(*options, *disc);
  if (result.failed()) return result;
  burn_disc_write(options.get(), disc.get());
  lock.unlock();
  return pump(queue, fed);
}

// Must not throw: libburn's thread reads from the queue.
DiscResult Run::feed(SectorQueue& queue, std::uint64_t& fed) try {
  std::vector<char> block(blockAt(fed, queue.totalBytes()));
  DiscResult result = takeBlock(request_, block, block.size());
  if (result.failed()) return result;
  fed += block.size();
  queue.put(std::move(block));
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

DiscResult Run::pump(SectorQueue& queue, std::uint64_t fed) {
  bool isEnding = false;
  DiscResult result;
  for (;;) {
    if (!result.failed() && fed < queue.totalBytes() && queue.hasRoom()) {
      result = feed(queue, fed);
      if (result.failed()) {
        queue.fail();
        burn_drive_cancel(drive_);
      }
    } else {
      std::this_thread::sleep_for(kPollInterval);
    }
    burn_progress reached{};
    const burn_drive_status status = burn_drive_get_status(drive_, &reached);
    if (status == BURN_DRIVE_IDLE) break;
    if (status == BURN_DRIVE_WRITING) {
      progress_->reach(static_cast<std::uint64_t>(std::max(reached.sector, 0)));
    } else if (!isEnding && status == BURN_DRIVE_CLOSING_SESSION) {
      isEnding = true;
      const ProgressReporter closing(request_.progress, DiscStage::Closing, 0);
    }
    if (areOperationsStopped() && !result.failed()) {
      result = E_IMAPI_REQUEST_CANCELLED;
      queue.fail();
      burn_drive_cancel(drive_);
    }
  }
  // A file counts as idle while libburn's thread still works on its buffer.
  const bool isRead = queue.waitForReader();
  if (!isRead) std::this_thread::sleep_for(kEndOfIdleThread);
  if (result.failed()) return result;
  const std::lock_guard lock(burnMutex());
  return isRead && burn_drive_wrote_well(drive_) == 1 && fed == queue.totalBytes() ? DiscResult()
                                                                                   : failed();
}

}  // namespace

DiscResult syncFile(const std::string& address) {
  if (!isFileAddress(address)) return S_OK;
  const std::string path = address.substr(std::char_traits<char>::length(kFileAddress));
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.isOpen() && ::fsync(file.get()) == 0) {
    static_cast<void>(::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED));
    return S_OK;
  }
  return {E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE,
          wideFromNative("The file \"" + path + "\" cannot be written.")};
}

void learnNewState(burn_drive* drive) {
  const std::lock_guard lock(burnMutex());
  burn_drive_re_assess(drive, 0);
  forgetBurnMessages();
}

DiscResult writeInDrive(const GrabbedDrive& grabbed, const std::string& address,
                        const WriteRequest& request) {
  const bool isOverwritable = isOverwritableProfile(profileOf(grabbed));
  DiscResult result;
  if (request.isTestRun) {
    // Where there is nothing to go through the motions on, the image alone is tried.
    const bool isBlank = burn_disc_get_status(grabbed.drive()) == BURN_DISC_BLANK;
    if (!isBlank || !contains(kSimulatingProfiles, profileOf(grabbed))) return testRun(request);
    if (grabbed.info().write_simulate == 0) {
      return {E_IMAPI_DF2DATA_MEDIA_NOT_SUPPORTED,
              wideFromNative("The drive \"" + address +
                             "\" cannot make a test run with this disc: it would write it.")};
    }
  } else {
    result = formatWhenNew(grabbed, address);
  }
  if (!result.failed()) {
    Run run(grabbed, address, request);
    result = isOverwritable ? run.writeOver() : run.writeSequentially();
  }
  if (!result.failed()) result = syncFile(address);
  learnNewState(grabbed.drive());
  return result;
}

}  // namespace quillon::platform
