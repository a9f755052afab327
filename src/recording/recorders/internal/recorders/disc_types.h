// The kinds of disc that a virtual recorder takes.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "platform/imapi2.h"

namespace quillon::platform {

enum class Rewriting {
  Never,    // pressed
  Once,     // written from the first sector on, for good
  Erased,   // the same, but erasing makes it blank again
  InPlace,  // any sector can be written at any time; erasing works too
};

struct DiscType {
  std::string_view keyword;  // what users call it: "cd-r"
  IMAPI_MEDIA_PHYSICAL_TYPE physicalType;
  LONG profile;
  Rewriting rewriting;
  std::uint32_t usualSectors;    // of 2048 bytes
  std::uint32_t largestSectors;  // the largest discs of the kind on the market
  // What closing the first session takes from the room of the next one.
  std::uint32_t sessionSectors;
  // A write closes the disc unless the caller renounces players: there is one session only.
  bool isClosedForPlayers;
  std::vector<LONG> writeSpeeds;  // sectors per second, fastest first
  std::vector<LONG> features;     // those of the disc; the drive has some of its own
};

std::span<const DiscType> discTypes();
const DiscType* findDiscType(std::string_view keyword);  // null for none

// Features and mode pages that a drive has whatever lies in it.
std::span<const LONG> driveFeatures();
std::span<const LONG> driveModePages();

}  // namespace quillon::platform
