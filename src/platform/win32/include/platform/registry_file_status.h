// The file that the registry is kept in, for those who tell their user of it.
#pragma once

#include <cstddef>
#include <string>

#include "platform/win32/types.h"

namespace quillon::platform {

struct RegistryFileStatus {
  std::string path;             // that is read; it need not be there
  std::string writtenPath;      // that a change writes
  LSTATUS code = 0;             // why it cannot be read; 0: it can, or is not there
  std::size_t damagedLine = 0;  // the first line that is not understood, from 1; 0: there is none
};

RegistryFileStatus registryFileStatus();

}  // namespace quillon::platform
