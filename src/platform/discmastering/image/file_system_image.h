// The class MsftFileSystemImage: collects trees of files and lays them out as one image of ISO
// 9660, Joliet and UDF 1.02 over one copy of the data.
#pragma once

#include "platform/com.h"

namespace quillon::platform {

HRESULT createFileSystemImage(REFIID riid, void** object);

}  // namespace quillon::platform
