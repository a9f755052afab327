// The directory of the virtual recorders.
#pragma once

#include <string>
#include <vector>

#include "recording/disc_result.h"

namespace quillon::platform {

// In which the directories of the recorders lie; it need not exist.
std::string recorderStoreDirectory();

// Directories of the recorders in ascending order of their names. Where there is none, makes one
// with a blank CD-R in it.
DiscResult recorderDirectories(std::vector<std::string>& directories);
// ERROR_ALREADY_EXISTS, as an HRESULT, when there is one of that name.
DiscResult makeRecorder(const std::string& name, std::string& directory);
// Nothing is made where the name is not empty: ERROR_FILE_NOT_FOUND then.
DiscResult findRecorder(const std::string& name, std::string& directory);

}  // namespace quillon::platform
