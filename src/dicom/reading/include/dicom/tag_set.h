// A set of tags that is asked for every element of every file: nearly always for one that it does
// not have.
#pragma once

#include <algorithm>
#include <bitset>
#include <utility>
#include <vector>

#include "dicom/types.h"

namespace quillon {

class DcTagSet {
 public:
  explicit DcTagSet(std::vector<DcTag> tags) : sorted_(std::move(tags)) {
    std::ranges::sort(sorted_);
    for (const DcTag tag : sorted_) places_.set(placeOf(tag));
  }
  [[nodiscard]] bool contains(DcTag tag) const {
    return places_.test(placeOf(tag)) && std::ranges::binary_search(sorted_, tag);
  }

 private:
  static constexpr std::size_t kPlaces = 2048;
  static std::size_t placeOf(DcTag tag) { return (tag ^ (tag >> 16) * 37U) % kPlaces; }

  std::vector<DcTag> sorted_;
  std::bitset<kPlaces> places_;
};

}  // namespace quillon
