#include "optical_loading.h"

#include <dlfcn.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <string_view>
#include <utility>

#include "recorders/catalogue.h"
#include "recorders/disc_operations.h"
#include "recording/disc_recorders.h"
#include "win32/own_library.h"

namespace quillon::platform {
namespace {

struct Loaded {
  std::mutex mutex;
  std::atomic<const OpticalLibrary*> library = nullptr;
};

// Never destroyed: drives are let go of when the process ends.
Loaded& loaded() {
  static auto* const single = new Loaded;
  return *single;
}

OpticalAccess unusable(std::string problem) { return {nullptr, true, std::move(problem)}; }

// What people know a release by.
std::string version(std::string_view release) {
  return std::string(release.substr(0, release.find(' ')));
}

OpticalAccess load() {
  const OwnLibrary file = openOwnLibrary(kOpticalLibraryFile);
  if (file.path.empty()) return {nullptr, false, "the package quillon-optical is not installed"};
  if (file.handle == nullptr)
    return unusable(file.path + " cannot be loaded (" + file.problem + ")");
  const auto entry =
      reinterpret_cast<OpticalLibraryEntry>(::dlsym(file.handle, kOpticalLibraryEntry));
  const OpticalLibrary* const library = entry == nullptr ? nullptr : entry();
  if (library == nullptr || std::strcmp(library->release, opticalRelease()) != 0) {
    return unusable(file.path + " is of another release than " + version(opticalRelease()) +
                    " (install quillon-optical of the same version)");
  }
  if (!library->askWhetherToStop(&areOperationsStopped)) {
    return unusable(file.path + " cannot be loaded (out of memory)");
  }
  return {library, true, {}};
}

}  // namespace

OpticalAccess loadOpticalLibrary() {
  Loaded& single = loaded();
  const std::lock_guard lock(single.mutex);
  if (const OpticalLibrary* const library = single.library) return {library, true, {}};
  OpticalAccess access = load();
  single.library = access.library;
  return access;
}

std::optional<std::string> opticalLibraryVersion() {
  const OpticalAccess access = loadOpticalLibrary();
  if (access.library == nullptr) return std::nullopt;
  return access.library->burnVersion;
}

std::string opticalLibraryProblem() {
  const OpticalAccess access = loadOpticalLibrary();
  return access.isInstalled ? access.problem : std::string();
}

void releaseOpticalDrives() {
  if (const OpticalLibrary* const library = loaded().library) library->letGo();
}

}  // namespace quillon::platform
