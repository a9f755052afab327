// Making the disc in a drive blank, or fit to be written at all.
#include <algorithm>
#include <vector>

#include "drive_facts.h"
#include "drive_run.h"
#include "libburn.h"
#include "recorders/disc_operations.h"
#include "recorders/progress.h"
#include "run_parts.h"

namespace quillon::platform {
namespace {

constexpr std::uint32_t kQuickEraseSectors = 512;

DiscResult eraseByDrive(burn_drive* drive, const std::string& address, bool full,
                        const DiscProgressCallback& callback) {
  constexpr std::uint64_t kWhole = 0x10000;  // libburn counts so
  {
    const std::lock_guard lock(burnMutex());
    if (burn_disc_get_status(drive) != BURN_DISC_FULL) burn_disc_pretend_full_uncond(drive);
    forgetBurnMessages();
    burn_disc_erase(drive, full ? 0 : 1);
  }
  ProgressReporter progress(callback, DiscStage::Erasing, kWhole);
  waitUntilIdle(drive, [&](const burn_progress& reached) {
    progress.reach(static_cast<std::uint64_t>(std::max(reached.sector, 0)));
  });
  const std::lock_guard lock(burnMutex());
  if (burn_drive_wrote_well(drive) == 1) return S_OK;
  return burnFailure(E_IMAPI_ERASE_DRIVE_FAILED_ERASE_COMMAND, address);
}

DiscResult eraseByZeros(burn_drive* drive, const std::string& address, bool full,
                        const DiscProgressCallback& callback) {
  const std::lock_guard lock(burnMutex());
  int readable = 0;
  if (burn_get_read_capacity(drive, &readable, 0) <= 0) readable = 0;
  forgetBurnMessages();
  constexpr std::uint64_t kPieceSectors = kQuickEraseSectors;
  // Whole blocks of the disc.
  std::uint64_t total = (static_cast<std::uint64_t>(std::max(readable, 0)) + kHeadSectors - 1) /
                        kHeadSectors * kHeadSectors;
  if (!full) total = std::min<std::uint64_t>(total, kQuickEraseSectors);
  std::vector<char> zeros(kPieceSectors * kSectorBytes);
  ProgressReporter progress(callback, DiscStage::Erasing, total);
  for (std::uint64_t done = 0; done < total;) {
    if (areOperationsStopped()) return E_IMAPI_REQUEST_CANCELLED;
    const std::uint64_t piece = std::min(kPieceSectors, total - done);
    if (burn_random_access_write(drive, static_cast<off_t>(done * kSectorBytes), zeros.data(),
                                 static_cast<off_t>(piece * kSectorBytes),
                                 done + piece == total ? 1 : 0) != 1) {
      return burnFailure(E_IMAPI_ERASE_DRIVE_FAILED_ERASE_COMMAND, address);
    }
    done += piece;
    progress.reach(done);
  }
  return S_OK;
}

// Kinds of disc that libburn does not format on its own when it begins to write.
bool isFormattedBefore(int profile) {
  constexpr int kDvdRam = 0x12;
  constexpr int kBdRe = 0x43;
  return profile == kDvdRam || profile == kBdRe;
}

}  // namespace

DiscResult formatWhenNew(const GrabbedDrive& grabbed, const std::string& address) {
  burn_drive* drive = grabbed.drive();
  {
    const std::lock_guard lock(burnMutex());
    int status = 0;
    off_t bytes = 0;
    unsigned int spare = 0;
    int formats = 0;
    if (!isFormattedBefore(profileOf(grabbed)) ||
        burn_disc_get_formats(drive, &status, &bytes, &spare, &formats) <= 0 ||
        status != BURN_FORMAT_IS_UNFORMATTED) {
      return S_OK;
    }
    constexpr int kUsualSize = 3 << 1;
    constexpr int kWithoutLongCheck = 1 << 6;
    forgetBurnMessages();
    burn_disc_format(drive, 0, kUsualSize | kWithoutLongCheck);
  }
  waitUntilIdle(drive, [](const burn_progress&) {});
  const std::lock_guard lock(burnMutex());
  if (burn_drive_wrote_well(drive) == 1) return S_OK;
  return burnFailure(E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, address);
}

DiscResult eraseInDrive(const GrabbedDrive& grabbed, const std::string& address, bool full,
                        const DiscProgressCallback& progress) {
  burn_drive* drive = grabbed.drive();
  DiscResult result = isOverwritableProfile(profileOf(grabbed))
                          ? eraseByZeros(drive, address, full, progress)
                          : eraseByDrive(drive, address, full, progress);
  if (!result.failed()) result = syncFile(address);
  learnNewState(drive);
  return result;
}

}  // namespace quillon::platform
