#include "directory_source.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/file_handle.h"
#include "foundation/find_handle.h"

namespace quillon {

namespace {

// A medium of more is none: a million objects fill a large one.
constexpr std::size_t kMaxEntries = 4'000'000;
constexpr std::size_t kMaxDepth = 128;
constexpr std::size_t kMaxReadBytes = std::size_t{1} << 30;
constexpr OLECHAR kSeparator = OLESTR('\\');

class OpenedFile final : public MediumFile {
 public:
  explicit OpenedFile(const Text& path)
      : handle_(CreateFileW(path.c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {}

  // False also for what is no regular file: a device has no size.
  [[nodiscard]] bool Measure() {
    BY_HANDLE_FILE_INFORMATION data{};
    if (!handle_.IsOpen() || GetFileInformationByHandle(handle_.Get(), &data) == FALSE ||
        (data.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0) {
      return false;
    }
    sizeBytes_ = std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
    return true;
  }

  [[nodiscard]] std::uint64_t SizeBytes() const override { return sizeBytes_; }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) override {
    if (offset > sizeBytes_ || count > sizeBytes_ - offset) return false;
    if (offset != position_) {
      LARGE_INTEGER distance{};
      distance.QuadPart = static_cast<LONGLONG>(offset);
      if (SetFilePointerEx(handle_.Get(), distance, nullptr, FILE_BEGIN) == FALSE) return false;
      position_ = offset;
    }
    auto* to = static_cast<char*>(bytes);
    while (count > 0) {
      DWORD got = 0;
      const auto wanted = static_cast<DWORD>(std::min(count, kMaxReadBytes));
      if (ReadFile(handle_.Get(), to, wanted, &got, nullptr) == FALSE || got == 0) {
        position_ = ~std::uint64_t{0};  // unknown
        return false;
      }
      to += got;
      count -= got;
      position_ += got;
    }
    return true;
  }

 private:
  FileHandle handle_;
  std::uint64_t sizeBytes_ = 0;
  std::uint64_t position_ = 0;
};

MediumEntry EntryOf(const WIN32_FIND_DATAW& data, TextView directory) {
  using enum MediumEntry::Kind;
  MediumEntry entry;
  entry.path = directory;
  if (!directory.empty()) entry.path += kSeparator;
  entry.path += data.cFileName;
  if (IsLink(data)) {
    entry.kind = Link;
  } else if (IsDirectory(data)) {
    entry.kind = Directory;
  } else if ((data.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0) {
    entry.kind = Other;
  } else {
    entry.sizeBytes = std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
  }
  return entry;
}

bool IsPlainName(TextView name) {
  return !name.empty() && name != OLESTR(".") && name != OLESTR("..") &&
         name.find_first_of(TextView(OLESTR("/\0"), 2)) == TextView::npos;
}

}  // namespace

DirectorySource::DirectorySource(TextView directory) : root_(directory) {
  SetClassName(OLESTR("DirectorySource"));
}

Text DirectorySource::Below(TextView path) const {
  Text full = root_;
  if (!full.empty() && full.back() != kSeparator && full.back() != OLESTR('/')) full += kSeparator;
  return full.append(path);
}

bool DirectorySource::ListOne(const Pending& directory, std::vector<MediumEntry>& entries,
                              std::vector<Pending>& found) {
  const Text path = Below(directory.path);
  FindHandle find(
      Below(directory.path.empty() ? OLESTR("*") : directory.path + kSeparator + OLESTR('*')));
  bool isThere = find.IsOpen();
  if (!isThere && GetLastError() != ERROR_FILE_NOT_FOUND) {
    return Fail(kMsgCannotOpenFile, {path});
  }
  for (; isThere; isThere = find.Next()) {
    if (IsDotEntry(find.Entry())) continue;
    if (entries.size() >= kMaxEntries) return Fail(kMsgCannotOpenFile, {path});
    entries.push_back(EntryOf(find.Entry(), directory.path));
    if (entries.back().kind == MediumEntry::Kind::Directory) {
      found.push_back({entries.back().path, directory.depth + 1});
    }
  }
  return !find.EndedEarly() || Fail(kMsgCannotOpenFile, {path});
}

bool DirectorySource::List(std::vector<MediumEntry>& entries) {
  bool isWhole = true;
  std::vector<Pending> pending{{Text(), 0}};
  while (!pending.empty()) {
    const Pending directory = std::move(pending.back());
    pending.pop_back();
    if (directory.depth > kMaxDepth) {
      isWhole = Fail(kMsgCannotOpenFile, {Below(directory.path)});
      continue;
    }
    std::vector<Pending> found;
    isWhole = ListOne(directory, entries, found) && isWhole;
    pending.insert(pending.end(), std::make_move_iterator(found.rbegin()),
                   std::make_move_iterator(found.rend()));
  }
  return isWhole;
}

// Whether each part of the path is a directory of the medium itself.
bool DirectorySource::IsOwnDirectory(TextView path) {
  if (path.empty() || path == seenDirectory_) return true;
  for (std::size_t end = 0; end <= path.size(); ++end) {
    end = std::min(path.find(kSeparator, end), path.size());
    const DWORD attributes = GetFileAttributesW(Below(path.substr(0, end)).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 ||
        (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
      return false;
    }
  }
  seenDirectory_ = path;
  return true;
}

std::unique_ptr<MediumFile> DirectorySource::Open(TextView path) {
  const Text full = Below(path);
  const auto refuse = [&]() -> std::unique_ptr<MediumFile> {
    static_cast<void>(Fail(kMsgCannotOpenFile, {full}));
    return nullptr;
  };
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find(kSeparator, begin), path.size());
    if (!IsPlainName(path.substr(begin, end - begin))) return refuse();
    begin = end + 1;
  }
  const std::size_t last = path.rfind(kSeparator);
  if (last != TextView::npos && !IsOwnDirectory(path.substr(0, last))) return refuse();
  const DWORD attributes = GetFileAttributesW(full.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES ||
      (attributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DEVICE)) != 0) {
    return refuse();
  }
  auto file = std::make_unique<OpenedFile>(full);
  if (!file->Measure()) return refuse();
  return file;
}

}  // namespace quillon
