// Whether an object meets a profile. Only its header is asked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dicom/elem_list.h"
#include "profiles/profile.h"

namespace quillon {

struct ProfileObject {
  std::string_view sopClassUid;
  std::string_view transferSyntaxUid;
  // The standard knows the class: its records have a type of their own.
  bool isKnownClass;
  const DcElemList& elements;  // with those of ElementsOf
  bool isReadable = true;      // else nothing is asked of the elements: they are compressed, say
};

// What is wrong with an object.
struct ProfileBreach {
  std::string rule;   // "Rows (0028,0010) must be at most 512"
  std::string found;  // "1024", "none"
};

std::vector<ProfileBreach> CheckObject(const Profile& profile, const ProfileObject& object);

// Whether records of the type, for objects of the class, are to have the key in some way.
bool Concerns(const ProfileKey& key, DcDirRecType type, std::string_view sopClassUid);
// Whether a record that the key concerns must have a value for it, by what the object says.
bool WantsValue(const ProfileKey& key, const DcElemList& elements);
// Whether the object has one to give: a value, or an item.
bool HasValueFor(const ProfileKey& key, const DcElemList& elements);
// What an object gives for a key: an element of its own, or of the functional groups that its
// frames share. Null when there is none.
DcElem* FindForKey(const DcElemList& elements, DcTag tag);

// The rules that hold for a set as a whole, as texts of the same form.
std::string MediumRule(const Profile& profile);
std::string KeyRule(const ProfileKey& key);
std::string IconRule(const Profile& profile);
inline constexpr std::string_view kPatientIdRule =
    "Patient ID (0010,0020) must be another one for each patient";

}  // namespace quillon
