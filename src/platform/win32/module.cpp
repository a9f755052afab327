// The module and its string table.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <string>
#include <unordered_map>

#include "platform/win32/errors.h"
#include "platform/win32/string_table.h"
#include "platform/win32/system.h"
#include "platform/win32/text.h"
#include "win32/last_error.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// Built on first use: the rows may be registered from a static initialiser that runs before those
// of this file.
using TextById = std::unordered_map<UINT, const OLECHAR*>;

TextById& moduleTexts() {
  static TextById texts;
  return texts;
}

bool hasBlockOf(const TextById& texts, UINT id) {
  constexpr UINT kTextsOfBlock = 16;
  const UINT first = id / kTextsOfBlock * kTextsOfBlock;
  for (UINT other = first; other < first + kTextsOfBlock; ++other) {
    if (texts.contains(other)) return true;
  }
  return false;
}

// Stands for the program; its address is never looked into.
char programModule;

HINSTANCE programHandle() { return reinterpret_cast<HINSTANCE>(&programModule); }

std::string programPath() {
  std::array<char, PATH_MAX> path;
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  return length < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

// The loader keeps the name that a module was loaded by.
std::string absolutePath(const char* name) {
  std::array<char, PATH_MAX> path;
  if (name[0] == '/' || ::realpath(name, path.data()) == nullptr) return name;
  return path.data();
}

}  // namespace

void SetModuleStringTable(const StringTableRow* rows, std::size_t count) {
  TextById texts;
  texts.reserve(count);
  for (std::size_t i = 0; rows != nullptr && i < count; ++i)
    texts.emplace(rows[i].id, rows[i].text);
  moduleTexts() = std::move(texts);
}

}  // namespace quillon::platform

using namespace quillon::platform;

int WINAPI LoadStringW(HINSTANCE, UINT id, LPWSTR buffer, int bufferUnits) {
  if (buffer == nullptr || bufferUnits < 0) return failWith(ERROR_INVALID_PARAMETER);
  const TextById& texts = moduleTexts();
  // The number of a text in a string table has 16 bits.
  const auto found = texts.find(id & 0xFFFF);
  if (found == texts.end()) {
    if (hasBlockOf(texts, id & 0xFFFF)) {
      if (bufferUnits > 0) buffer[0] = 0;
      return 0;
    }
    return failWith(texts.empty() ? ERROR_RESOURCE_DATA_NOT_FOUND : ERROR_RESOURCE_NAME_NOT_FOUND);
  }
  const std::u16string_view text = found->second;
  if (bufferUnits == 0) {
    *reinterpret_cast<const OLECHAR**>(buffer) = text.data();
    return static_cast<int>(text.size());
  }
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(bufferUnits - 1));
  std::copy_n(text.begin(), length, buffer);
  buffer[length] = 0;
  return static_cast<int>(length);
}

HMODULE WINAPI GetModuleHandleW(LPCWSTR name) {
  if (name == nullptr) return programHandle();
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR name, HMODULE* module) {
  if (module == nullptr) return failWith(ERROR_INVALID_PARAMETER);
  *module = nullptr;
  if ((flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) == 0) {
    *module = GetModuleHandleW(name);
    return *module != nullptr ? TRUE : FALSE;
  }
  Dl_info info{};
  if (::dladdr(static_cast<const void*>(name), &info) == 0) return failWith(ERROR_MOD_NOT_FOUND);
  *module = static_cast<HMODULE>(info.dli_fbase);
  return TRUE;
}

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD bufferUnits) {
  std::string path;
  Dl_info info{};
  if (module == nullptr || module == programHandle()) {
    path = programPath();
  } else if (::dladdr(static_cast<const void*>(module), &info) != 0 && info.dli_fname != nullptr) {
    path = absolutePath(info.dli_fname);
  }
  if (path.empty() || buffer == nullptr || bufferUnits == 0) {
    SetLastError(path.empty() ? ERROR_MOD_NOT_FOUND : ERROR_INVALID_PARAMETER);
    return 0;
  }
  std::u16string text = wideFromNative(path);
  if (text.size() < bufferUnits) return copyOut(text, buffer, bufferUnits);
  text.resize(bufferUnits - 1);
  copyOut(text, buffer, bufferUnits);
  SetLastError(ERROR_INSUFFICIENT_BUFFER);
  return bufferUnits;
}
