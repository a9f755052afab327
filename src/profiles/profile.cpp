#include "profiles/profile.h"

#include <algorithm>
#include <cstdio>

#include "dicom/tags.h"
#include "tables/profile_tables.h"

namespace quillon {

namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// How many characters have to be put in, taken out or changed.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (Upper(a[i]) == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, diagonal + 1, changed});
    }
  }
  return row.back();
}

}  // namespace

const Profile* FindProfile(std::string_view name) {
  const auto profiles = AllProfiles();
  const auto found = std::ranges::find_if(profiles, [&](const Profile& profile) {
    return std::ranges::equal(profile.name, name, {}, {}, Upper);
  });
  return found == profiles.end() ? nullptr : &*found;
}

std::string_view NearestProfile(std::string_view name) {
  const auto nearest = std::ranges::min_element(
      AllProfiles(), {}, [&](const Profile& profile) { return Distance(name, profile.name); });
  return nearest->name;
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
