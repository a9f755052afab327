// Walks a tag path ("0040a043,SQ,1:00080104,LO") step by step, without copying any of it.
#pragma once

#include <cstdint>
#include <string_view>

#include "dicom/types.h"

namespace quillon {

struct TagPathStep {
  DcTag tag = 0;
  // The item to enter, counted from 1; 0 in the last step, which names the element itself.
  std::uint32_t itemFromOne = 0;
};

class TagPathCursor {
 public:
  explicit TagPathCursor(std::string_view path) : rest_(path) {}
  // False when what follows is no step: too short, a digit that is none, no comma, an item number
  // that is none, a VR that is not two capital letters, text behind the VR.
  [[nodiscard]] bool Next(TagPathStep& step);

 private:
  std::string_view rest_;
};

}  // namespace quillon
