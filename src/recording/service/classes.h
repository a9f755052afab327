// Makers of the current service's classes. Each answers REGDB_E_CLASSNOTREG where the configured
// service has no current generation.
#pragma once

#include "com/create_object.h"
#include "recorders/catalogue.h"

namespace quillon::platform {

HRESULT createDiscMaster2(REFIID riid, void** object);
HRESULT createDiscRecorder2(REFIID riid, void** object);
HRESULT createDiscFormat2Data(REFIID riid, void** object);
HRESULT createDiscFormat2Erase(REFIID riid, void** object);
HRESULT createFileSystemImage(REFIID riid, void** object);

template <typename Class>
HRESULT createCurrentObject(REFIID riid, void** object) {
  return offersCurrentDiscService() ? createObject<Class>(riid, object) : REGDB_E_CLASSNOTREG;
}

}  // namespace quillon::platform
