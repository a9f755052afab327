// Which of the objects that are offered are wanted.
#pragma once

#include <vector>

#include "foundation/text.h"

namespace quillon {

// What a file says of the series that its object belongs to.
struct ObjectPlace {
  Text studyUid;
  Text seriesUid;
  Text modality;
  Text date;  // YYYYMMDD, of the study, else of the series, the acquisition or the content
};

// An object is wanted when each condition that is there takes it.
struct ObjectSelection {
  // One of them each; empty: any.
  std::vector<Text> studyUids;
  std::vector<Text> seriesUids;
  std::vector<Text> modalities;
  // YYYYMMDD, from this day on; empty: any. An object without a date is not taken.
  Text since;

  [[nodiscard]] bool TakesAll() const {
    return studyUids.empty() && seriesUids.empty() && modalities.empty() && since.empty();
  }
  [[nodiscard]] bool Takes(const ObjectPlace& place) const;
};

}  // namespace quillon
