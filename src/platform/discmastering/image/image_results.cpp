#include "discmastering/image/image_results.h"

#include <string>

namespace quillon::platform {

HRESULT refuseImage(HRESULT result, std::u16string_view description, std::u16string_view subject) {
  std::u16string text(description);
  if (!subject.empty()) text.append(u": ").append(subject);
  ComPtr<ICreateErrorInfo> made;
  if (FAILED(CreateErrorInfo(made.Put()))) return result;
  std::u16string source = u"FileSystemImage";
  made->SetSource(source.data());
  made->SetDescription(text.data());
  ComPtr<IErrorInfo> info;
  if (SUCCEEDED(made.As(IID_IErrorInfo, info))) SetErrorInfo(0, info.Get());
  return result;
}

HRESULT copyToBstr(std::u16string_view text, BSTR* value) {
  if (value == nullptr) return E_POINTER;
  *value = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return *value == nullptr ? E_OUTOFMEMORY : S_OK;
}

std::u16string_view viewOf(BSTR text) {
  return text == nullptr ? std::u16string_view() : std::u16string_view(text, SysStringLen(text));
}

}  // namespace quillon::platform
