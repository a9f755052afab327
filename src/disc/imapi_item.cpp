#include "disc/imapi_item.h"

#include <new>

#include "tables/imapi_results.h"

namespace quillon {
namespace {

// The name under which the wrappers' source shows in their messages.
constexpr TextView kSourceFile = OLESTR("tarnimapiutil");

// The reason's parts: a result with a sentence of its own needs no other.
std::vector<Text> ReasonsOf(const CBaseItem& item, HRESULT hr, IErrorInfo* info) {
  if (const std::optional<UINT> message = MessageOfImapiResult(hr)) {
    return {item.LoadMessage(*message)};
  }
  std::vector<Text> reasons;
  ScopedBstr description;
  if (info != nullptr && SUCCEEDED(info->GetDescription(description.Put()))) {
    reasons.emplace_back(description.View());
  }
  reasons.push_back(SystemText(static_cast<DWORD>(hr)));
  return reasons;
}

}  // namespace

bool CImapiItem::ComposeFailure(TextView method, int line, TextView prefix, HRESULT hr,
                                IErrorInfo* info) {
  Text separator;
  GetSeparator(separator);
  Text message = FormatText(OLESTR("File: %s%s"), {kSourceFile, separator}) + separator;
  if (line > 0) message += FormatText(OLESTR("Line: %d%s"), {line, separator});
  if (!method.empty()) message += FormatText(OLESTR("Method: %s%s"), {method, separator});
  message += separator;
  if (!prefix.empty()) ((message += prefix) += separator) += separator;
  for (const Text& reason : ReasonsOf(*this, hr, info)) {
    if (!reason.empty()) ((message += reason) += separator) += separator;
  }
  CBaseItem::SetErrorMessage(message);
  return false;
}

bool CImapiItem::FailCall(const OperationName& name, HRESULT hr) {
  ComPtr<IErrorInfo> info;
  GetErrorInfo(0, info.Put());
  Text prefix;
  FormatClassMessage(prefix, kMsgMethodFailed, ClassName(), name.text);
  return ComposeFailure(name.text, name.line, prefix, hr, info.Get());
}

bool CImapiItem::FailThrown(const OperationName& name) {
  ComPtr<IErrorInfo> info;
  try {
    throw;
  } catch (const _com_error& error) {
    lastResult_ = error.Error();
    info.Attach(error.ErrorInfo());
  } catch (const std::bad_alloc&) {
    lastResult_ = E_OUTOFMEMORY;
  } catch (...) {
    lastResult_ = E_UNEXPECTED;
  }
  Text prefix;
  FormatClassMessage(prefix, kMsgMethodThrew, ClassName(), name.text);
  return ComposeFailure(name.text, name.line, prefix, lastResult_, info.Get());
}

bool CImapiItem::CreateObject(const Creation& creation, void** object, int line) {
  constexpr TextView kMethod = OLESTR("Create");
  *object = nullptr;
  SetErrorInfo(0, nullptr);
  lastResult_ =
      creation.clsid == nullptr
          ? E_POINTER
          : CoCreateInstance(*creation.clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                             *creation.iid, object);
  createdHere_ = SUCCEEDED(lastResult_);
  if (createdHere_) return true;
  ComPtr<IErrorInfo> info;
  GetErrorInfo(0, info.Put());
  Text prefix;
  FormatClassMessage(prefix, creation.message, ClassName(), kMethod);
  return ComposeFailure(kMethod, line, prefix, lastResult_, info.Get());
}

}  // namespace quillon
