// The dual interface that a host drives, with the identifiers to ask for it: what a host written in
// C++ includes. Which operations there are, and their order, stands in operations.inc; what they do
// in server/media_object/media_rw.h.
//
//   CoCreateInstance(quillon::CLSID_QuillonMediaRW, nullptr, CLSCTX_INPROC_SERVER,
//                    quillon::IID_IQuillonMediaRW, ...)
//
// Every operation answers S_OK or S_FALSE; the reason of a failure is in ErrMessageText. An object
// belongs to the thread that made it.
#pragma once

#include "platform/com.h"
#include "server/com_server/identities.inc"

namespace quillon {

// Of "8-4-4-4-12" hexadecimal digits.
consteval GUID GuidOf(const char (&text)[37]) {
  constexpr int kFirstOfLastEight = 8;
  GUID guid{};
  int digits = 0;
  for (int at = 0; at < 36; ++at) {
    if (text[at] == '-') continue;
    const char c = text[at];
    const auto digit = static_cast<DWORD>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
    const int byte = digits / 2;
    ++digits;
    if (byte < 4) {
      guid.Data1 = guid.Data1 << 4 | digit;
    } else if (byte < 6) {
      guid.Data2 = static_cast<WORD>(DWORD{guid.Data2} << 4 | digit);
    } else if (byte < kFirstOfLastEight) {
      guid.Data3 = static_cast<WORD>(DWORD{guid.Data3} << 4 | digit);
    } else {
      BYTE& last = guid.Data4[byte - kFirstOfLastEight];
      last = static_cast<BYTE>(DWORD{last} << 4 | digit);
    }
  }
  return guid;
}

#define QUILLON_TEXT_OF(id) #id
#define QUILLON_ID_TEXT(id) QUILLON_TEXT_OF(id)

inline constexpr CLSID CLSID_QuillonMediaRW = GuidOf(QUILLON_ID_TEXT(QUILLON_CLASS_ID));
inline constexpr IID IID_IQuillonMediaRW = GuidOf(QUILLON_ID_TEXT(QUILLON_INTERFACE_ID));
inline constexpr GUID LIBID_QuillonMediaRWLib = GuidOf(QUILLON_ID_TEXT(QUILLON_TYPE_LIBRARY_ID));
inline constexpr GUID APPID_QuillonMediaRW = GuidOf(QUILLON_ID_TEXT(QUILLON_APP_ID));

inline constexpr const OLECHAR* kVersionedProgId = OLESTR("QuillonMediaRW.QuillonMediaRW.1");
inline constexpr const OLECHAR* kProgId = OLESTR("QuillonMediaRW.QuillonMediaRW");

struct IQuillonMediaRW : public IDispatch {
#define QUILLON_METHOD(method, parameters, arguments) \
  virtual HRESULT STDMETHODCALLTYPE method parameters = 0;
#include "server/com_server/operations.inc"
};

}  // namespace quillon
