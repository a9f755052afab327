// Which drives there are and what each is, as far as the system tells: nothing here opens one.
// Keeps nothing, so that the library for drives has a copy of its own.
#pragma once

#include <string>
#include <vector>

#include "recorders/recorder.h"

namespace quillon::platform {

inline constexpr const char* kFileAddress = "stdio:";  // begins the address of a file

bool isFileAddress(const std::string& address);

// The addresses of the machine's drives, sr2 before sr10.
std::vector<std::string> drivesOfTheMachine();

// Without what only the drive itself tells.
DriveIdentity identityOfDevice(const std::string& address);

// Where the disc is mounted.
std::vector<std::string> mountPointsOf(const std::string& address);

}  // namespace quillon::platform
