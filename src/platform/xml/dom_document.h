// The class DOMDocument.
#pragma once

#include "platform/com.h"

namespace quillon::platform {

HRESULT createDomDocument(REFIID riid, void** object);

}  // namespace quillon::platform
