// Makes an object for the class table.
#pragma once

#include <new>

#include "discmastering/catalogue.h"
#include "platform/com.h"

namespace quillon::platform {

template <typename Class>
HRESULT createObject(REFIID riid, void** object) {
  try {
    ComPtr<Class> made;
    made.Attach(new Class);
    return made->QueryInterface(riid, object);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// For the classes of the current generation of the service.
template <typename Class>
HRESULT createCurrentObject(REFIID riid, void** object) {
  return offersCurrentDiscService() ? createObject<Class>(riid, object) : REGDB_E_CLASSNOTREG;
}

}  // namespace quillon::platform
