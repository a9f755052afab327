// Windows only: storages over directories, which the legacy service is handed its content in, also
// where the shell gives none, as Wine's does not.
#pragma once

namespace quillon::test {

// What SHGetDesktopFolder answers in a program that has this linked before shell32: the system's
// desktop where that gives storages, and a copy of the directory in a storage of its own where not.
void useDesktopWithStorages();

}  // namespace quillon::test
