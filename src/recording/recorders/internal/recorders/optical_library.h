// The border between this system and libquillon_optical.so, through which drives are reached. That
// library stands on libburn, whose terms are not for everybody, so it comes in a package of its
// own, and neither of them is loaded before a drive is looked for.
//
// It carries a copy of what it calls of the layer, as every library of ours does. What is kept from
// one call to the next must not be there twice:
//   on this side      which service, drives and recorder are wanted, the operations under way and
//                     whether they are to stop, how the last one ended, where progress is told, how
//                     often a client has acquired a recorder
//   in the library    libburn with its mutex, the drives that are open, and the thread that closes
//                     them: once in a process, also where the program and a host's library, each
//                     with a layer of its own, both reach drives
//   in neither        who has a drive: that is a lock of the system, which goes with a descriptor
// So the library asks back for one thing, whether operations are to stop. Should its code come to
// need more of this side, it does not link (optical/on_demand/library.cpp).
//
// Both sides are built of one source by one compiler, and free each other's memory, which comes
// from the C library's heap. Exceptions end where they began, because each may have a C++ runtime
// of its own.
#pragma once

#include <string>
#include <string_view>

#include "recorders/recorder.h"

namespace quillon::platform {

// One client's handle on a drive: what a Recorder leaves to those who implement it.
class OpticalDevice {
 public:
  virtual ~OpticalDevice() = default;  // gives back what was taken
  OpticalDevice(const OpticalDevice&) = delete;
  OpticalDevice& operator=(const OpticalDevice&) = delete;

  virtual DiscResult media(MediaFacts& facts) noexcept = 0;
  virtual DiscResult currentPages(CurrentPages& pages) noexcept = 0;
  virtual std::u16string owner() noexcept = 0;

  virtual DiscResult take(bool force, std::u16string_view clientName) noexcept = 0;
  virtual void giveBack() noexcept = 0;
  // For the client that has taken it.
  virtual DiscResult burn(const WriteRequest& request) noexcept = 0;
  virtual DiscResult blank(bool full, const DiscProgressCallback& progress) noexcept = 0;
  virtual DiscResult openTray() noexcept = 0;
  virtual DiscResult fetch(std::uint32_t sector, std::uint32_t count, void* bytes) noexcept = 0;

 protected:
  OpticalDevice() = default;
};

struct OpticalLibrary {
  // Stays the first: the rest holds for the release that is equal to opticalRelease() alone.
  const char* release;
  const char* burnVersion;  // of libburn, "1.5.4"
  // The function is asked from then on, by any thread and until the process ends; the operations of
  // the library stop when one of those that it was given says so. False without memory.
  bool (*askWhetherToStop)(bool (*areStopped)()) noexcept;
  // Describes the drive and answers a handle, which the caller deletes; null without memory. The
  // address is "/dev/sr0" or "stdio:/some/file".
  OpticalDevice* (*open)(const std::string& address, DriveIdentity& identity) noexcept;
  // Lets go of all drives that the process has open, once its operations have been stopped, and
  // comes back when they are unlocked.
  void (*letGo)() noexcept;
};

// The release of the code that is called: the version, and behind a blank what stands for the
// headers that both sides were built of ("0.2.0 1f3a56c7"), which tells builds of one version
// apart.
const char* opticalRelease();

// What the library exports.
inline constexpr const char* kOpticalLibraryFile = "libquillon_optical.so";
inline constexpr const char* kOpticalLibraryEntry = "quillonOpticalLibrary";
using OpticalLibraryEntry = const OpticalLibrary* (*)();

}  // namespace quillon::platform
