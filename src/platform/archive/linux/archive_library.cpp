#include "archive_library.h"

#include <dlfcn.h>

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

}  // namespace quillon::platform
