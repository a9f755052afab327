#include "virtual_recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <set>
#include <sstream>

#include "disc_run.h"
#include "fault_plan.h"
#include "recorders/disc_operations.h"
#include "recorders/image_reading.h"
#include "win32/environment.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// Overwritten by a quick erase: the places where every file system of a disc begins.
constexpr std::uint64_t kQuickEraseBytes = std::uint64_t{512} * kSectorBytes;

std::u16string settingOr(const Settings& settings, std::string_view name, const char* otherwise) {
  const auto found = settings.find(name);
  return wideFromNative(found == settings.end() ? otherwise : found->second.c_str());
}

std::vector<const DiscType*> writableTypes(const Settings& settings) {
  std::vector<const DiscType*> types;
  const auto media = settings.find("media");
  std::istringstream words(media == settings.end() ? std::string() : media->second);
  const std::set<std::string, std::less<>> listed{std::istream_iterator<std::string>(words), {}};
  for (const DiscType& type : discTypes()) {
    const bool isListed = media == settings.end() || listed.count(type.keyword) != 0;
    if (isListed && type.rewriting != Rewriting::Never) types.push_back(&type);
  }
  return types;
}

DriveIdentity identityOf(const std::string& directory) {
  std::string text;
  static_cast<void>(readFile(directory + "/" + kRecorderFile, text));
  const Settings settings = parseSettings(text);
  DriveIdentity identity;
  identity.uniqueId = wideFromNative(directory);
  identity.name = directory.substr(directory.rfind('/') + 1);
  identity.vendor = settingOr(settings, "vendor", "Quillon");
  identity.product = settingOr(settings, "product", "Virtual Recorder");
  identity.revision = settingOr(settings, "revision", "1.0");
  identity.devicePath = identity.uniqueId;
  identity.volumePaths = {identity.uniqueId + u"/"};
  identity.supportedProfiles = {findDiscType("cd-rom")->profile};
  std::set<LONG> features(driveFeatures().begin(), driveFeatures().end());
  const auto addFeatures = [&features](const DiscType& type) {
    features.insert(type.features.begin(), type.features.end());
  };
  addFeatures(*findDiscType("cd-rom"));
  for (const DiscType* type : writableTypes(settings)) {
    identity.writableTypes.push_back(type->physicalType);
    identity.supportedProfiles.push_back(type->profile);
    addFeatures(*type);
  }
  identity.supportedFeatures.assign(features.begin(), features.end());
  identity.supportedModePages.assign(driveModePages().begin(), driveModePages().end());
  return identity;
}

DiscState stateAfterWrite(const DiscType& type, const WriteRequest& request) {
  if (type.rewriting == Rewriting::InPlace) return DiscState::Appendable;
  const bool isClosed = request.closeDisc || type.isClosedForPlayers;
  return isClosed ? DiscState::Finalised : DiscState::Appendable;
}

DiscResult sectorFailure(HRESULT code, const std::string& recorder, std::uint32_t sector) {
  std::string sentence = "The virtual recorder \"" + recorder + "\" cannot read sector ";
  sentence.append(std::to_string(sector)).append(" of its disc.");
  return {code, wideFromNative(sentence)};
}

}  // namespace

VirtualRecorder::VirtualRecorder(std::string directory)
    : directory_(std::move(directory)),
      lock_(directory_ + "/" + kLockFile),
      faults_(FaultPlan::of(directory_)) {
  identity_ = identityOf(directory_);
}

DiscResult VirtualRecorder::enter(std::string_view operation) {
  return faults_ == nullptr ? DiscResult() : faults_->enter(operation);
}

DiscResult VirtualRecorder::lock(bool, std::u16string_view clientName) {
  return lock_.acquire(clientName);
}

DiscResult VirtualRecorder::unlock() {
  image_ = Descriptor();
  lock_.release();
  return S_OK;
}

std::u16string VirtualRecorder::owner() { return lock_.owner(); }

DiscResult VirtualRecorder::record(std::optional<DiscRecord>& record) {
  Descriptor shared;
  if (!isHeld()) {
    DiscResult result = lock_.share(shared);
    if (result.failed()) return result;
  }
  return readDiscRecord(directory_, record);
}

DiscResult VirtualRecorder::media(MediaFacts& facts) {
  facts = MediaFacts{};
  DiscResult result = faults_ == nullptr ? DiscResult() : faults_->askReady();
  if (result.failed()) return result;
  std::optional<DiscRecord> disc;
  result = record(disc);
  if (!result.failed() && disc) facts = factsOf(*disc);
  return result;
}

DiscResult VirtualRecorder::currentPages(CurrentPages& pages) {
  pages = CurrentPages{{}, {driveFeatures().begin(), driveFeatures().end()}};
  std::optional<DiscRecord> disc;
  DiscResult result = readDiscRecord(directory_, disc);
  if (result.failed() || !disc) return result;
  pages.profiles = {disc->type->profile};
  pages.features.insert(pages.features.end(), disc->type->features.begin(),
                        disc->type->features.end());
  std::sort(pages.features.begin(), pages.features.end());
  return S_OK;
}

DiscResult VirtualRecorder::burn(const WriteRequest& request) {
  image_ = Descriptor();
  std::optional<DiscRecord> disc;
  DiscResult result = readDiscRecord(directory_, disc);
  if (result.failed()) return result;
  return disc ? burnDisc(*disc, request) : E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
}

