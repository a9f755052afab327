#include "archive_library.h"

#include <dlfcn.h>

#include "platform/archive.h"

namespace quillon::platform {

namespace {

// The name that goes with the headers.
constexpr const char* kLibraryName = "libarchive.so.13";

template <typename Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  return function != nullptr;
}

// It stays loaded: what it registers in the process may refer to it.
const ArchiveLibrary* load() {
  void* const library = ::dlopen(kLibraryName, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  static ArchiveLibrary found;
  bool hasAll = true;
#define QUILLON_FIND(name) hasAll = find(library, #name, found.name) && hasAll;
  QUILLON_ARCHIVE_FUNCTIONS(QUILLON_FIND)
#undef QUILLON_FIND
  return hasAll ? &found : nullptr;
}

}  // namespace

const ArchiveLibrary* archiveLibrary() {
  static const ArchiveLibrary* const library = load();
  return library;
}

std::string archiveLibraryVersion() {
  const ArchiveLibrary* const library = archiveLibrary();
  if (library == nullptr) return {};
  // 3006002 is 3.6.2.
  const int number = library->archive_version_number();
  return std::to_string(number / 1000000) + "." + std::to_string(number / 1000 % 1000) + "." +
         std::to_string(number % 1000);
}

}  // namespace quillon::platform
