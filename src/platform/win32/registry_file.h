// The registry as a tree, and the standard .reg text that it is kept in:
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Company]
//   @="default value"
//   "Name"="text with \\ and \""
//   "Number"=dword:0000000a
//   "Other"=hex(7):41,00,00,00,00,00
//   "Gone"=-
//
//   [-HKEY_LOCAL_MACHINE\SOFTWARE\Gone]
//
// Lines that begin with ";" are comments. A line of bytes that ends in a backslash goes on in the
// next.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32/types.h"

namespace quillon::platform {

// Names keep the case that they were first given and are found in any.
struct NameOrder {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const;
};

struct RegistryValue {
  DWORD type = 0;
  std::vector<BYTE> data;  // text as 16-bit little-endian units with its terminator
};

struct RegistryKey {
  std::map<std::u16string, RegistryValue, NameOrder> values;  // the default one has an empty name
  std::map<std::u16string, RegistryKey, NameOrder> subkeys;

  // Paths are separated by "\"; an empty path is this key. Null when missing.
  RegistryKey* find(std::u16string_view path);
  // Makes what is missing of the path; created tells whether the last part was.
  RegistryKey& make(std::u16string_view path, bool& created);
  // False when missing.
  bool remove(std::u16string_view path);
};

enum class RegistryEncoding { Utf8, Utf16 };

struct RegistryDocument {
  RegistryKey roots;  // its subkeys are the predefined keys
  RegistryEncoding encoding = RegistryEncoding::Utf8;
  // A line that is not understood: such a file is read as far as it goes and never rewritten, which
  // would lose the line.
  bool damaged = false;
  std::size_t damagedLine = 0;  // the first such line, from 1
};

RegistryDocument parseRegistry(std::string_view bytes);
std::string writeRegistry(const RegistryDocument& document);

}  // namespace quillon::platform
