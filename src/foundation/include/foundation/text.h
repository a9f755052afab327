// Wide text as the application classes hold it, and the small rules they store and compare it by.
#pragma once

#include <string>
#include <string_view>

#include "platform/com.h"
#include "platform/win32.h"

namespace quillon {

// char16_t units on Linux, wchar_t units (also 16 bits) on Windows. Absent text is a null pointer
// or an empty optional, never an empty Text.
using Text = std::basic_string<OLECHAR>;
using TextView = std::basic_string_view<OLECHAR>;

// Refuses (false, dst unchanged) an empty src when allowEmpty is false, and one longer than
// maxLen units when maxLen is not 0.
[[nodiscard]] bool AssignText(Text& dst, TextView src, bool allowEmpty, std::size_t maxLen);
[[nodiscard]] bool AssignText(Text& dst, TextView src, std::size_t maxLen);

// Space, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool IsWhiteSpace(OLECHAR unit) {
  return unit == OLESTR(' ') || (unit >= OLESTR('\t') && unit <= OLESTR('\r'));
}

constexpr TextView TrimmedView(TextView text) {
  while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
  while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
  return text;
}

// Removes white space at both ends. False only when memory runs out.
bool TrimText(Text& text);

// Case-sensitive; two absent (null) texts are equal, an absent one never equals a present one.
bool TextEquals(const OLECHAR* a, const OLECHAR* b);

// Units before the terminator; 0 for an absent text.
std::size_t TextLength(const OLECHAR* text);

// Converts into at most outLen bytes with the terminator. Answers out, or null on failure.
[[nodiscard]] char* WideToNarrow(char* out, const OLECHAR* wide, int outLen, UINT codePage);

// The same without a buffer of fixed size; what the code page cannot hold becomes its default
// character. DICOM values use CP_ACP, file names FileSystemCodePage().
std::string NarrowText(TextView text, UINT codePage);
Text WidenText(std::string_view text, UINT codePage);

// Decimal.
Text NumberText(long long value);

}  // namespace quillon
