// Makers of the legacy service's classes and of the shell's burner, for the class table. The
// service records data discs (ISO 9660 and Joliet) on CDs, on the same recorders as the current
// one.
#pragma once

#include "platform/com.h"

namespace quillon::platform {

// REGDB_E_CLASSNOTREG where the configured service has no legacy generation.
HRESULT createLegacyDiscMaster(REFIID riid, void** object);
// Belongs to the shell: always there. It has no recordable drive where there is no service.
HRESULT createShellBurner(REFIID riid, void** object);

}  // namespace quillon::platform
