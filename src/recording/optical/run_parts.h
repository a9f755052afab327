// What writing and erasing in a drive have in common.
#pragma once

#include <chrono>
#include <string>
#include <thread>

#include "burn_library.h"
#include "libburn.h"

namespace quillon::platform {

inline constexpr auto kPollInterval = std::chrono::milliseconds(20);
// 64 KiB: whole blocks of every kind of disc, beyond the first descriptors of all file systems.
inline constexpr std::uint32_t kHeadSectors = 32;

// Tells how far the drive is, a burn_progress, until it has ended what was begun.
template <typename Tell>
void waitUntilIdle(burn_drive* drive, Tell tell) {
  burn_progress reached{};
  while (burn_drive_get_status(drive, &reached) != BURN_DRIVE_IDLE) {
    tell(reached);
    std::this_thread::sleep_for(kPollInterval);
  }
}

// A new disc of a kind that takes no data before it is formatted is formatted.
DiscResult formatWhenNew(const GrabbedDrive& grabbed, const std::string& address);
// libburn does not wait for the disk under a file. The system forgets its copy of it, so that it is
// read from there.
DiscResult syncFile(const std::string& address);
// libburn keeps what it knew of the disc before.
void learnNewState(burn_drive* drive);

}  // namespace quillon::platform
