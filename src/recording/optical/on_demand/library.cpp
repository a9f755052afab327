// What libquillon_optical.so exports: the table of optical_library.h.
#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <new>

#include "burn_library.h"
#include "open_drive.h"
#include "optical_drive.h"
#include "recorders/disc_operations.h"

namespace quillon::platform {
namespace {

// Those who can tell whether operations are to stop: one for each copy of the layer that has loaded
// the library. They stay, as all libraries with such a copy do.
struct Asked {
  bool (*areStopped)();
  const Asked* next;
};
std::atomic<const Asked*> asked = nullptr;

bool askWhetherToStop(bool (*areStopped)()) noexcept {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  for (const Asked* one = asked; one != nullptr; one = one->next) {
    if (one->areStopped == areStopped) return true;
  }
  const auto* const added = new (std::nothrow) Asked{areStopped, asked};
  if (added != nullptr) asked = added;
  return added != nullptr;
}

OpticalDevice* open(const std::string& address, DriveIdentity& identity) noexcept try {
  return std::make_unique<OpticalDrive>(address, identity).release();
} catch (const std::exception&) {
  return nullptr;
}

void letGo() noexcept try { OpenDrive::closeAll(); } catch (const std::exception&) {
  // What is left open, the system closes with the process, which is about to end.
}

}  // namespace

// In the place of the one in disc_operations.cpp, which knows what is under way: that would be a
// copy here, which nobody stops. Code of this library that needs more of that file, or anything
// else that stands on it, defines this function twice and does not link.
bool areOperationsStopped() {
  for (const Asked* one = asked; one != nullptr; one = one->next) {
    if (one->areStopped()) return true;
  }
  return false;
}

}  // namespace quillon::platform

extern "C" const quillon::platform::OpticalLibrary* quillonOpticalLibrary();
const quillon::platform::OpticalLibrary* quillonOpticalLibrary() {
  using namespace quillon::platform;
  static const BurnVersion burn;
  static const OpticalLibrary library{opticalRelease(), burn.text.data(), &askWhetherToStop, &open,
                                      &letGo};
  return &library;
}
