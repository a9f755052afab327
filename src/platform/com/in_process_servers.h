// Classes that the registry names a library for.
#pragma once

#include "platform/com/guid.h"
#include "platform/com/unknown.h"

namespace quillon::platform {

// The class object out of its server, which is loaded on first use. REGDB_E_CLASSNOTREG when the
// registry names no library for the class.
HRESULT classObjectOfServer(REFCLSID clsid, REFIID riid, void** object);

}  // namespace quillon::platform
