// Other content with hostile names: files and directories are made of them, planned and copied
// beside a file set. Each name stands behind a byte that says what it is, up to a zero byte. What
// the plan takes is copied file by file, and nothing else.
#include <fcntl.h>
#include <sys/stat.h>

#include <set>

#include "input_parts.h"
#include "other_content.h"
#include "scratch_directory.h"
#include "win32/utf8.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using fuzz::require;

constexpr std::size_t kMostEntries = 40;
constexpr unsigned kDeepest = 6;

// A file, a directory that is gone into, the way back up, or a link. What the system refuses is
// not there.
void makeSource(const fs::path& source, fuzz::InputParts& parts) {
  fs::path at = source;
  unsigned depth = 0;
  for (std::size_t count = 0; !parts.isEmpty() && count < kMostEntries; ++count) {
    const unsigned what = parts.byte();
    if (what % 4 == 3) {
      if (depth > 0) {
        at = at.parent_path();
        --depth;
      }
      continue;
    }
    const std::string name(parts.text());
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos ||
        name.size() > 255) {
      continue;
    }
    const fs::path path = at / name;
    if (fs::exists(fs::symlink_status(path))) continue;
    if (what % 4 == 2 && depth < kDeepest) {
      if (::mkdir(path.c_str(), 0777) != 0) continue;
      at = path;
      ++depth;
    } else if (what % 4 == 1 && (what & 4U) != 0) {
      static_cast<void>(::symlink((what & 8U) != 0 ? "." : "..", path.c_str()));
    } else {
      const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
      if (file < 0) continue;
      require(::write(file, name.data(), std::min<std::size_t>(what / 4, name.size())) >= 0);
      ::close(file);
    }
  }
}

std::multiset<std::string> filesBelow(const fs::path& directory) {
  std::multiset<std::string> found;
  if (!fs::exists(directory)) return found;
  for (const auto& entry : fs::recursive_directory_iterator(
           directory, fs::directory_options::follow_directory_symlink)) {
    if (!entry.is_regular_file()) continue;
    found.insert(entry.path().lexically_relative(directory).native() + '\0' +
                 fuzz::readFile(entry.path()));
  }
  return found;
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const fuzz::ScratchDirectory scratch;
  ::setenv("QUILLON_REGISTRY", (scratch / "registry.reg").c_str(), 1);
  scratch.empty();
  const fs::path source = scratch / "in";
  const fs::path root = scratch / "root";
  fs::create_directory(source);
  fs::create_directory(root);
  fuzz::writeFile(scratch / "registry.reg",
                  "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn "
                  "Imaging\\Quillon\\Workstation\\MediaCreation]\n\"OtherContentSourceDir\"=\"" +
                      source.native() + "\"\n");
  fuzz::InputParts parts(data, size);
  const bool acceptsEmptyFiles = (parts.byte() & 1U) != 0;
  makeSource(source, parts);

  CFileUtil files;
  OtherContent content(files, acceptsEmptyFiles);
  const Text wideRoot = platform::wideFromNative(root.native());
  const bool isPlanned = content.PlanConfigured(wideRoot, OLESTR("OTHER"));
  require(filesBelow(root).empty());
  if (!isPlanned) {
    require(!content.ErrorMessage().empty());
    return 0;
  }
  require(content.HasContent());
  const std::multiset<std::string> wanted = filesBelow(source);
  require(content.Files().size() == wanted.size());
  require(content.Copy());
  require(filesBelow(root / "OTHER") == wanted);
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  require(content.CountFiles(count) && count == wanted.size());
  require(content.GetSize(bytes));
  return 0;
}
