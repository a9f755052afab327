// Makes one sentence of what the XML libraries say.
#pragma once

#include <string>
#include <string_view>

namespace quillon::platform {

// The message in one line, where it belongs, and a full stop: "Start tag expected, '<' not found
// (line 1, column 1)." A line or column of 0 and an empty file are left out.
std::string sentenceWithPlace(std::string_view message, std::string_view file, int line,
                              int column);

// Whether text is what libxslt puts in front of an error.
bool isPlaceOfError(std::string_view text);

// The name of the instruction that libxslt says to have passed over, because the language has none
// of that name; empty for any other text.
std::string_view instructionNotCompiled(std::string_view text);

// Whether a compilation that ended well has met such an instruction, which it only warns of.
bool namesUnknownInstruction(std::string_view errors);

// The first error in what libxslt gave out for a compilation or a transform, with the place that it
// names; fallback where there is none.
std::string sentenceOfXslt(std::string_view errors, std::string_view fallback);

}  // namespace quillon::platform
