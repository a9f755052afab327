// The workstation's non-DICOM content: where it comes from, how much it is, and the copy of it that
// lies beside the DICOM objects.
#include "fileset/dicom_dir_processor.h"
#include "foundation/working_directory_scope.h"
#include "path_join.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kKeyPath =
    OLESTR("SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation");
constexpr const OLECHAR* kValueName = OLESTR("OtherContentSourceDir");
constexpr const OLECHAR* kEveryFile = OLESTR("*.*");

class RegistryKey {
 public:
  RegistryKey() = default;
  ~RegistryKey() { Close(); }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  bool Open(HKEY parent, const OLECHAR* path) {
    return RegOpenKeyExW(parent, path, 0, KEY_QUERY_VALUE, &key_) == ERROR_SUCCESS;
  }
  bool Close() {
    HKEY key = key_;
    key_ = nullptr;
    return key == nullptr || RegCloseKey(key) == ERROR_SUCCESS;
  }
  bool ReadText(const OLECHAR* name, Text& out) {
    DWORD type = 0;
    DWORD lengthBytes = 0;
    if (RegQueryValueExW(key_, name, nullptr, &type, nullptr, &lengthBytes) != ERROR_SUCCESS ||
        type != REG_SZ) {
      return false;
    }
    Text text(lengthBytes / sizeof(OLECHAR) + 1, OLECHAR{0});
    lengthBytes = static_cast<DWORD>(text.size() * sizeof(OLECHAR));
    if (RegQueryValueExW(key_, name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                         &lengthBytes) != ERROR_SUCCESS) {
      return false;
    }
    // The stored length may or may not count a terminator.
    out.assign(text, 0, text.find(OLECHAR{0}));
    return true;
  }

 private:
  HKEY key_ = nullptr;
};

}  // namespace

bool CDicomDirProcessor::GetOtherContentSourceDir(Text& directory) {
  directory.clear();
  RegistryKey key;
  if (!key.Open(HKEY_LOCAL_MACHINE, kKeyPath)) {
    return Fail(kMsgCannotOpenRegistryKey, {kKeyPath, LoadMessage(kMsgRegistryKeyMissing)});
  }
  if (!key.ReadText(kValueName, directory)) {
    return Fail(kMsgCannotQueryRegistryValue,
                {kKeyPath, kValueName, LoadMessage(kMsgRegistryValueMissing)});
  }
  if (!key.Close()) {
    return Fail(kMsgCannotCloseRegistryKey, {kKeyPath, LoadMessage(kMsgRegistryKeyNotClosed)});
  }
  return true;
}

bool CDicomDirProcessor::CopyOtherContent(const Text& rootDirectory) {
  Text source;
  // A workstation on which no source was configured has nothing to copy; the sentence tells why.
  if (!GetOtherContentSourceDir(source)) return true;
  if (source.empty() || !files_.PathExists(source)) return true;

  const WorkingDirectoryScope workingDirectory;
  // The copy works from inside the source, where relative names would mean something else.
  source = AbsolutePath(source);
  Text destination = AbsolutePath(rootDirectory);
  if (!files_.CreateDirectoryTree(destination)) return FailAs(files_);
  TextView below(otherContentDirectory_);
  if (below.starts_with(OLESTR('\\')) || below.starts_with(OLESTR('/'))) below.remove_prefix(1);
  if (!below.empty()) {
    if (!JoinBelow(destination, below, *this)) return false;
    if (!files_.CreateDirectoryTree(destination)) return FailAs(files_);
  }
  if (!files_.ChangeDirectory(source) ||
      !files_.CopyDirectory(destination, source, kEveryFile, /*recurse=*/true)) {
    return FailAs(files_);
  }
  return true;
}

bool CDicomDirProcessor::MeasureOtherContent(Measure what, std::uint64_t& total) {
  total = 0;
  Text source;
  if (!GetOtherContentSourceDir(source)) return false;
  if (source.empty() || !files_.PathExists(source)) return true;

  const WorkingDirectoryScope workingDirectory;
  source = AbsolutePath(source);
  if (!files_.ChangeDirectory(source)) return FailAs(files_);
  if (what == Measure::Bytes) {
    return files_.GetDirectorySize(total, source, kEveryFile, /*recurse=*/true) || FailAs(files_);
  }
  std::uint32_t count = 0;
  if (!files_.CountFiles(count, source, kEveryFile, /*recurse=*/true)) return FailAs(files_);
  total = count;
  return true;
}

}  // namespace quillon
