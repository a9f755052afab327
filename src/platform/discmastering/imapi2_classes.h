// Makers of the current service's classes, for the class table. Each answers REGDB_E_CLASSNOTREG
// where the configured service has no current generation.
#pragma once

#include "platform/com.h"

namespace quillon::platform {

HRESULT createDiscMaster2(REFIID riid, void** object);
HRESULT createDiscRecorder2(REFIID riid, void** object);
HRESULT createDiscFormat2Data(REFIID riid, void** object);
HRESULT createDiscFormat2Erase(REFIID riid, void** object);

}  // namespace quillon::platform
