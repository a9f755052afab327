#include "platform/com/com_error.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "platform/win32/text.h"

struct _bstr_t::Data {
  explicit Data(BSTR owned) : text(owned) {}
  ~Data() { SysFreeString(text); }
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;

  BSTR text;
  std::atomic<unsigned> references{1};
};

namespace {

// What Windows' class does when memory runs out.
BSTR checked(BSTR bstr) {
  if (bstr == nullptr) _com_issue_error(E_OUTOFMEMORY);
  return bstr;
}

BSTR copyOf(BSTR bstr) { return checked(SysAllocStringLen(bstr, SysStringLen(bstr))); }

BSTR widened(const char* text) {
  const int units = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
  BSTR bstr = checked(SysAllocStringLen(nullptr, static_cast<UINT>(units - 1)));
  MultiByteToWideChar(CP_ACP, 0, text, -1, bstr, units);
  return bstr;
}

}  // namespace

_bstr_t::_bstr_t(const char* text) : data_(text == nullptr ? nullptr : new Data(widened(text))) {}

_bstr_t::_bstr_t(const OLECHAR* text)
    : data_(text == nullptr ? nullptr : new Data(checked(SysAllocString(text)))) {}

_bstr_t::_bstr_t(BSTR bstr, bool copy)
    : data_(bstr == nullptr ? nullptr : new Data(copy ? copyOf(bstr) : bstr)) {}

_bstr_t::_bstr_t(const _bstr_t& other) noexcept : data_(other.data_) {
  if (data_ != nullptr) ++data_->references;
}

_bstr_t::_bstr_t(_bstr_t&& other) noexcept : data_(std::exchange(other.data_, nullptr)) {}

_bstr_t::~_bstr_t() { release(); }

_bstr_t& _bstr_t::operator=(const _bstr_t& other) noexcept {
  _bstr_t copy(other);
  std::swap(data_, copy.data_);
  return *this;
}

_bstr_t& _bstr_t::operator=(_bstr_t&& other) noexcept {
  std::swap(data_, other.data_);
  return *this;
}

void _bstr_t::release() noexcept {
  if (data_ != nullptr && --data_->references == 0) delete data_;
  data_ = nullptr;
}

_bstr_t::operator const OLECHAR*() const noexcept {
  return data_ == nullptr ? nullptr : data_->text;
}

unsigned int _bstr_t::length() const noexcept {
  return data_ == nullptr ? 0 : SysStringLen(data_->text);
}

BSTR _bstr_t::copy(bool fCopy) const {
  if (data_ == nullptr) return nullptr;
  return fCopy ? copyOf(data_->text) : data_->text;
}

_bstr_t _bstr_t::operator+(const _bstr_t& other) const {
  if (other.data_ == nullptr) return *this;
  if (data_ == nullptr) return other;
  const unsigned first = length();
  BSTR joined = checked(SysAllocStringLen(nullptr, first + other.length()));
  std::memcpy(joined, data_->text, first * sizeof(OLECHAR));
  std::memcpy(joined + first, other.data_->text, other.length() * sizeof(OLECHAR));
  return {joined, false};
}

_bstr_t& _bstr_t::operator+=(const _bstr_t& other) {
  *this = *this + other;
  return *this;
}

bool _bstr_t::operator==(const _bstr_t& other) const noexcept {
  return length() == other.length() &&
         (length() == 0 ||
          std::memcmp(data_->text, other.data_->text, length() * sizeof(OLECHAR)) == 0);
}

_com_error::_com_error(HRESULT hr, IErrorInfo* info, bool addRef) noexcept : hr_(hr), info_(info) {
  if (info_ != nullptr && addRef) info_->AddRef();
}

_com_error::_com_error(const _com_error& other) noexcept : hr_(other.hr_), info_(other.info_) {
  if (info_ != nullptr) info_->AddRef();
}

_com_error& _com_error::operator=(const _com_error& other) noexcept {
  if (this == &other) return *this;
  if (other.info_ != nullptr) other.info_->AddRef();
  if (info_ != nullptr) info_->Release();
  hr_ = other.hr_;
  info_ = other.info_;
  message_.clear();
  return *this;
}

_com_error::~_com_error() {
  if (info_ != nullptr) info_->Release();
}

IErrorInfo* _com_error::ErrorInfo() const noexcept {
  if (info_ != nullptr) info_->AddRef();
  return info_;
}

_bstr_t _com_error::Description() const {
  BSTR text = nullptr;
  if (info_ == nullptr || FAILED(info_->GetDescription(&text))) return {};
  return {text, false};
}

_bstr_t _com_error::Source() const {
  BSTR text = nullptr;
  if (info_ == nullptr || FAILED(info_->GetSource(&text))) return {};
  return {text, false};
}

const OLECHAR* _com_error::ErrorMessage() const {
  if (!message_.empty()) return message_.c_str();
  std::array<OLECHAR, 512> buffer;
  const auto code = static_cast<DWORD>(hr_);
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                     buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
  if (length > 0) {
    message_.assign(buffer.data(), length);
    if (message_.ends_with(u"\r\n")) message_.resize(message_.size() - 2);
    return message_.c_str();
  }
  // Interfaces number their own failures from here on.
  constexpr DWORD kFirstOfInterface = 0x80040200;
  constexpr DWORD kLastOfInterface = 0x8004FFFF;
  std::array<char, 48> text;
  if (code > kFirstOfInterface && code <= kLastOfInterface) {
    std::snprintf(text.data(), text.size(), "IDispatch error #%u", code - kFirstOfInterface);
  } else {
    std::snprintf(text.data(), text.size(), "Unknown error 0x%0X", code);
  }
  const std::string_view view(text.data());
  message_.assign(view.begin(), view.end());
  return message_.c_str();
}

void _com_raise_error(HRESULT hr, IErrorInfo* info) { throw _com_error(hr, info); }

void _com_issue_error(HRESULT hr) {
  IErrorInfo* info = nullptr;
  GetErrorInfo(0, &info);
  _com_raise_error(hr, info);
}
