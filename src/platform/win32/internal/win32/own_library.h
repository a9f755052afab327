// Libraries of the product's own, which are loaded when something first needs them.
//
// They are looked for from the place of the binary that this code is in, and nowhere else: not in
// the working directory, not where the environment says, because whoever could put a library there
// would run in the program.
//   the program             where build and installation put them, seen from it
//   a library of a host     its own directory, and quillon/ below that
#pragma once

#include <string>

namespace quillon::platform {

struct OwnLibrary {
  void* handle = nullptr;  // for dlsym; null when it was not loaded
  std::string path;        // empty when there is no such library
  std::string
      problem;  // of one that is there and cannot be loaded: the reason, as the system says it
};

// Where it lies; empty when there is no such library.
std::string ownLibraryPath(const std::string& fileName);

// Loads it for good, its names for itself. Opening it again costs little.
OwnLibrary openOwnLibrary(const std::string& fileName);

}  // namespace quillon::platform
