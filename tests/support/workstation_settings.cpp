#include "support/workstation_settings.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "support/temp_dir.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace quillon::test {

void MediaCreationKey::setOtherContent(const std::filesystem::path& directory) const {
  setText("OtherContentSourceDir", directory);
}

#ifdef _WIN32
namespace {

constexpr const wchar_t* kKey = L"SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation";

void setValue(const std::string& name, DWORD type, const void* value, std::size_t bytes) {
  HKEY key = nullptr;
  RegCreateKeyW(HKEY_LOCAL_MACHINE, kKey, &key);
  RegSetValueExW(key, std::filesystem::path(name).c_str(), 0, type, static_cast<const BYTE*>(value),
                 static_cast<DWORD>(bytes));
  RegCloseKey(key);
}

}  // namespace

MediaCreationKey::MediaCreationKey(const std::filesystem::path&) { remove(); }

void MediaCreationKey::setText(const std::string& name, const std::filesystem::path& value) const {
  remove();
  const std::wstring& text = value.native();
  setValue(name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void MediaCreationKey::setNumber(const std::string& name, unsigned value) const {
  remove();
  const DWORD number = value;
  setValue(name, REG_DWORD, &number, sizeof number);
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

void MediaCreationKey::setText(const std::string& name, const std::filesystem::path& value) const {
  writeText(file_, kKey + ("\"" + name + "\"=\"" + value.string() + "\"\n"));
}

void MediaCreationKey::setNumber(const std::string& name, unsigned value) const {
  std::array<char, 16> digits{};
  std::snprintf(digits.data(), digits.size(), "%08x", value);
  writeText(file_, kKey + ("\"" + name + "\"=dword:" + digits.data() + "\n"));
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
