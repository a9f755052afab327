// A directory tree as a read-only structured storage: directories are storages, files are streams.
#pragma once

#include <string>

#include "platform/com/storage.h"

namespace quillon::platform {

// path: an absolute path of a directory. Names are snapshots of one moment, contents are not: a
// file is opened when it is first read and closed again at its end, so that any number of streams
// can be held.
//
// Elements are named by a single name; one with a separator, a drive or a dot entry is
// STG_E_INVALIDNAME. What would write is STG_E_ACCESSDENIED. Codes of the system become storage
// codes (2, 3, 4, 5 and 32 to 0x80030000 and the code; no other has one here).
HRESULT openDirectoryStorage(std::u16string path, IStorage** storage);

// The same for one file; it need not be readable yet.
HRESULT openFileStream(std::u16string path, IStream** stream);

// What a storage answers for a code of the system.
HRESULT storageResult(DWORD code);

}  // namespace quillon::platform
