// Identifiers as text, and new ones.
#include <sys/random.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/com/runtime.h"

namespace {

constexpr int kTextUnits = 38;  // "{8-4-4-4-12}"

int hexDigit(OLECHAR unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  return -1;
}

bool parseGuid(LPCOLESTR text, GUID& guid) {
  constexpr std::string_view kShape = "{hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh}";
  std::array<BYTE, 16> bytes{};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    if (kShape[i] != 'h') {
      if (text[i] != static_cast<OLECHAR>(kShape[i])) return false;
      continue;
    }
    const int digit = hexDigit(text[i]);
    if (digit < 0) return false;
    BYTE& byte = bytes[digits++ / 2];
    byte = static_cast<BYTE>(byte << 4 | digit);
  }
  if (text[kShape.size()] != 0) return false;
  guid.Data1 = static_cast<DWORD>(bytes[0]) << 24 | static_cast<DWORD>(bytes[1]) << 16 |
               static_cast<DWORD>(bytes[2]) << 8 | bytes[3];
  guid.Data2 = static_cast<WORD>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<WORD>(bytes[6] << 8 | bytes[7]);
  std::memcpy(guid.Data4, bytes.data() + 8, sizeof guid.Data4);
  return true;
}

}  // namespace

HRESULT CoCreateGuid(GUID* guid) {
  if (guid == nullptr) return E_INVALIDARG;
  if (::getrandom(guid, sizeof *guid, 0) != static_cast<ssize_t>(sizeof *guid)) return E_UNEXPECTED;
  // A random identifier says so: version 4, and the variant of the standard.
  guid->Data3 = static_cast<WORD>((guid->Data3 & 0x0FFF) | 0x4000);
  guid->Data4[0] = static_cast<BYTE>((guid->Data4[0] & 0x3F) | 0x80);
  return S_OK;
}

int StringFromGUID2(REFGUID guid, LPOLESTR text, int units) {
  if (text == nullptr || units < kTextUnits + 1) return 0;
  std::array<char, kTextUnits + 1> buffer;
  const BYTE* d = guid.Data4;
  std::snprintf(buffer.data(), buffer.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                guid.Data1, guid.Data2, guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
  for (std::size_t i = 0; i < buffer.size(); ++i) text[i] = static_cast<OLECHAR>(buffer[i]);
  return kTextUnits + 1;
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text) {
  if (text == nullptr) return E_INVALIDARG;
  *text = static_cast<LPOLESTR>(CoTaskMemAlloc((kTextUnits + 1) * sizeof(OLECHAR)));
  if (*text == nullptr) return E_OUTOFMEMORY;
  StringFromGUID2(clsid, *text, kTextUnits + 1);
  return S_OK;
}

HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid) {
  if (clsid == nullptr) return E_INVALIDARG;
  *clsid = CLSID_NULL;
  // No text stands for the null identifier.
  if (text == nullptr) return S_OK;
  CLSID parsed{};
  if (!parseGuid(text, parsed)) return CO_E_CLASSSTRING;
  *clsid = parsed;
  return S_OK;
}

HRESULT IIDFromString(LPCOLESTR text, IID* iid) {
  const HRESULT hr = CLSIDFromString(text, iid);
  return hr == CO_E_CLASSSTRING ? E_INVALIDARG : hr;
}
