#include "foundation/base_item.h"

#include "foundation/own_module.h"

namespace quillon {
namespace {

constexpr std::size_t kMaxErrorUnits = 1024;
constexpr std::size_t kMaxClassMessageUnits = 2048;
constexpr DWORD kMaxSystemTextUnits = 1024;

constexpr TextView kUnknownErrorStem = OLESTR("Unknown error #");
constexpr TextView kDispatchErrorStem = OLESTR("IDispatch error #");

// HRESULTs of the interface facility that automation servers use for errors of their own.
constexpr DWORD kFirstDispatchError = 0x80040201;
constexpr DWORD kLastDispatchError = 0x8004FFFF;
constexpr DWORD kDispatchErrorBase = 0x80040200;

// The table's own text, not a copy; empty when there is none.
TextView TableText(HINSTANCE module, UINT id) {
  const OLECHAR* text = nullptr;
  // With a length of 0 the buffer argument is the address of a pointer to the text.
  const int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
  return length > 0 ? TextView(text, static_cast<std::size_t>(length)) : TextView();
}

// What a text is compared with to tell whether it gives a reason. Loaded once.
struct ReferenceTexts {
  Text platformSuccess = Text(TrimmedView(SystemText(ERROR_SUCCESS)));
  Text succeeded = Text(TrimmedView(TableText(OwnModule(), kMsgOperationSucceeded)));
  Text failed = Text(TrimmedView(TableText(OwnModule(), kMsgOperationFailed)));
};

const ReferenceTexts& References() {
  static const ReferenceTexts texts;
  return texts;
}

}  // namespace

CBaseItem::CBaseItem() { Reset(); }

CBaseItem::~CBaseItem() = default;

CBaseItem::CBaseItem(const CBaseItem& other) : CBaseItem() { *this = other; }

CBaseItem& CBaseItem::operator=(const CBaseItem& other) {
  if (this == &other) return *this;
  if (other.rare_ != nullptr) {
    Rare& own = OwnRare();
    if (!other.rare_->itemText.empty()) own.itemText = other.rare_->itemText;
    own.itemValue64 = other.rare_->itemValue64;
  } else if (rare_ != nullptr) {
    rare_->itemValue64 = 0;
  }
  if (!other.className_.empty()) className_ = other.className_;
  SetErrorMessage(other.ErrorMessage());
  itemFlag_ = other.itemFlag_;
  detailedMessages_ = other.detailedMessages_;
  itemValue_ = other.itemValue_;
  return *this;
}

CBaseItem::Rare& CBaseItem::OwnRare() {
  if (rare_ == nullptr) rare_ = std::make_unique<Rare>();
  return *rare_;
}

bool CBaseItem::Reset() {
  References();
  className_ = {};
  rare_.reset();
  itemValue_ = 0;
  itemFlag_ = false;
  detailedMessages_ = true;
  return true;
}

bool CBaseItem::SetClassName(TextView name) {
  if (name.empty()) return false;
  className_ = name;
  return true;
}

const Text& CBaseItem::ErrorMessage() const {
  static const Text none;
  return rare_ == nullptr ? none : rare_->errorMessage;
}

void CBaseItem::GetItemText(Text& out) const {
  if (rare_ == nullptr) {
    out.clear();
  } else {
    out = rare_->itemText;
  }
}

bool CBaseItem::SetErrorMessage(TextView text) {
  if (rare_ != nullptr || !text.empty()) OwnRare().errorMessage.assign(text);
  return true;
}

bool CBaseItem::SetErrorMessage(UINT id) { return SetErrorMessage(LoadMessage(id)); }

bool CBaseItem::SetErrorMessage(UINT id, std::initializer_list<TextArg> args) {
  const Text message = FormatText(LoadMessage(id), args);
  return SetErrorMessage(TextView(message).substr(0, kMaxErrorUnits));
}

bool CBaseItem::SetErrorFromLastError() {
  const DWORD code = GetLastError();
  return SetErrorMessage(code == ERROR_SUCCESS ? References().failed : SystemText(code));
}

Text CBaseItem::LoadMessage(UINT id) const {
  return Text(TableText(OwnModule(), id).substr(0, kMaxErrorUnits));
}

void CBaseItem::FormatClassMessage(Text& out, UINT id, TextView className,
                                   TextView methodName) const {
  const Text format = LoadMessage(id);
  if (format.empty()) {
    out = References().failed;
    return;
  }
  out = FormatText(format, {className, methodName});
  if (out.size() > kMaxClassMessageUnits) out.resize(kMaxClassMessageUnits);
}

bool CBaseItem::AppendSystemText(Text& out, DWORD code, TextView prefix) const {
  if (!prefix.empty()) out.assign(prefix);
  out += SystemText(code);
  return true;
}

bool CBaseItem::IsSuccessText(TextView text) {
  const TextView trimmed = TrimmedView(text);
  return trimmed.empty() || trimmed == References().succeeded ||
         trimmed == References().platformSuccess;
}

bool CBaseItem::IsFailureText(TextView text) {
  const TextView trimmed = TrimmedView(text);
  return trimmed.empty() || trimmed == References().failed || trimmed == kUnknownErrorStem ||
         trimmed == kDispatchErrorStem;
}

bool CBaseItem::IsUninformativeText(TextView text) {
  return IsSuccessText(text) || IsFailureText(text);
}

bool CBaseItem::SetErrorLocation(TextView file, TextView method, int line, TextView text) {
  if (!detailedMessages_) return SetErrorMessage(text);
  Text separator;
  if (!GetSeparator(separator)) return false;
  Text message;
  if (line > 0) message += FormatText(OLESTR("Line: %d%s"), {line, separator});
  if (!method.empty()) message += FormatText(OLESTR("Method: %s%s"), {method, separator});
  if (!file.empty()) message += FormatText(OLESTR("File: %s%s"), {file, separator});
  if (!text.empty()) message += FormatText(OLESTR("%s%s"), {text, separator});
  return SetErrorMessage(message);
}

bool CBaseItem::SetItemText(TextView text) {
  const TextView trimmed = TrimmedView(text);
  if (trimmed.empty()) return false;
  OwnRare().itemText.assign(trimmed);
  return true;
}

Text SystemText(DWORD code) {
  OLECHAR buffer[kMaxSystemTextUnits];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                      buffer, kMaxSystemTextUnits, nullptr);
  TextView text(buffer, length);
  if (text.size() > 1 && text.back() == OLESTR('\n')) {
    text.remove_suffix(1);
    if (text.back() == OLESTR('\r')) text.remove_suffix(1);
  }
  return Text(text);
}

Text ResultText(HRESULT hr) {
  const auto code = static_cast<DWORD>(hr);
  Text text = SystemText(code);
  if (!text.empty()) return text;
  if (code >= kFirstDispatchError && code <= kLastDispatchError) {
    return FormatText(OLESTR("IDispatch error #%d"), {code - kDispatchErrorBase});
  }
  return FormatText(OLESTR("Unknown error 0x%0lX"), {code});
}

}  // namespace quillon
