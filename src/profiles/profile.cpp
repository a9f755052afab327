#include "profiles/profile.h"

#include <algorithm>
#include <cstdio>

#include "dicom/tags.h"
#include "tables/profile_tables.h"

namespace quillon {

namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

const Profile* FindProfile(std::string_view name) {
  const auto profiles = AllProfiles();
  const auto found = std::ranges::find_if(profiles, [&](const Profile& profile) {
    return std::ranges::equal(profile.name, name, {}, {}, Upper);
  });
  return found == profiles.end() ? nullptr : &*found;
}

std::string MediaText(const Profile& profile) {
  std::string text;
  for (const MediumName& row : MediaNames()) {
    if ((profile.media & row.media) == 0) continue;
    text += text.empty() ? "" : ", ";
    text += row.name;
  }
  return text;
}

bool TakesMedium(const Profile& profile, std::string_view medium) {
  return std::ranges::any_of(Targets(), [&](const MediumName& row) {
    return row.name == medium && (row.media & profile.media) != 0;
  });
}

std::vector<DcTag> ElementsOf(const Profile& profile) {
  constexpr DcTag kNextOverlay = 0x00020000;
  constexpr DcTag kOverlays = 16;
  // Of the transfer syntax and the SOP class the meta information tells; the photometric
  // interpretation may be a condition alone, and Bits Stored what another element goes by.
  std::vector<DcTag> tags{tags::kPhotometricInterpretation, tags::kBitsStored,
                          tags::kBitsAllocated};
  for (const ProfileRule& rule : profile.rules) {
    tags.push_back(rule.element.tag);
    for (DcTag i = 1; rule.test == ProfileTest::NoOverlays && i < kOverlays; ++i) {
      tags.push_back(rule.element.tag + i * kNextOverlay);
    }
  }
  for (const ProfileKey& key : profile.keys) tags.push_back(key.element.tag);
  if (std::ranges::count(profile.keys, ProfileNeed::IfShared, &ProfileKey::need) != 0) {
    tags.push_back(tags::kSharedFunctionalGroupsSequence);
  }
  return tags;
}

std::string ElementText(const ProfileElement& element) {
  char number[16];
  std::snprintf(number, sizeof number, " (%04X,%04X)", static_cast<unsigned>(dcGroup(element.tag)),
                static_cast<unsigned>(dcElement(element.tag)));
  return std::string(element.name) + number;
}

}  // namespace quillon
