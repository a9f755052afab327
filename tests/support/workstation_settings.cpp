#include "support/workstation_settings.h"

#include <cstdlib>

#include "support/temp_dir.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace quillon::test {

#ifdef _WIN32
namespace {
constexpr const wchar_t* kKey = L"SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation";
}

MediaCreationKey::MediaCreationKey(const std::filesystem::path&) { remove(); }

void MediaCreationKey::setOtherContent(const std::filesystem::path& directory) const {
  const std::wstring& value = directory.native();
  RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, L"OtherContentSourceDir", REG_SZ, value.c_str(),
                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

void MediaCreationKey::setWithoutValue() const {
  remove();
  HKEY key = nullptr;
  RegCreateKeyW(HKEY_LOCAL_MACHINE, kKey, &key);
  RegCloseKey(key);
}

void MediaCreationKey::remove() const { RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey); }

MediaCreationKey::~MediaCreationKey() { remove(); }

TemporaryFilesIn::TemporaryFilesIn(const std::filesystem::path& directory)
    : before_(std::filesystem::temp_directory_path()) {
  SetEnvironmentVariableW(L"TMP", directory.c_str());
}

TemporaryFilesIn::~TemporaryFilesIn() { SetEnvironmentVariableW(L"TMP", before_.c_str()); }
#else
namespace {
constexpr const char* kKey =
    "Windows Registry Editor Version 5.00\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation]\n";
}

MediaCreationKey::MediaCreationKey(const std::filesystem::path& directory)
    : file_(directory / "registry.reg") {
  ::setenv("QUILLON_REGISTRY", file_.c_str(), 1);
}

void MediaCreationKey::setOtherContent(const std::filesystem::path& directory) const {
  writeText(file_, kKey + ("\"OtherContentSourceDir\"=\"" + directory.string() + "\"\n"));
}

void MediaCreationKey::setWithoutValue() const { writeText(file_, kKey); }

void MediaCreationKey::remove() const { std::filesystem::remove(file_); }

MediaCreationKey::~MediaCreationKey() { ::unsetenv("QUILLON_REGISTRY"); }

TemporaryFilesIn::TemporaryFilesIn(const std::filesystem::path& directory) {
  if (const char* before = std::getenv("TMPDIR")) before_ = before;
  ::setenv("TMPDIR", directory.c_str(), 1);
}

TemporaryFilesIn::~TemporaryFilesIn() {
  before_.empty() ? ::unsetenv("TMPDIR") : ::setenv("TMPDIR", before_.c_str(), 1);
}
#endif

}  // namespace quillon::test
