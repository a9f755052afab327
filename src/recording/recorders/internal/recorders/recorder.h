// One recorder as the disc-mastering classes see it, current and legacy alike: the virtual recorder
// and the optical drive stand behind it.
//
// A Recorder is one client's handle on the device, as a device handle of Windows is: two of them
// for the same device, in one process or in two, exclude each other through acquire. Operations
// that need the disc answer E_IMAPI_RECORDER_LOCKED while another client has the device.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/imapi2.h"
#include "platform/imapi2_errors.h"
#include "recording/disc_progress.h"
#include "recording/disc_result.h"

namespace quillon::platform {

inline constexpr std::uint32_t kSectorBytes = 2048;

// What a device is, disc or not.
struct DriveIdentity {
  std::string name;  // as users know it, in native bytes: a device, or a virtual recorder's name
  std::u16string uniqueId;
  std::u16string vendor;
  std::u16string product;
  std::u16string revision;
  std::u16string devicePath;                // answered as the name of its volume
  std::vector<std::u16string> volumePaths;  // where its disc can be reached
  LONG legacyNumber = 0;                    // position in the catalogue, from 0
  bool canLoad = true;                      // has a tray that it can close
  std::vector<LONG> supportedProfiles;      // MMC profile numbers
  std::vector<LONG> supportedFeatures;      // MMC feature numbers
  std::vector<LONG> supportedModePages;
  // Physical types of the discs that it can write.
  std::vector<IMAPI_MEDIA_PHYSICAL_TYPE> writableTypes;
};

// What is known about the disc in a device. Without one, present is false and the rest is as here.
struct MediaFacts {
  bool present = false;
  IMAPI_MEDIA_PHYSICAL_TYPE physicalType = IMAPI_MEDIA_TYPE_UNKNOWN;
  DWORD state = 0;         // bits of IMAPI_FORMAT2_DATA_MEDIA_STATE
  DWORD writeProtect = 0;  // bits of IMAPI_MEDIA_WRITE_PROTECT_STATE
  bool isErasable = false;
  // Can be written again in place. Such a disc is erased before that.
  bool isOverwritable = false;
  bool isPhysicallyBlank = false;
  bool isHeuristicallyBlank = false;  // holds no file system, although sectors may be written
  std::uint32_t totalSectors = 0;
  std::uint32_t freeSectors = 0;  // for the next write without overwriting
  // From the first one on, as far as the device tells; 0 of a blank disc. Some of them may hold no
  // data, such as the last two of a CD's track.
  std::uint32_t readableSectors = 0;
  std::uint32_t lastSession = 0;  // the first sector of its first track
  std::vector<LONG> writeSpeeds;  // sectors per second, fastest first

  [[nodiscard]] bool isBlank() const { return isPhysicallyBlank || isHeuristicallyBlank; }
  [[nodiscard]] bool has(IMAPI_FORMAT2_DATA_MEDIA_STATE bit) const {
    return (state & static_cast<DWORD>(bit)) != 0;
  }
};

// What the device has become with the disc in it.
struct CurrentPages {
  std::vector<LONG> profiles;
  std::vector<LONG> features;
};

// Whether the device writes discs of the type at all, whatever their state.
bool isWritableType(const DriveIdentity& drive, const MediaFacts& media);
// Whether the data format can use the disc: one that is in the device, whole, not protected, of a
// type that the device writes, and either blank, appendable, or made blank on request.
bool isUsableForData(const DriveIdentity& drive, const MediaFacts& media);
// Whether the erase format can use it: any erasable one, damaged and blank ones included.
bool isUsableForErase(const DriveIdentity& drive, const MediaFacts& media);

inline constexpr const char16_t* kOwnClientName = u"Quillon";

struct WriteRequest {
  std::u16string clientName = kOwnClientName;  // takes exclusive access when nobody holds it
  IStream* image = nullptr;                    // read from its start; sectors * 2048 bytes
  std::uint64_t sectors = 0;
  bool closeDisc = false;  // no further session can follow
  // All but the writing; the disc stays as it is. An erasable one need not be blank.
  bool isTestRun = false;
  LONG sectorsPerSecond = -1;     // -1: as fast as the disc allows
  DiscProgressCallback progress;  // may be empty
};

// Why a disc cannot take a write: no disc, protected, not supported, not blank, too small. S_OK
// when it can. The same answers whoever writes.
DiscResult checkWritable(const DriveIdentity& drive, const MediaFacts& media,
                         const WriteRequest& request);
// The same for erasing.
DiscResult checkErasable(const DriveIdentity& drive, const MediaFacts& media);
// What is not to be read at all: no disc, or nothing on it.
DiscResult checkReadable(const DriveIdentity& drive, const MediaFacts& media);

// The names that exclusive access takes: 1 to 63 letters, digits, blanks and , . - : ; _
bool isValidClientName(std::u16string_view name);

class Recorder {
 public:
  virtual ~Recorder() = default;
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  [[nodiscard]] const DriveIdentity& identity() const { return identity_; }
  void setLegacyNumber(LONG number) { identity_.legacyNumber = number; }

