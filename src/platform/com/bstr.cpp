#include "platform/com/bstr.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace {

// bytes before the text: 4 of padding where pointers have 8, so that the text is as aligned as
// any memory, then the length.
constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kLengthBytes = 4;
constexpr std::size_t kTerminatorBytes = sizeof(OLECHAR);

BSTR allocate(std::size_t lengthBytes) {
  if (lengthBytes > std::numeric_limits<std::uint32_t>::max() - kHeaderBytes - kTerminatorBytes) {
    return nullptr;
  }
  auto* memory = static_cast<char*>(
      ::operator new(kHeaderBytes + lengthBytes + kTerminatorBytes, std::nothrow));
  if (memory == nullptr) return nullptr;
  char* text = memory + kHeaderBytes;
  const auto length = static_cast<std::uint32_t>(lengthBytes);
  std::memcpy(text - kLengthBytes, &length, kLengthBytes);
  std::memset(text + lengthBytes, 0, kTerminatorBytes);
  return reinterpret_cast<BSTR>(text);
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) {
  if (text == nullptr) return nullptr;
  return SysAllocStringLen(text, static_cast<UINT>(std::char_traits<OLECHAR>::length(text)));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT units) {
  BSTR bstr = allocate(std::size_t{units} * sizeof(OLECHAR));
  if (bstr != nullptr && text != nullptr) std::copy_n(text, units, bstr);
  return bstr;
}

BSTR SysAllocStringByteLen(LPCSTR bytes, UINT lengthBytes) {
  BSTR bstr = allocate(lengthBytes);
  if (bstr != nullptr && bytes != nullptr) std::memcpy(bstr, bytes, lengthBytes);
  return bstr;
}

int SysReAllocString(BSTR* bstr, const OLECHAR* text) {
  if (bstr == nullptr) return FALSE;
  if (text == nullptr) {
    SysFreeString(*bstr);
    *bstr = nullptr;
    return TRUE;
  }
  return SysReAllocStringLen(bstr, text,
                             static_cast<UINT>(std::char_traits<OLECHAR>::length(text)));
}

int SysReAllocStringLen(BSTR* bstr, const OLECHAR* text, UINT units) {
  if (bstr == nullptr) return FALSE;
  BSTR replacement = SysAllocStringLen(text, units);
  if (replacement == nullptr) return FALSE;
  // Without a new text the old one stays, as far as there is room.
  if (text == nullptr && *bstr != nullptr) {
    std::copy_n(*bstr, std::min(units, SysStringLen(*bstr)), replacement);
  }
  SysFreeString(*bstr);
  *bstr = replacement;
  return TRUE;
}

void SysFreeString(BSTR bstr) {
  if (bstr != nullptr) ::operator delete(reinterpret_cast<char*>(bstr) - kHeaderBytes);
}

UINT SysStringByteLen(BSTR bstr) {
  if (bstr == nullptr) return 0;
  std::uint32_t length = 0;
  std::memcpy(&length, reinterpret_cast<const char*>(bstr) - kLengthBytes, kLengthBytes);
  return length;
}

UINT SysStringLen(BSTR bstr) { return SysStringByteLen(bstr) / static_cast<UINT>(sizeof(OLECHAR)); }
