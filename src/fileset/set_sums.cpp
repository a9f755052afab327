#include "fileset/set_sums.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "foundation/file_handle.h"
#include "foundation/find_handle.h"
#include "platform/services.h"
#include "platform/sha256.h"

namespace quillon {

namespace {

constexpr DWORD kPieceBytes = DWORD{256} << 10;

class RootSums {
 public:
  RootSums(const Text& root, CBaseItem& errors)
      : root_(root), errors_(errors), piece_(std::make_unique<char[]>(kPieceBytes)) {}

  // The names below the root, with backslashes, ascending.
  [[nodiscard]] bool Collect(const Text& directory, int level);
  [[nodiscard]] bool Make(std::string& lines);

 private:
  [[nodiscard]] bool SumOf(const Text& name, std::string& sum);
  bool FailToRead(const Text& path) { return errors_.Fail(kMsgCannotSumFile, {path}); }

  const Text& root_;
  CBaseItem& errors_;
  std::unique_ptr<char[]> piece_;
  std::vector<Text> names_;
};

bool RootSums::Collect(const Text& directory, int level) {
  constexpr int kMostLevels = 64;  // a link that leads back up has no end
  if (level > kMostLevels) return FailToRead(root_ + OLESTR('\\') + directory);
  FindHandle found(root_ + OLESTR('\\') + directory + OLESTR("*.*"));
  if (!found.IsOpen()) return directory.empty() ? FailToRead(root_) : true;
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry)) continue;
    const Text name = directory + entry.cFileName;
    if (IsDirectory(entry)) {
      if (!Collect(name + OLESTR('\\'), level + 1)) return false;
    } else if (name != kSumsFileName) {
      names_.push_back(name);
    }
  } while (found.Next());
  return !found.EndedEarly() || FailToRead(root_ + OLESTR('\\') + directory);
}

bool RootSums::Make(std::string& lines) {
  std::ranges::sort(names_);
  for (const Text& name : names_) {
    std::string sum;
    if (!SumOf(name, sum)) return false;
    std::string shown = NarrowText(name, FileSystemCodePage());
    std::ranges::replace(shown, '\\', '/');
    lines += SumLine(sum, shown);
  }
  return true;
}

bool RootSums::SumOf(const Text& name, std::string& sum) {
  const Text path = root_ + OLESTR('\\') + name;
  FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file.IsOpen()) return FailToRead(path);
  Sha256 bytes;
  DWORD got = 0;
  do {
    if (ReadFile(file.Get(), piece_.get(), kPieceBytes, &got, nullptr) == FALSE) {
      return FailToRead(path);
    }
    bytes.Update(piece_.get(), got);
  } while (got > 0);
  sum = bytes.Finish();
  return !sum.empty() || FailToRead(path);
}

}  // namespace

// Of the form that a line end in a name, or a backslash, stands behind a backslash, and one before
// the line says so.
std::string SumLine(std::string_view sum, std::string_view name) {
  std::string written;
  for (const char c : name) {
    if (c == '\n') {
      written += "\\n";
    } else if (c == '\r') {
      written += "\\r";
    } else {
      if (c == '\\') written += '\\';
      written += c;
    }
  }
  return (written == name ? "" : "\\") + std::string(sum) + "  " + written + "\n";
}

bool WriteSetSums(TextView rootDirectory, CFileUtil& files, CBaseItem& errors) {
  Text root(rootDirectory);
  while (root.size() > 1 && (root.ends_with(OLESTR('\\')) || root.ends_with(OLESTR('/')))) {
    root.pop_back();
  }
  const Text path = root + OLESTR('\\') + kSumsFileName;
  if (Sha256().Finish().empty()) {
    return !files.PathExists(path) || files.DeleteFile(path) || errors.FailAs(files);
  }
  RootSums sums(root, errors);
  std::string lines;
  if (!sums.Collect({}, 1) || !sums.Make(lines)) return false;
  return files.WriteData(reinterpret_cast<const std::uint8_t*>(lines.data()),
                         static_cast<std::uint32_t>(lines.size()), path, /*append=*/false) ||
         errors.FailAs(files);
}

}  // namespace quillon
