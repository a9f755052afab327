// What libburn knows of a drive and of the disc in it, in the terms of the interfaces.
#pragma once

#include "burn_library.h"
#include "recorders/recorder.h"

namespace quillon::platform {

inline constexpr int kFileProfile = 0xFFFF;  // the profile of one, a libburn invention

// What a file is most like, among the drives and discs that callers know.
void describeFile(DriveIdentity& identity);
// Of a drive, not a file: fills in what it tells of itself; profiles and features, and its name
// where the system has not told it.
void readDrive(const GrabbedDrive& grabbed, DriveIdentity& identity);
CurrentPages readCurrentPages(const GrabbedDrive& grabbed);
DiscResult readMedia(const GrabbedDrive& grabbed, MediaFacts& facts);

// The profile of the disc; 0 for none.
int profileOf(const GrabbedDrive& grabbed);
// Write speeds as libburn counts them, and in data sectors of 2048 bytes.
int speedUnitsOf(LONG sectorsPerSecond, int profile);
LONG sectorsPerSecondOf(int speedUnits, int profile);
// Whether sectors of a disc of the profile can be written at any time, in any order.
bool isOverwritableProfile(int profile);

}  // namespace quillon::platform
