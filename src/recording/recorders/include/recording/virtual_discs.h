// Linux only: virtual recorders and the discs in them, for a program that plays the part of the
// user's hands. Recorders are directories below $QUILLON_RECORDERS, by default
// $XDG_DATA_HOME/quillon/recorders. Names and paths are native ones (bytes).
//
// Operations that change a disc fail with E_IMAPI_RECORDER_LOCKED while a client has the recorder.
// Every failure carries a sentence. An empty recorder name means the first recorder; where there is
// none, it is made, with a blank CD-R in it, as the disc-mastering service does.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "recording/disc_result.h"

namespace quillon::platform {

struct VirtualRecorderStatus {
  std::string name;
  std::string directory;
  std::u16string uniqueId;  // as the disc-mastering service gives it
  std::string client;       // who has exclusive access; empty for nobody
  bool hasDisc = false;     // the rest is empty without one
  std::string media;        // "cd-rw"
  // "blank", "erased" (blank, after a quick erase), "appendable", "finalised" or "damaged"
  std::string state;
  bool isProtected = false;
  std::uint32_t capacitySectors = 0;
  std::uint32_t usedSectors = 0;
  std::string image;  // the contents, which can be mounted; empty for a blank disc
};

struct DiscToInsert {
  // One of virtualMediaNames(). Empty: what the image was when it was ejected, else "cd-r" for a
  // blank disc and for an image the smallest of cd-rom, dvd-r and bd-r that holds it, finalised.
  std::string media;
  std::optional<std::uint32_t> capacitySectors;  // by default the usual one of the media
  std::string image;  // a file with the contents, which is copied; empty for a blank disc
  bool isProtected = false;
};

// The kinds of disc, as users name them.
std::vector<std::string_view> virtualMediaNames();

DiscResult listVirtualRecorders(std::vector<VirtualRecorderStatus>& recorders);
// While a client has the recorder, all but what concerns the disc is filled in all the same.
DiscResult virtualRecorderStatus(const std::string& recorder, VirtualRecorderStatus& status);
// Makes an empty recorder. The name is one of a directory, without separators.
DiscResult createVirtualRecorder(const std::string& name);
// Refused while there is a disc in the recorder, for an unknown media, a capacity that the media
// does not come in, and an image that does not fit or is not made of whole sectors.
DiscResult insertVirtualDisc(const std::string& recorder, const DiscToInsert& disc);
// Takes the disc out, if there is one. imageLeftAt says where its contents now are; empty when
// there were none.
DiscResult ejectVirtualDisc(const std::string& recorder, std::string& imageLeftAt);

}  // namespace quillon::platform
