// Text whose bytes are characters of two sets, between which escape sequences switch (ISO 2022).
#pragma once

#include <string_view>

#include "charset/character_set.h"
#include "graphic_sets.h"
#include "text_run.h"

namespace quillon {

class CodeExtensionDecoder {
 public:
  // g0 and g1 (null: none) are what a value begins with, and what it returns to at a delimiter.
  CodeExtensionDecoder(const GraphicSet& g0, const GraphicSet* g1, ValueForm form)
      : firstG0_(&g0), firstG1_(g1), form_(form), g0_(&g0), g1_(g1) {}

  [[nodiscard]] Text Decode(std::string_view bytes);

 private:
  // Each takes what the bytes begin with and answers how many it took.
  std::size_t TakeEscape(std::string_view bytes);
  std::size_t TakeLow(std::string_view bytes);
  std::size_t TakeHigh(std::string_view bytes);

  [[nodiscard]] bool IsDelimiter(char c) const;
  void Reset();

  const GraphicSet* firstG0_;
  const GraphicSet* firstG1_;
  ValueForm form_;
  const GraphicSet* g0_;
  const GraphicSet* g1_;
  TextRun run_;
};

}  // namespace quillon
