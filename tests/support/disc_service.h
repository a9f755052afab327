// A disc-mastering service of the test's own: drives with discs in them that are locked, erased and
// burned as real ones are, and that remember what was done. Any call can be made to fail, by its
// name or by its number.
#pragma once

#include <climits>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/imapi2.h"
#include "platform/imapi2_errors.h"
#include "support/text.h"

namespace quillon::test {

// A blank CD-R unless changed.
struct FakeDisc {
  IMAPI_MEDIA_PHYSICAL_TYPE type = IMAPI_MEDIA_TYPE_CDR;
  LONG state = IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK;
  LONG writeProtection = 0;
  bool isSupported = true;  // by the data format
  bool isErasable = false;  // by the erase format
  bool isPhysicallyBlank = true;
  bool isHeuristicallyBlank = true;
  bool isBlankToEraser = false;  // the erase format finds nothing on it, whatever there is
  LONG freeSectors = 1000;
  LONG totalSectors = 1000;
  std::vector<LONG> speeds = {1800, 3600};
  LONG requestedSpeed = -1;
  LONG currentSpeed = -1;
  // What was done to it.
  std::uint64_t burnedBytes = 0;
  std::string erase = {};  // "quick" or "full"
};
FakeDisc rewritableDiscWithData();

struct FakeDrive {
  Text uniqueId = OLESTR("drive-1");            // as enumerated
  std::optional<Text> activeId = std::nullopt;  // as it says itself, when that is another
  Text vendor = OLESTR("TARN ");
  Text product = OLESTR(" BURNER");
  Text revision = OLESTR("1.00");
  Text volumeName = OLESTR("\\\\?\\Volume{1}\\");
  std::vector<Text> volumePaths = {OLESTR("D:\\")};
  LONG legacyNumber = 0;
  bool isRecorder = true;  // the data format supports it
  bool canErase = true;    // the erase format supports it
  std::vector<LONG> features = {0, 1};
  std::vector<LONG> mediaTypes = {2, 3};
  std::vector<LONG> modePages = {0x2A};
  std::vector<LONG> profiles = {0x0009, 0x1234};
  std::optional<FakeDisc> disc = FakeDisc{};
  // What was done to it.
  Text lockedBy = {};
  int locks = 0;
  bool isEjected = false;
};
// What the drive above is called in messages.
inline constexpr const char* kFakeDriveName = "TARN BURNER (Revision: 1.00)";

// A call of this name ("IDiscRecorder2::EjectMedia", "Create MsftDiscRecorder2") answers result:
// the first skip calls do not, and after times of them no further one does. A success code is
// answered after the call has done its work.
struct Fault {
  std::string call = {};
  HRESULT result = E_FAIL;
  int skip = 0;
  int times = INT_MAX;
  Text description = {};  // goes into the thread's error object
  bool throws = false;
};

// An error object that says this.
ComPtr<IErrorInfo> errorObject(Text description);

struct FakeDiscService {
  bool isSupportedEnvironment = true;
  std::vector<FakeDrive> drives = {FakeDrive{}};
  VARTYPE idType = VT_BSTR;  // of the identifiers that are enumerated
  // Element types of the arrays of numbers and of the array of write speeds.
  VARTYPE numberType = VT_I4;
  VARTYPE speedType = VT_I4;
  VARTYPE speedArrayType = VT_VARIANT;
  std::optional<std::uint64_t> imageBytes;  // else what the trees hold

  std::vector<Fault> faults;
  int failingCall = -1;  // the number of one call, counted from 0
  HRESULT failingResult = E_FAIL;

  // What was asked for.
  std::vector<std::string> calls;
  std::vector<std::string> released;  // class of each object, as it went
  int liveObjects = 0;
  std::vector<std::pair<std::string, bool>> trees;  // path, with its base directory
  Text volumeName;
  Text workingDirectory;
  LONG fileSystems = 0;
  bool isStrict = false;
  Text formatClient;
  LONG askedSpeed = 0;

  // The result that this call is to answer.
  HRESULT Enter(const std::string& call);
  [[nodiscard]] int CountOf(const std::string& call) const;
  [[nodiscard]] FakeDisc& Disc() { return *drives.front().disc; }
};

// Registers the service's classes for its life, and holds the COM library open.
class RegisteredDiscService {
 public:
  explicit RegisteredDiscService(FakeDiscService& service);
  ~RegisteredDiscService();
  RegisteredDiscService(const RegisteredDiscService&) = delete;
  RegisteredDiscService& operator=(const RegisteredDiscService&) = delete;

 private:
  bool isInitialized_;
  std::vector<DWORD> cookies_;
};

}  // namespace quillon::test