DiscResult VirtualRecorder::blank(bool full, const DiscProgressCallback& progress) {
  image_ = Descriptor();
  std::optional<DiscRecord> disc;
  DiscResult result = readDiscRecord(directory_, disc);
  if (result.failed()) return result;
  return disc ? blankDisc(*disc, full, progress) : E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
}

DiscResult VirtualRecorder::burnDisc(DiscRecord record, const WriteRequest& request) {
  if (request.isTestRun) return testRun(request);
  std::vector<char> block(kRunBlockBytes);
  const std::uint64_t total = request.sectors * kSectorBytes;
  DiscRun run(directory_ + "/" + kImageFile,
              faults_ == nullptr ? std::nullopt : faults_->writeFault());
  std::size_t bytes = blockAt(0, total);
  DiscResult result = run.open();
  if (!result.failed()) result = run.reserve(total);
  // A stream that fails at once costs no disc.
  if (!result.failed()) result = takeBlock(request, block, bytes);
  if (result.failed()) return result;

  record.state = DiscState::Writing;
  record.usedSectors = 0;
  result = writeDiscRecord(directory_, record);
  if (result.failed()) return result;
  {
    ProgressReporter progress(request.progress, DiscStage::Writing, request.sectors);
    for (;;) {
      result = run.put({block.data(), bytes}, progress);
      bytes = blockAt(run.bytesPut(), total);
      if (result.failed() || bytes == 0) break;
      result = takeBlock(request, block, bytes);
      if (result.failed()) break;
    }
  }
  if (!result.failed()) {
    const ProgressReporter progress(request.progress, DiscStage::Closing, 0);
    result = run.finish(total);
  }
  if (result.failed()) return giveUp(std::move(record), run, std::move(result));
  record.state = stateAfterWrite(*record.type, request);
  record.usedSectors = static_cast<std::uint32_t>(request.sectors);
  return writeDiscRecord(directory_, record);
}

DiscResult VirtualRecorder::giveUp(DiscRecord record, const DiscRun& run, DiscResult reason) {
  record.state = DiscState::Damaged;
  record.usedSectors = static_cast<std::uint32_t>(run.bytesPut() / kSectorBytes);
  // Should even this fail, what the disk says of the disc reads as damaged all the same.
  static_cast<void>(writeDiscRecord(directory_, record));
  if (run.isPulled()) {
    std::string leftAt;
    static_cast<void>(takeDiscOut(directory_, leftAt));
  }
  return reason;
}

DiscResult VirtualRecorder::blankDisc(DiscRecord record, bool full,
                                      const DiscProgressCallback& callback) {
  DiscRun run(directory_ + "/" + kImageFile,
              faults_ == nullptr ? std::nullopt : faults_->eraseFault());
  DiscResult result = run.open();
  if (result.failed()) return result;
  record.state = DiscState::Erasing;
  result = writeDiscRecord(directory_, record);
  if (result.failed()) return result;
  const std::uint64_t length = run.lengthBytes();
  const std::uint64_t total = full ? length : std::min(length, kQuickEraseBytes);
  {
    const std::vector<char> zeros(kRunBlockBytes);
    ProgressReporter progress(callback, DiscStage::Erasing, total / kSectorBytes);
    while (!result.failed() && run.bytesPut() < total) {
      if (areOperationsStopped()) {
        result = E_IMAPI_REQUEST_CANCELLED;
        break;
      }
      result = run.put({zeros.data(), blockAt(run.bytesPut(), total)}, progress);
    }
  }
  // The zeros are on the disk before the space is given back.
  if (!result.failed()) result = run.finish(length);
  if (!result.failed() && full) result = run.finish(0);
  if (result.failed()) return giveUp(std::move(record), run, std::move(result));
  record.state = full || length == 0 ? DiscState::Blank : DiscState::Erased;
  record.usedSectors = 0;
  return writeDiscRecord(directory_, record);
}

DiscResult VirtualRecorder::openTray() {
  image_ = Descriptor();
  std::string leftAt;
  DiscResult result = takeDiscOut(directory_, leftAt);
  noteEjected(leftAt);
  return result;
}

// What is read comes from the disk: whoever wrote the image waited for that, so the system can
// forget its copy.
DiscResult VirtualRecorder::openImage() {
  if (image_.isOpen()) return S_OK;
  const std::string path = directory_ + "/" + kImageFile;
  image_ = Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!image_.isOpen()) return fileFailure(errno, "read", path);
  static_cast<void>(::posix_fadvise(image_.get(), 0, 0, POSIX_FADV_DONTNEED));
  return S_OK;
}

DiscResult VirtualRecorder::fetch(std::uint32_t sector, std::uint32_t count, void* bytes) {
  DiscResult result = openImage();
  if (result.failed()) return result;
  auto* const to = static_cast<char*>(bytes);
  const std::size_t length = std::size_t{count} * kSectorBytes;
  const auto first = static_cast<off_t>(sector) * kSectorBytes;
  std::size_t done = 0;
  while (done < length) {
    const ssize_t got =
        ::pread(image_.get(), to + done, length - done, first + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  std::uint32_t readable = static_cast<std::uint32_t>(done / kSectorBytes);
  if (faults_ != nullptr) result = faults_->spoil(sector, readable, to);
  if (!result.failed() && readable == count) return S_OK;
  return sectorFailure(result.failed() ? result.code : E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE,
                       identity_.name, sector + readable);
}

}  // namespace quillon::platform
