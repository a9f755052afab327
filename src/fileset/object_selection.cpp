#include "fileset/object_selection.h"

#include <algorithm>

namespace quillon {
namespace {

bool HasOne(const std::vector<Text>& wanted, const Text& text) {
  return wanted.empty() || std::ranges::find(wanted, text) != wanted.end();
}

}  // namespace

bool ObjectSelection::Takes(const ObjectPlace& place) const {
  return HasOne(studyUids, place.studyUid) && HasOne(seriesUids, place.seriesUid) &&
         HasOne(modalities, place.modality) && (since.empty() || place.date >= since);
}

}  // namespace quillon
