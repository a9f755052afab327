// Wide text in tests.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/com.h"

namespace quillon {
using Text = std::basic_string<OLECHAR>;
using TextView = std::basic_string_view<OLECHAR>;
}  // namespace quillon

namespace quillon::test {

inline Text WideOf(const std::filesystem::path& path) {
#ifdef _WIN32
  return path.native();
#else
  return path.u16string();
#endif
}
inline std::string Plain(TextView text) {
  const std::u8string utf8 = std::filesystem::path(text).u8string();
  return {utf8.begin(), utf8.end()};
}

}  // namespace quillon::test
