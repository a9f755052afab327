// The media object's operations, called as a host does.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "server/media_object/media_rw.h"
#include "support/text.h"

namespace quillon::test {

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80070057);
constexpr std::int16_t kTrue = -1;

class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(const std::string& utf8) {
    const Text text = WideOf(utf8);
    value_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  ~Bstr() { SysFreeString(value_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  [[nodiscard]] BSTR get() const { return value_; }
  BSTR* out() { return &value_; }
  [[nodiscard]] bool isNull() const { return value_ == nullptr; }
  [[nodiscard]] std::string text() const {
    return isNull() ? std::string() : Plain(TextView(value_, SysStringLen(value_)));
  }

 private:
  BSTR value_ = nullptr;
};

using GetString = HRESULT (CQuillonMediaRW::*)(BSTR*);
using PutString = HRESULT (CQuillonMediaRW::*)(BSTR);
using GetBool = HRESULT (CQuillonMediaRW::*)(VARIANT_BOOL*);
using PutBool = HRESULT (CQuillonMediaRW::*)(VARIANT_BOOL);

struct TextProperty {
  GetString get;
  PutString put;
};
#define QUILLON_TEXT_PROPERTY(name)                            \
  inline constexpr TextProperty k##name {                      \
    &CQuillonMediaRW::get_##name, &CQuillonMediaRW::put_##name \
  }
QUILLON_TEXT_PROPERTY(VolumeName);
QUILLON_TEXT_PROPERTY(DicomRootDirectory);
QUILLON_TEXT_PROPERTY(DicomObjectDirectory);
QUILLON_TEXT_PROPERTY(OtherContentDirectory);
QUILLON_TEXT_PROPERTY(DirectCopyDirectory);
QUILLON_TEXT_PROPERTY(UniquePatientId);
#undef QUILLON_TEXT_PROPERTY

inline std::string textOf(CQuillonMediaRW& media, GetString get) {
  Bstr value;
  EXPECT_EQ((media.*get)(value.out()), S_OK);
  return value.text();
}

inline std::string errorOf(CQuillonMediaRW& media) {
  return textOf(media, &CQuillonMediaRW::get_ErrMessageText);
}

// Result as the last operation left it.
inline HRESULT resultOf(CQuillonMediaRW& media) {
  LONG result = 77;
  EXPECT_EQ(media.get_Result(&result), S_OK);
  return static_cast<HRESULT>(result);
}

}  // namespace quillon::test
