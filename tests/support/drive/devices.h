#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace emulated {

// Where the names and descriptors that programs use lead to. All of it is decided by
// $EMULATED_DRIVES; without it, nothing is emulated.
std::string drivesDirectory();

// The directory of the drive with that device name, such as "/dev/sr0". Every name of that kind
// belongs to this library: one without a directory is a device that does not exist.
struct Device {
  std::string directory;
  int number;
  bool exists;
};
std::optional<Device> deviceNamed(std::string_view path);

// What stands in a system file that tells of the drives; nullopt for other files.
std::optional<std::string> systemFile(std::string_view path);

// Opens what the program takes for the device. -1 with errno as the kernel sets it.
int openDevice(const Device& device, int flags);
// The drive's directory of a descriptor that openDevice gave; empty for others.
std::string directoryOf(int descriptor);
void noteClosing(int descriptor);
bool mayAccess(const Device& device);
// How many sectors the kernel knows of.
long long sectorsOf(const std::string& directory);

// Ends the mount at that path. 0 or an errno; -1: it is none of ours.
int unmount(std::string_view path);

}  // namespace emulated
