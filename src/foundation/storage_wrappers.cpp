#include "foundation/storage_wrappers.h"

#include <cstring>

namespace quillon {
namespace {

// A wrapper that holds nothing fails as a smart pointer would.
template <typename Interface>
Interface& Wrapped(const ComPtr<Interface>& pointer) {
  if (pointer.Get() == nullptr) throw _com_error(E_POINTER);
  return *pointer;
}

bool IsSimpleType(VARTYPE type) {
  return type <= VT_BOOL || type == VT_UNKNOWN || (type >= VT_I1 && type <= VT_UI4);
}

}  // namespace

CPropertyStorage::CPropertyStorage(IPropertyStorage* storage) : storage_(storage) {
  SetClassName(OLESTR("CPropertyStorage"));
}

bool CPropertyStorage::Commit(DWORD commitFlags) {
  return CallPlatform(kMsgMethodFailed, kMsgMethodThrew, OLESTR("Commit"),
                      [&] { return Wrapped(storage_).Commit(commitFlags); });
}

bool CPropertyStorage::WriteMultiple(ULONG count, const PROPSPEC* specifications,
                                     const PROPVARIANT* values, PROPID firstNamedId) {
  constexpr TextView kMethod = OLESTR("WriteMultiple");
  if (specifications == nullptr || values == nullptr) {
    return ReportFailure(E_INVALIDARG, kMsgMethodFailed, ClassName(), kMethod);
  }
  return CallPlatform(kMsgMethodFailed, kMsgMethodThrew, kMethod, [&] {
    return Wrapped(storage_).WriteMultiple(count, specifications, values, firstNamedId);
  });
}

bool CPropertyStorage::CopyValue(PROPVARIANT& target, const VARIANT& source) {
  PropVariantInit(&target);
  if (!IsSimpleType(source.vt)) return Fail(kMsgDataTypeUnknown);
  VARIANT copy;
  VariantInit(&copy);
  // Some headers of the platform have no const here; the source is only read.
  lastResult_ = VariantCopy(&copy, const_cast<VARIANT*>(&source));
  if (!CheckResult(lastResult_, kMsgMethodFailed, ClassName(), OLESTR("CopyValue"))) return false;
  // Both kinds of variant lay these types out alike; target takes over what the copy owns.
  static_assert(sizeof(PROPVARIANT) == sizeof(VARIANT));
  std::memcpy(&target, &copy, sizeof(target));
  return true;
}

CStorage::CStorage(IStorage* storage) : storage_(storage) { SetClassName(OLESTR("CStorage")); }

CShellFolder::CShellFolder(IShellFolder* folder) : folder_(folder) {
  SetClassName(OLESTR("CShellFolder"));
}

bool CShellFolder::ParseDisplayName(HWND owner, IBindCtx* context, const OLECHAR* name,
                                    ULONG* eaten, LPITEMIDLIST* items, ULONG* attributes) {
  constexpr TextView kMethod = OLESTR("ParseDisplayName");
  if (name == nullptr || items == nullptr) {
    return ReportFailure(E_INVALIDARG, kMsgMethodFailed, ClassName(), kMethod);
  }
  Text writableName(name);  // the platform's parameter is not const
  return CallPlatform(kMsgMethodFailed, kMsgMethodThrew, kMethod, [&] {
    return Wrapped(folder_).ParseDisplayName(owner, context, writableName.data(), eaten, items,
                                             attributes);
  });
}

bool CShellFolder::BindToStorage(LPCITEMIDLIST items, IBindCtx* context, REFIID riid,
                                 void** object) {
  constexpr TextView kMethod = OLESTR("BindToStorage");
  if (items == nullptr || object == nullptr) {
    return ReportFailure(E_INVALIDARG, kMsgMethodFailed, ClassName(), kMethod);
  }
  return CallPlatform(kMsgMethodFailed, kMsgMethodThrew, kMethod,
                      [&] { return Wrapped(folder_).BindToStorage(items, context, riid, object); });
}

bool CShellFolder::BindToStorage(LPCITEMIDLIST items, IBindCtx* context, CStorage& storage) {
  return BindToStorage(items, context, IID_IStorage, reinterpret_cast<void**>(storage.Put()));
}

}  // namespace quillon
