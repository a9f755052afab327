// Gives the message table to the layer's LoadStringW on Linux. Windows has the same list as a
// resource of the module.
#include <cstddef>
#include <iterator>

#include "platform/win32.h"
#include "platform/win32/string_table.h"

namespace {

using quillon::platform::StringTableRow;

constexpr StringTableRow kRows[] = {
#define QUILLON_MESSAGE(name, number, text) {(number), OLESTR(text)},
#include "messages.inc"
#undef QUILLON_MESSAGE
    {0, nullptr},  // an array needs a row even while the table has none
};
constexpr std::size_t kRowCount = std::size(kRows) - 1;

// Runs before main: every program that links this object has the table.
[[maybe_unused]] const bool kRegistered = [] {
  quillon::platform::SetModuleStringTable(kRows, kRowCount);
  return true;
}();

}  // namespace
