// Loading the library for drives, once for the process.
#pragma once

#include <string>

#include "recorders/optical_library.h"

namespace quillon::platform {

struct OpticalAccess {
  const OpticalLibrary* library = nullptr;
  bool isInstalled = true;
  std::string problem;  // why there is none, as the end of a sentence without its full stop
};

// Loads it when it is not loaded yet. A library that was missing is looked for again: a process
// lives long, and somebody may have installed it meanwhile.
OpticalAccess loadOpticalLibrary();

}  // namespace quillon::platform
