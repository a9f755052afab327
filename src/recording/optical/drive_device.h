// What the system tells of a drive without libburn, and does to it.
#pragma once

#include <string>

#include "recorders/machine_drives.h"
#include "recorders/recorder.h"

namespace quillon::platform {

// Whether there is a drive at the address that this user may use: a sentence and a code otherwise.
// Does not open it.
DiscResult checkDevice(const std::string& address);
// Whether somebody has the drive for himself, or has mounted its disc.
bool isDeviceBusy(const std::string& address);

// Takes the disc out of the file system. A sentence names what keeps it there.
DiscResult unmountDisc(const std::string& address);

// The kinds of disc that the kernel has noted, for a drive that cannot be asked.
void readKernelFacts(const std::string& address, DriveIdentity& identity);

}  // namespace quillon::platform
