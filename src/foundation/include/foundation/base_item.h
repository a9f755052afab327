// Base of almost every class: its class name, the sentence of its last failure, and the fields
// that list and enumeration items use.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/text_format.h"

namespace quillon {

class CBaseItem {
 public:
  CBaseItem();
  virtual ~CBaseItem();
  // Copies all; item text and class name only when they are not empty.
  CBaseItem(const CBaseItem& other);
  CBaseItem& operator=(const CBaseItem& other);

  // Every field to its default. Always true.
  bool Reset();

  // The name that messages give the object; derived constructors set it. The text lives longer than
  // the object: each of many objects would hold a copy. False, and nothing changed, for an empty
  // one.
  bool SetClassName(TextView name);
  void GetClassName(Text& out) const { out = className_; }
  [[nodiscard]] TextView ClassName() const { return className_; }

  // The sentence of the last failure; no operation clears it at its beginning. Always true.
  bool SetErrorMessage(TextView text);
  bool SetErrorMessage(const Text& text) { return SetErrorMessage(TextView(text)); }
  bool SetErrorMessage(const OLECHAR* text) {
    return SetErrorMessage(text == nullptr ? TextView() : TextView(text));
  }
  // The text of a message of the table; empty when it has none.
  bool SetErrorMessage(UINT id);
  // The text of the message as a format; at most five arguments, at most 1,024 characters result.
  bool SetErrorMessage(UINT id, std::initializer_list<TextArg> args);
  // The platform's text for the thread's last error, "The operation failed." for none.
  bool SetErrorFromLastError();
  void GetErrorMessage(Text& out) const { out = ErrorMessage(); }
  [[nodiscard]] const Text& ErrorMessage() const;
  void ClearError() { SetErrorMessage(TextView()); }

  // Fails with a message, or with another object's sentence: both answer false.
  bool Fail(UINT id) {
    SetErrorMessage(id);
    return false;
  }
  bool Fail(UINT id, std::initializer_list<TextArg> args) {
    SetErrorMessage(id, args);
    return false;
  }
  bool FailAs(const CBaseItem& inner) {
    SetErrorMessage(inner.ErrorMessage());
    return false;
  }
  // The fallback serves when the other object has left none.
  bool FailAs(const CBaseItem& inner, UINT fallbackId) {
    return inner.ErrorMessage().empty() ? Fail(fallbackId) : FailAs(inner);
  }

  // The first 1,024 characters of a message; empty when the table has no such message.
  [[nodiscard]] Text LoadMessage(UINT id) const;
  // The message as a format of the two names, at most 2,048 characters; "The operation failed."
  // when the table has no such message.
  void FormatClassMessage(Text& out, UINT id, TextView className, TextView methodName) const;
  // prefix (or, when that is empty, what out holds) followed by the platform's text for the code,
  // if it has one. Always true.
  bool AppendSystemText(Text& out, DWORD code, TextView prefix) const;

  // Texts that say nothing about a reason and are replaced where a reason is reported: after
  // trimming empty, "The operation succeeded." or the platform's text for success; empty, "The
  // operation failed." or the bare beginning of a text for an unknown code; either.
  static bool IsSuccessText(TextView text);
  static bool IsFailureText(TextView text);
  static bool IsUninformativeText(TextView text);

  // "Line: ...", "Method: ...", "File: ..." and the text, each when there is one and each followed
  // by the separator; the text alone without detailed messages. True unless the separator cannot be
  // read.
  bool SetErrorLocation(TextView file, TextView method, int line, TextView text);
  void SetDetailedMessages(bool detailed) { detailedMessages_ = detailed; }

  void GetItemText(Text& out) const;
  // Stored without white space at its ends. False, and the old text stays, when nothing is left.
  bool SetItemText(TextView text);
  bool GetSeparator(Text& out) const {
    out.assign(1, OLESTR('\n'));
    return true;
  }
  [[nodiscard]] std::uint32_t GetItemValue() const { return itemValue_; }
  void SetItemValue(std::uint32_t value) { itemValue_ = value; }
  [[nodiscard]] std::uint64_t GetItemValue64() const {
    return rare_ == nullptr ? 0 : rare_->itemValue64;
  }
  [[nodiscard]] bool GetItemFlag() const { return itemFlag_; }

 protected:
  // What few of the many items of lists ever have.
  struct Rare {
    Text errorMessage;
    Text itemText;
    std::uint64_t itemValue64 = 0;
  };
  // Made when it is missing.
  Rare& OwnRare();

  TextView className_;
  std::unique_ptr<Rare> rare_;  // null: all of it is empty
  std::uint32_t itemValue_ = 0;
  bool itemFlag_ = false;
  bool detailedMessages_ = true;
};

// The platform's text for a system code or an HRESULT, without its line end; empty when the
// platform has none.
Text SystemText(DWORD code);
// As SystemText, with "Unknown error 0x..." or "IDispatch error #..." where there is none.
Text ResultText(HRESULT hr);

}  // namespace quillon
