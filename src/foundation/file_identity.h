// What tells one file from every other, read from the platform.
#pragma once

#include "foundation/file_util.h"

namespace quillon {

// All leave the platform's last error when they answer false.
bool ReadIdentity(HANDLE file, FileIdentity& identity);
bool ReadIdentity(const Text& path, FileIdentity& identity);
bool ReadFacts(HANDLE file, FileIdentity& identity, FileStamp& stamp);

}  // namespace quillon
