// The storage interfaces that recording through the shell needs, wrapped: property storages (the
// properties of a disc), shell folders and the storages that they bind to. Every operation answers
// false with a sentence when an argument is missing or the platform's call fails.
#pragma once

#include "foundation/com_base.h"

namespace quillon {

class CPropertyStorage : public CComBase {
 public:
  explicit CPropertyStorage(IPropertyStorage* storage = nullptr);

  [[nodiscard]] IPropertyStorage* Get() const { return storage_.Get(); }
  // Where a call stores its result; what was held is released first.
  [[nodiscard]] IPropertyStorage** Put() { return storage_.Put(); }

  [[nodiscard]] bool Commit(DWORD commitFlags);
  // Both arrays hold count entries; named properties get numbers from firstNamedId on.
  [[nodiscard]] bool WriteMultiple(ULONG count, const PROPSPEC* specifications,
                                   const PROPVARIANT* values, PROPID firstNamedId);
  // Copies a simple value; target owns the copy and is freed with PropVariantClear. False for
  // arrays, references, decimals and the like, with target empty.
  [[nodiscard]] bool CopyValue(PROPVARIANT& target, const VARIANT& source);

 private:
  ComPtr<IPropertyStorage> storage_;
};

class CStorage : public CComBase {
 public:
  explicit CStorage(IStorage* storage = nullptr);

  [[nodiscard]] IStorage* Get() const { return storage_.Get(); }
  [[nodiscard]] IStorage** Put() { return storage_.Put(); }

 private:
  ComPtr<IStorage> storage_;
};

class CShellFolder : public CComBase {
 public:
  explicit CShellFolder(IShellFolder* folder = nullptr);

  [[nodiscard]] IShellFolder* Get() const { return folder_.Get(); }
  [[nodiscard]] IShellFolder** Put() { return folder_.Put(); }

  // The caller frees *items with CoTaskMemFree. eaten and attributes may be null.
  [[nodiscard]] bool ParseDisplayName(HWND owner, IBindCtx* context, const OLECHAR* name,
                                      ULONG* eaten, LPITEMIDLIST* items, ULONG* attributes);
  [[nodiscard]] bool BindToStorage(LPCITEMIDLIST items, IBindCtx* context, REFIID riid,
                                   void** object);
  [[nodiscard]] bool BindToStorage(LPCITEMIDLIST items, IBindCtx* context, CStorage& storage);

 private:
  ComPtr<IShellFolder> folder_;
};

}  // namespace quillon
