// Writing, erasing and reading the disc in a drive.
#pragma once

#include <string>

#include "burn_library.h"
#include "recorders/recorder.h"

namespace quillon::platform {

// What is left of Recorder::write and erase: the drive is grabbed and the disc has been found fit.
//
// A disc that can be overwritten gets its first sectors, in which every file system begins, last;
// until then they are zeros. A writing that ends in the middle leaves a disc without a file system.
DiscResult writeInDrive(const GrabbedDrive& grabbed, const std::string& address,
                        const WriteRequest& request);
DiscResult eraseInDrive(const GrabbedDrive& grabbed, const std::string& address, bool full,
                        const DiscProgressCallback& progress);
// What is left of Recorder::read.
DiscResult readInDrive(const GrabbedDrive& grabbed, const std::string& address,
                       std::uint32_t sector, std::uint32_t count, void* bytes);

}  // namespace quillon::platform
