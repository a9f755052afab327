// The exception that wraps a failed HRESULT, and the text class it answers with.
#pragma once

#include <string>

#include "platform/com/bstr.h"
#include "platform/com/error_info.h"

// An immutable shared text; null stands for the empty one.
class _bstr_t {
 public:
  _bstr_t() noexcept = default;
  _bstr_t(const char* text);  // in the ANSI code page
  _bstr_t(const OLECHAR* text);
  _bstr_t(BSTR bstr, bool copy);  // without a copy, takes the text over
  _bstr_t(const _bstr_t& other) noexcept;
  _bstr_t(_bstr_t&& other) noexcept;
  ~_bstr_t();
  _bstr_t& operator=(const _bstr_t& other) noexcept;
  _bstr_t& operator=(_bstr_t&& other) noexcept;

  operator const OLECHAR*() const noexcept;
  [[nodiscard]] unsigned int length() const noexcept;
  [[nodiscard]] BSTR copy(bool fCopy = true) const;
  bool operator!() const noexcept { return data_ == nullptr; }
  _bstr_t operator+(const _bstr_t& other) const;
  _bstr_t& operator+=(const _bstr_t& other);
  bool operator==(const _bstr_t& other) const noexcept;

 private:
  struct Data;
  explicit _bstr_t(Data* data) noexcept : data_(data) {}
  void release() noexcept;

  Data* data_ = nullptr;
};

class _com_error {
 public:
  // Takes info over, or with addRef a reference of its own.
  explicit _com_error(HRESULT hr, IErrorInfo* info = nullptr, bool addRef = false) noexcept;
  _com_error(const _com_error& other) noexcept;
  _com_error& operator=(const _com_error& other) noexcept;
  virtual ~_com_error();

  [[nodiscard]] HRESULT Error() const noexcept { return hr_; }
  // A reference for the caller, or null.
  [[nodiscard]] IErrorInfo* ErrorInfo() const noexcept;
  [[nodiscard]] _bstr_t Description() const;
  [[nodiscard]] _bstr_t Source() const;
  // The system's text without its line end, "IDispatch error #n" or "Unknown error 0x...".
  [[nodiscard]] const OLECHAR* ErrorMessage() const;

 private:
  HRESULT hr_;
  IErrorInfo* info_;
  mutable std::u16string message_;
};

// Throws a _com_error that holds hr and the thread's error object.
[[noreturn]] void _com_issue_error(HRESULT hr);
[[noreturn]] void _com_raise_error(HRESULT hr, IErrorInfo* info = nullptr);
