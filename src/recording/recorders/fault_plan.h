// How a virtual recorder is to misbehave, so that what drives it can be tried against a drive that
// does. The plan is the file faults.txt in the recorder's directory, one rule a line:
//
//   ready-after N              the first N questions about the disc answer 0xC0AA0205
//                              (becoming ready)
//   write-fails-at N [CODE]    writing fails when it comes to sector N, with 0xC0AA0301 or CODE
//   write-pulled-at N          the disc is pulled out when writing comes to sector N
//   erase-fails-at N [CODE]    the same for erasing; the code is 0x80AA0905 or CODE
//   erase-pulled-at N
//   read-fails-at N [CODE]     sector N cannot be read; the code is 0xC0AA0301 or CODE
//   read-changes-at N          the first byte of sector N is read as another one
//   answer NAME CODE [TIMES]   the operation NAME of the interfaces answers CODE instead of being
//                              done: EjectMedia, AcquireExclusiveAccess, get_FreeSectorsOnMedia,
//                              Write, EraseMedia ...; with its interface in front where two have
//                              it: IDiscFormat2Erase::IsRecorderSupported. TIMES is "once", a
//                              number, or "always" (as is a rule without it)
//
// Codes are hexadecimal ("0xC0AA0207"). Blank lines and lines that begin with "#" do not count. A
// plan with a line that is not understood makes every operation fail and say so: a test with a
// typing error must not pass. A handle of the recorder looks for the file once, when it is made.
// What has been answered is counted in the process, for all its handles of the recorder, and starts
// again when one finds the file changed.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "recording/disc_result.h"

namespace quillon::platform {

// What happens in the middle of writing or erasing.
struct SectorFault {
  std::uint64_t sector = 0;
  HRESULT code = S_OK;
  bool isPulled = false;  // else the operation fails
};

class FaultPlan {
 public:
  // The plan of a recorder as it now is; null for none.
  static std::shared_ptr<FaultPlan> of(const std::string& recorderDirectory);

  explicit FaultPlan(std::string_view text);

  // What the operation answers: S_OK when it is to be done.
  DiscResult enter(std::string_view operation);
  // Asked by every question about the disc.
  DiscResult askReady();
  [[nodiscard]] std::optional<SectorFault> writeFault() const { return writeFault_; }
  [[nodiscard]] std::optional<SectorFault> eraseFault() const { return eraseFault_; }
  // What becomes of sectors that were read, from first on: a failure leaves in sectors how many of
  // them come before it.
  DiscResult spoil(std::uint32_t first, std::uint32_t& sectors, char* bytes) const;

 private:
  struct Answer {
    std::string operation;
    HRESULT code;
    std::uint64_t left;
  };

  bool parseLine(std::string_view line);
  bool parseAnswer(const std::vector<std::string_view>& words);

  std::mutex mutex_;
  std::vector<Answer> answers_;
  std::uint64_t notReadyLeft_ = 0;
  std::optional<SectorFault> writeFault_;
  std::optional<SectorFault> eraseFault_;
  std::optional<SectorFault> readFault_;
  std::optional<SectorFault> readChange_;
  std::size_t badLine_ = 0;  // from 1
};

}  // namespace quillon::platform
