#include "win32/own_library.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <vector>

#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

namespace fs = std::filesystem;

bool isInProgram(const void* address) {
  Dl_info info{};
  void* map = nullptr;
  if (::dladdr1(address, &info, &map, RTLD_DL_LINKMAP) == 0 || map == nullptr) return true;
  const char* name = static_cast<const link_map*>(map)->l_name;
  return name == nullptr || *name == 0;  // the loader has no name for the program
}

// The file that the address was loaded from. The loader keeps the name that it was given, which may
// be relative to a working directory that has changed since; the kernel knows the file.
fs::path fileOf(const void* address) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  std::string maps;
  if (!readFile("/proc/self/maps", maps)) return {};
  std::string_view rest = maps;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    const char* const last = line.data() + line.size();
    const char* const dash = std::from_chars(line.data(), last, begin, 16).ptr;
    if (dash != last) std::from_chars(dash + 1, last, end, 16);
    const std::size_t path = line.find('/');
    if (begin <= wanted && wanted < end && path != std::string_view::npos) return line.substr(path);
  }
  return {};
}

std::vector<fs::path> directories() {
  const auto* const here = reinterpret_cast<const void*>(&openOwnLibrary);
  if (isInProgram(here)) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    return {program.parent_path() / QUILLON_LIBRARIES_FROM_PROGRAM};
  }
  const fs::path own = fileOf(here).parent_path();
  if (own.empty()) return {};
  return {own, own / "quillon"};
}

// Whether the file lacks something that the loader maps: the process would end when that is
// touched. What is no library at all, the loader refuses by itself.
bool isTorn(const fs::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
  ElfW(Ehdr) header{};
  if (!file.seekg(0).read(reinterpret_cast<char*>(&header), sizeof(header))) return false;
  constexpr unsigned char kOwnClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != kOwnClass) {
    return false;
  }
  file.seekg(static_cast<std::streamoff>(header.e_phoff));
  for (int i = 0; i < header.e_phnum; ++i) {
    ElfW(Phdr) segment{};
    if (!file.read(reinterpret_cast<char*>(&segment), sizeof(segment))) return true;
    if (segment.p_offset > size || segment.p_filesz > size - segment.p_offset) return true;
  }
  return false;
}

}  // namespace

std::string ownLibraryPath(const std::string& fileName) {
  for (const fs::path& directory : directories()) {
    const fs::path path = (directory / fileName).lexically_normal();
    if (::access(path.c_str(), F_OK) == 0) return path.string();
  }
  return {};
}

OwnLibrary openOwnLibrary(const std::string& fileName) {
  OwnLibrary library;
  library.path = ownLibraryPath(fileName);
  if (library.path.empty()) return library;
  if (isTorn(library.path)) {
    library.problem = "the file is not whole";
    return library;
  }
  library.handle = ::dlopen(library.path.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (library.handle != nullptr) return library;
  const char* const said = ::dlerror();
  library.problem = said == nullptr ? "for a reason that is not known" : said;
  // The reason begins with the file that is at fault: this one or one that it needs.
  if (library.problem.starts_with(library.path + ": ")) {
    library.problem.erase(0, library.path.size() + 2);
  }
  return library;
}

}  // namespace quillon::platform
