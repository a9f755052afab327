// The media application profiles: for each the objects with their transfer syntaxes and values, the
// keys of the directory, and the media that a file set of it may have. Data alone: what an object
// is asked stands in profile_check.h.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dicom/dir_rec.h"
#include "dicom/types.h"

namespace quillon {

// What a rule looks at; a tag of 0 stands for nothing.
struct ProfileElement {
  DcTag tag = 0;
  std::string_view name;
};

// Values of a rule stand in one text with backslashes between them.

// A rule may hold for some objects of its SOP class only.
struct ProfileCondition {
  ProfileElement element;
  std::string_view values;
};

enum class ProfileTest : std::uint8_t {
  OneOf,         // the value is one of `values`
  AtMost,        // a number of `values` or less
  Anything,      // whatever it is
  There,         // the element, which may be empty
  Items,         // a sequence with an item
  Components,    // a sequence with an item that has Pixel Component Organization
  OneLess,       // one less than Bits Stored
  AllAllocated,  // as many as Bits Allocated
  Narrowest,     // 8 bits for 8 stored ones, else 16
  NoOverlays,    // no element of this number in any group of overlays
};

// One row of a profile. A profile takes the SOP classes that its rows for the transfer syntax name.
struct ProfileRule {
  std::string_view sopClass;  // kAnySopClass: every one that the standard stores on media
  ProfileCondition when;
  ProfileElement element;
  ProfileTest test;
  std::string_view values;
};
inline constexpr std::string_view kAnySopClass = "*";

enum class ProfileNeed : std::uint8_t {
  Value,      // with a value
  Place,      // which may be empty
  IfThere,    // where the object has a value
  IfShared,   // where it has one, or the functional groups that its frames share have
  IfBiplane,  // with a value for an image of one of two planes; else where the object has one
};

// A key of a directory record beyond those that every DICOMDIR has.
struct ProfileKey {
  DcDirRecType type;
  ProfileElement element;
  ProfileNeed need;
  std::string_view sopClass = kAnySopClass;  // of the objects whose records need it
};

// A set of bits.
enum ProfileMedia : std::uint16_t {
  kCdR = 1 << 0,
  kDvdRam = 1 << 1,
  kDvd = 1 << 2,  // any but DVD-RAM
  kBd = 1 << 3,
  kMod23 = 1 << 4,
  kMod41 = 1 << 5,
  kUsb = 1 << 6,
  kMmc = 1 << 7,
  kCf = 1 << 8,
  kSd = 1 << 9,
  kZip = 1 << 10,
  kMime = 1 << 11,
};

struct Profile {
  std::string_view name;     // "STD-GEN-CD"
  std::string_view purpose;  // what it is for, as a phrase
  std::uint16_t media;
  std::span<const ProfileRule> rules;
  std::span<const ProfileKey> keys;
  std::uint16_t iconPixels;  // rows and columns of the icon that each image's record has; 0: none
  bool hasUniquePatientIds;  // two patients never have one ID
};

std::span<const Profile> AllProfiles();
// Null when there is none. Upper and lower case are the same.
const Profile* FindProfile(std::string_view name);

// "CD-R", "USB".
std::string MediaText(const Profile& profile);
// Of a kind of disc by its keyword ("cd-r"), "image" of a disc, "directory" or "zip". A directory
// stands for what has a file system of its own, such as a memory stick.
bool TakesMedium(const Profile& profile, std::string_view medium);

// What an object has to be read for, for its rules and for its keys.
std::vector<DcTag> ElementsOf(const Profile& profile);

// "Rows (0028,0010)"
std::string ElementText(const ProfileElement& element);

}  // namespace quillon
