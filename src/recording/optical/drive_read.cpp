// Reading the disc in a drive by READ commands to the drive itself, past the system's cache.
//
// A drive that has just written need not load its disc again: libburn wants burn_drive_re_assess
// instead, which asks the drive for the disc's state, tracks and size once more, and every writing
// and erasing ends with it (learnNewState). Until then libburn refuses to read behind the end that
// it knew.
#include <algorithm>
#include <string>

#include "drive_run.h"
#include "libburn.h"
#include "platform/imapi2_errors.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// Other clients ask in between.
constexpr std::uint32_t kPieceSectors = 512;

// How many of the sectors were read before the first one that cannot be.
std::uint32_t readPiece(burn_drive* drive, std::uint32_t sector, std::uint32_t count, char* to) {
  const std::lock_guard lock(burnMutex());
  std::uint32_t done = 0;
  // libburn goes on from a bad piece sector by sector, but does not try the last one of it again.
  for (bool goesOn = true; done < count && goesOn;) {
    forgetBurnMessages();
    off_t got = 0;
    burn_read_data(drive, off_t{sector + done} * kSectorBytes,
                   to + std::size_t{done} * kSectorBytes, off_t{count - done} * kSectorBytes, &got,
                   0);
    goesOn = got > 0;
    done += static_cast<std::uint32_t>(got / kSectorBytes);
  }
  return done;
}

}  // namespace

DiscResult readInDrive(const GrabbedDrive& grabbed, const std::string& address,
                       std::uint32_t sector, std::uint32_t count, void* bytes) {
  auto* const to = static_cast<char*>(bytes);
  for (std::uint32_t done = 0; done < count;) {
    const std::uint32_t piece = std::min(count - done, kPieceSectors);
    const std::uint32_t got =
        readPiece(grabbed.drive(), sector + done, piece, to + std::size_t{done} * kSectorBytes);
    done += got;
    if (got == piece) continue;
    const std::string reason = takeBurnMessage();
    std::string sentence = "The drive \"" + address + "\" cannot read sector ";
    sentence.append(std::to_string(sector + done)).append(" of its disc");
    if (!reason.empty()) sentence.append(": ").append(reason);
    return {E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, wideFromNative(sentence + ".")};
  }
  return S_OK;
}

}  // namespace quillon::platform
