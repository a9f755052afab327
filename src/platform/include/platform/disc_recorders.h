// Linux only: the recorders that the disc-mastering service is configured for, drives and virtual
// ones alike, for a program that shows them and handles their discs. Names and paths are native
// ones (bytes). Every failure carries a sentence.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/disc_result.h"

namespace quillon::platform {

struct DiscRecorderStatus {
  std::string name;    // of a virtual recorder as virtual_discs.h takes it; of a drive its device
  std::string device;  // "Quillon Virtual Recorder (Revision: 1.0)"
  bool isVirtual = false;
  std::string client;    // who has exclusive access; empty for nobody
  std::string problem;   // a sentence when nothing is known of the disc; empty
  bool hasDisc = false;  // the rest is empty without one
  std::string media;     // "cd-rw"
  std::string state;     // "blank", "erased", "appendable", "finalised" or "damaged"
  bool isProtected = false;
  std::uint32_t capacitySectors = 0;
  std::uint32_t freeSectors = 0;  // for a write that overwrites nothing
  std::string image;  // of a virtual disc that holds something: its contents, which can be mounted
};

// In the order in which the service has them; where it makes virtual recorders, the first one is
// made when there is none.
DiscResult listDiscRecorders(std::vector<DiscRecorderStatus>& recorders);

// These take the name of a recorder, or an empty one for the first. They need exclusive access.
// A quick erase (not full) leaves the contents where only the beginning of them is overwritten.
DiscResult eraseDisc(const std::string& recorder, bool full);
// imageLeftAt says where the contents of a virtual disc now are; empty when there are none.
DiscResult ejectDisc(const std::string& recorder, std::string& imageLeftAt);

}  // namespace quillon::platform
