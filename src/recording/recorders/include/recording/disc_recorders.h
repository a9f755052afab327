// Linux only: the recorders that the disc-mastering service is configured for, drives and virtual
// ones alike, for a program that shows them and handles their discs. Names and paths are native
// ones (bytes). Every failure carries a sentence.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "recording/disc_result.h"

namespace quillon::platform {

struct DiscRecorderStatus {
  std::string name;    // of a virtual recorder as virtual_discs.h takes it; of a drive its device
  std::string device;  // "Quillon Virtual Recorder (Revision: 1.0)"
  bool isVirtual = false;
  std::string client;            // who has exclusive access; empty for nobody
  std::string problem;           // a sentence when nothing is known of the disc; empty
  bool isBecomingReady = false;  // that is why; the drive will tell when it is asked again
  std::vector<std::string> writableMedia;  // kinds of disc that it writes; none: it only reads
  bool hasDisc = false;                    // the rest is empty without one
  std::string media;                       // "cd-rw"
  std::string state;         // "blank", "erased", "appendable", "finalised" or "damaged"
  bool isProtected = false;  // also a pressed disc, and one that the recorder only reads
  bool isErasable = false;   // can be made blank again, or overwritten
  std::uint32_t capacitySectors = 0;
  std::uint32_t freeSectors = 0;  // for a write that overwrites nothing
  // For a file set: of a disc that is blank what is free, of one that will be erased or overwritten
  // all of it; 0 when the disc takes no file set at all.
  std::uint32_t usableSectors = 0;
  std::string image;  // of a virtual disc that holds something: its contents, which can be mounted

  [[nodiscard]] bool writes() const { return !writableMedia.empty(); }
};

// In the order in which the service has them; where it makes virtual recorders, the first one is
// made when there is none. Fails for a service that is not known, too.
DiscResult listDiscRecorders(std::vector<DiscRecorderStatus>& recorders);
// The recorder of that name, or for an empty one the first that writes; no other one is asked for
// its disc. ERROR_FILE_NOT_FOUND, as an HRESULT, when there is none, with a sentence that says how
// to get one.
DiscResult describeDiscRecorder(const std::string& recorder, DiscRecorderStatus& status);

// From now on the disc-mastering service of this process has no recorder but the one of that name;
// with an empty name it has all of them again. The name may be that of an existing virtual
// recorder that the service would not list.
void chooseDiscRecorder(std::string recorder);

// The version of libburn, by which drives are reached ("1.5.4"); nothing where the library for
// drives is not installed or cannot be loaded. Loads both.
std::optional<std::string> opticalLibraryVersion();
// Why the library for drives cannot be used although it is installed, a sentence without its full
// stop; empty when it can be, and when it is not installed. Loads it, too.
std::string opticalLibraryProblem();

// What the process has done to discs last, beyond what the service answers, which is a code.
struct DiscWork {
  bool isWritten = false;  // the last write put all on its disc, whatever came after it
  // What the recorder or the drive itself said when the last write, erase or ejection failed, a
  // sentence; empty for nothing, and after a success.
  std::string failure;
  // Where the contents of the virtual disc are that was ejected last; empty for none.
  std::string ejectedTo;
};
DiscWork lastDiscWork();

// These take the name of a recorder, or an empty one for the first that writes. They need exclusive
// access. A quick erase (not full) leaves the contents where only the beginning of them is
// overwritten.
DiscResult eraseDisc(const std::string& recorder, bool full);
// imageLeftAt says where the contents of a virtual disc now are; empty when there are none. hadDisc
// says whether there was one to take out; S_OK either way.
DiscResult ejectDisc(const std::string& recorder, std::string& imageLeftAt, bool& hadDisc);

}  // namespace quillon::platform