  // Named operations of the interfaces pass here first ("Write", "get_FreeSectorsOnMedia"); a fault
  // plan answers in the place of the operation.
  virtual DiscResult enter(std::string_view operation);

  // Success without a disc too; failures are a device that is becoming ready or that another client
  // has locked, and those of the device itself.
  virtual DiscResult media(MediaFacts& facts) = 0;

  // Exclusive access, counted: each success takes one release. Force lets go of file systems that
  // are mounted from the disc; it does not take the device from another client.
  DiscResult acquire(bool force, std::u16string_view clientName);
  // E_FAIL without acquire.
  DiscResult release();
  [[nodiscard]] bool isHeld() const { return holds_ > 0; }
  // The name of the client that has the device, in whatever process; empty for none.
  [[nodiscard]] virtual std::u16string owner() = 0;

  // Answered without a disc, while the device is becoming ready, and while it is locked.
  virtual DiscResult currentPages(CurrentPages& pages) = 0;

  // These need exclusive access, which they take for themselves when this client has none, and
  // refuse what checkWritable and checkErasable refuse. A failure or a process that ends in the
  // middle leaves a disc that reads as damaged or as before.
  DiscResult write(const WriteRequest& request);
  DiscResult erase(bool full, std::u16string_view clientName, const DiscProgressCallback& progress);
  DiscResult eject();

  // The sectors [sector, sector + count), from the disc itself and not from what the system
  // remembers of it. A failure names the first sector that cannot be had. It takes exclusive access
  // in the same way; a client that reads more than once holds it meanwhile, and asks for the media
  // to learn how many sectors there are.
  DiscResult read(std::uint32_t sector, std::uint32_t count, void* bytes);

 protected:
  Recorder() = default;

  // The first acquire and the last release.
  virtual DiscResult lock(bool force, std::u16string_view clientName) = 0;
  virtual DiscResult unlock() = 0;

  // What is left of the operations: the device is held, the disc has been found fit, and the image
  // stands at its start.
  virtual DiscResult burn(const WriteRequest& request) = 0;
  virtual DiscResult blank(bool full, const DiscProgressCallback& progress) = 0;
  virtual DiscResult openTray() = 0;
  virtual DiscResult fetch(std::uint32_t sector, std::uint32_t count, void* bytes) = 0;

  DriveIdentity identity_;

 private:
  // A sentence about the disc, after what was done to it has been stopped.
  std::string whatIsLeft(const char* done);

  int holds_ = 0;
};

// Exclusive access for the length of a scope.
class RecorderHold {
 public:
  explicit RecorderHold(Recorder& recorder) : recorder_(recorder) {}
  RecorderHold(const RecorderHold&) = delete;
  RecorderHold& operator=(const RecorderHold&) = delete;
  ~RecorderHold() { static_cast<void>(release()); }

  DiscResult acquire(std::u16string_view clientName) {
    DiscResult result = recorder_.acquire(true, clientName);
    isHeld_ = !result.failed();
    return result;
  }
  DiscResult release() {
    if (!isHeld_) return {};
    isHeld_ = false;
    return recorder_.release();
  }

 private:
  Recorder& recorder_;
  bool isHeld_ = false;
};

}  // namespace quillon::platform
