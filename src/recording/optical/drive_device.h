// What the system tells of a drive without libburn: whether it may be used, what it is, and where
// its disc is mounted.
#pragma once

#include <string>
#include <vector>

#include "recorders/recorder.h"

namespace quillon::platform {

inline constexpr const char* kFileAddress = "stdio:";  // begins the address of a file

bool isFileAddress(const std::string& address);

// Whether there is a drive at the address that this user may use: a sentence and a code otherwise.
// Does not open it.
DiscResult checkDevice(const std::string& address);
// Whether somebody has the drive for himself, or has mounted its disc.
bool isDeviceBusy(const std::string& address);

// Where the disc is mounted.
std::vector<std::string> mountPointsOf(const std::string& address);
// Takes the disc out of the file system. A sentence names what keeps it there.
DiscResult unmountDisc(const std::string& address);

// Without what only the drive itself tells.
DriveIdentity identityOfDevice(const std::string& address);
// The kinds of disc that the kernel has noted, for a drive that cannot be asked.
void readKernelFacts(const std::string& address, DriveIdentity& identity);

// The addresses of the machine's drives, sr2 before sr10.
std::vector<std::string> drivesOfTheMachine();

}  // namespace quillon::platform
