// The class XMLHTTP.
#pragma once

#include "platform/com.h"

namespace quillon::platform {

HRESULT createHttpRequest(REFIID riid, void** object);

}  // namespace quillon::platform
