// The shell's folders. The layer has one, the desktop, and of it what recording needs: a path
// becomes an item, and the item of a directory a read-only storage over the tree below it.
#pragma once

#include "platform/com/unknown.h"

struct IBindCtx;
struct IEnumIDList;
struct STRRET;

struct SHITEMID {
  USHORT cb;
  BYTE abID[1];
};
struct ITEMIDLIST {
  SHITEMID mkid;
};
using LPITEMIDLIST = ITEMIDLIST*;
using LPCITEMIDLIST = const ITEMIDLIST*;

inline constexpr IID IID_IShellFolder = {
    0x000214E6, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

struct IShellFolder : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND owner, IBindCtx* context, LPWSTR name,
                                                     ULONG* eaten, ITEMIDLIST** items,
                                                     ULONG* attributes) = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumObjects(HWND owner, DWORD flags, IEnumIDList** objects) = 0;
  virtual HRESULT STDMETHODCALLTYPE BindToObject(const ITEMIDLIST* items, IBindCtx* context,
                                                 REFIID riid, void** object) = 0;
  virtual HRESULT STDMETHODCALLTYPE BindToStorage(const ITEMIDLIST* items, IBindCtx* context,
                                                  REFIID riid, void** object) = 0;
  virtual HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM how, const ITEMIDLIST* a,
                                               const ITEMIDLIST* b) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateViewObject(HWND owner, REFIID riid, void** object) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT count, const ITEMIDLIST** items,
                                                    ULONG* inOut) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND owner, UINT count, const ITEMIDLIST** items,
                                                  REFIID riid, UINT* reserved, void** object) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDisplayNameOf(const ITEMIDLIST* items, DWORD flags,
                                                     STRRET* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetNameOf(HWND owner, const ITEMIDLIST* items, LPCWSTR name,
                                              DWORD flags, ITEMIDLIST** result) = 0;
};

// The desktop answers ParseDisplayName for the absolute path of something that exists (else
// E_INVALIDARG, or the code of the system as an HRESULT; attributes are masked with folder, stream,
// storage and file-system), BindToStorage for a directory and IStorage (else E_NOINTERFACE), and
// E_NOTIMPL for the rest.
HRESULT SHGetDesktopFolder(IShellFolder** folder);
