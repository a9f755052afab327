// The classes DOMDocument and XMLHTTP.
#pragma once

#include "platform/com/guid.h"
#include "platform/com/unknown.h"

namespace quillon::platform {

HRESULT createDomDocument(REFIID riid, void** object);
HRESULT createHttpRequest(REFIID riid, void** object);

}  // namespace quillon::platform
