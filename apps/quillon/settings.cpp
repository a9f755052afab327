#include "settings.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <vector>

#include "create_job.h"
#include "fileset/setting_names.h"
#include "media_job.h"
#include "other_content_options.h"
#include "platform/registry_file_status.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr const OLECHAR* kMedia = kMediaCreationKeyPath;
constexpr const OLECHAR* kDiscs = OLESTR("SOFTWARE\\Tarn Imaging\\Quillon\\DiscMastering");
constexpr const OLECHAR* kCodePages = OLESTR("SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage");

// clang-format off
constexpr std::array kSettings{
    Setting{"CurrentPractice", kMedia, SettingKind::Flag, "1", "", "1: media follow the field of today; 0: they are as older media are (COM hosts: 0 without it)"},
    Setting{"OtherContentSourceDir", kMedia, SettingKind::Directory, "", "", "Directory whose content every medium gets, such as a viewer"},
    Setting{"OtherContentDirectory", kMedia, SettingKind::PlaceOnMedium, "QUILLON", "", "Where that lies on the media of the program; . is the root"},
    Setting{"PortableData", kMedia, SettingKind::Flag, "0", "", "1: media have pages and a README.TXT, as with --pdi"},
    Setting{"InstitutionName", kMedia, SettingKind::Text, "", "", "Who hands out the media"},
    Setting{"InstitutionAddress", kMedia, SettingKind::Text, "", "", "Its address"},
    Setting{"InstitutionPhone", kMedia, SettingKind::Text, "", "", "Its telephone number"},
    Setting{"InstitutionWeb", kMedia, SettingKind::Text, "", "", "Its web address"},
    Setting{"InstitutionDisclaimer", kMedia, SettingKind::Text, "", "", "What it wants said on every medium"},
    Setting{"AuditFile", kMedia, SettingKind::File, "", "", "File that gets one line for each job"},
    Setting{"AuditSyslog", kMedia, SettingKind::Flag, "0", "", "1: the system's log gets it"},
    Setting{"AuditHash", kMedia, SettingKind::Flag, "0", "", "1: it has keyed hashes of patient IDs and study UIDs in their place"},
    Setting{"AuditHashKey", kMedia, SettingKind::SecretFile, "", "", "File whose first line is the key of these hashes"},
    Setting{"ToolkitLogFile", kMedia, SettingKind::File, "", "", "File for the toolkit's log lines in COM hosts"},
    Setting{"Service", kDiscs, SettingKind::Choice, "auto", "auto virtual drives legacy none", "What writes discs"},
    Setting{"Drives", kDiscs, SettingKind::Text, "", "", "The drives, with semicolons between; without it all that the system has"},
    Setting{"ACP", kCodePages, SettingKind::CodePage, "1252", "", "Code page of texts that name no character set"},
};
// clang-format on

// What a reader of registry files of any make takes, and enough for a page of small print.
constexpr std::size_t kMaxValueChars = 2000;

std::string lowered(std::string_view text) {
  std::string low(text);
  std::ranges::transform(low, low.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return low;
}

class RegistryKey {
 public:
  RegistryKey() = default;
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  ~RegistryKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  LSTATUS open(const OLECHAR* path, REGSAM access) {
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, &key_);
  }
  LSTATUS make(const OLECHAR* path) {
    return RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key_,
                           nullptr);
  }
  [[nodiscard]] HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

std::string systemReason(LSTATUS code) {
  Text reason;
  static_cast<void>(CBaseItem().AppendSystemText(reason, static_cast<DWORD>(code), OLESTR(" ")));
  std::string text = narrow(reason);
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  return text.empty() ? "error " + std::to_string(code) + "." : text;
}

Outcome unwritable(LSTATUS code) {
  return "The registry file " + platform::registryFileStatus().writtenPath +
         " cannot be written: " + systemReason(code);
}

Outcome notOfItsKind(const Setting& setting, const char* what) {
  return "The value " + std::string(setting.name) + " in the registry file " +
         platform::registryFileStatus().path + " is not " + what + ".";
}

std::string shownChoices(std::string_view choices) {
  std::string shown(choices);
  for (std::size_t at = shown.find(' '); at != std::string::npos; at = shown.find(' ', at + 2)) {
    shown.replace(at, 1, ", ");
  }
  return shown;
}

bool isPrintable(std::string_view text) {
  if (std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x20; })) {
    return false;
  }
  while (!text.empty()) {
    const std::size_t bytes = utf8SequenceBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

Outcome checkPath(const Setting& setting, std::string& value) {
  const std::string path = absoluteRoot(value);
  std::error_code error;
  const bool isDirectory = fs::is_directory(path, error);
  if (setting.kind == SettingKind::Directory) {
    if (!isDirectory) return "There is no directory " + path + ".";
  } else if (isDirectory) {
    return path + " is a directory.";
  } else if (setting.kind == SettingKind::SecretFile && !fs::exists(path, error)) {
    return "There is no file " + path + ".";
  } else if (const fs::path parent = fs::path(path).parent_path();
             !fs::is_directory(parent, error)) {
    return "There is no directory " + parent.string() + " for the file " + path + ".";
  }
  value = path;
  return {};
}

bool isCodePage(const std::string& value) {
  const bool isNumber = !value.empty() && value.size() <= 5 &&
                        std::ranges::all_of(value, [](char c) { return c >= '0' && c <= '9'; });
  if (!isNumber || std::stoi(value) == 0) return false;
  WCHAR unit = 0;
  return MultiByteToWideChar(static_cast<UINT>(std::stoi(value)), 0, "a", 1, &unit, 1) == 1;
}

bool isChoice(const Setting& setting, const std::string& value) {
  std::istringstream choices(setting.choices);
  for (std::string choice; choices >> choice;) {
    if (choice == value) return true;
  }
  return false;
}

}  // namespace

std::span<const Setting> allSettings() { return kSettings; }

const Setting* findSetting(std::string_view name) {
  const auto found = std::ranges::find_if(
      kSettings, [&](const Setting& one) { return lowered(one.name) == lowered(name); });
  return found == kSettings.end() ? nullptr : &*found;
}

std::vector<std::string> settingNames() {
  std::vector<std::string> names;
  names.reserve(kSettings.size());
  for (const Setting& setting : kSettings) names.emplace_back(setting.name);
  return names;
}

const char* kindName(SettingKind kind) {
  switch (kind) {
    case SettingKind::Directory:
      return "directory";
    case SettingKind::File:
    case SettingKind::SecretFile:
      return "file";
    case SettingKind::PlaceOnMedium:
      return "place";
    case SettingKind::Flag:
      return "flag";
    case SettingKind::Choice:
      return "choice";
    case SettingKind::CodePage:
      return "number";
    case SettingKind::Text:
      break;
  }
  return "text";
}

Outcome readSetting(const Setting& setting, std::optional<std::string>& value) {
  value.reset();
  RegistryKey key;
  if (key.open(setting.key, KEY_QUERY_VALUE) != 0) return {};
  const Text name = wide(setting.name);
  DWORD type = 0;
  DWORD lengthBytes = 0;
  if (RegQueryValueExW(key.get(), name.c_str(), nullptr, &type, nullptr, &lengthBytes) != 0) {
    return {};
  }
  std::vector<BYTE> data(lengthBytes);
  if (RegQueryValueExW(key.get(), name.c_str(), nullptr, &type, data.data(), &lengthBytes) != 0) {
    return {};
  }
  if (setting.kind == SettingKind::Flag) {
    if (type != REG_DWORD || lengthBytes != sizeof(DWORD)) return notOfItsKind(setting, "a number");
    std::uint32_t number = 0;
    for (std::size_t i = sizeof number; i-- > 0;) number = number << 8 | data[i];
    value = std::to_string(number);
    return {};
  }
  if (type != REG_SZ) return notOfItsKind(setting, "a text");
  Text text;
  for (std::size_t i = 0; i + 1 < lengthBytes; i += 2) {
    const auto unit = static_cast<OLECHAR>(data[i] | data[i + 1] << 8);
    if (unit == 0) break;
    text += unit;
  }
  value = narrow(text);
  return {};
}

std::string settingText(const char* name) {
  const Setting& setting = *findSetting(name);
  std::optional<std::string> value;
  if (readSetting(setting, value).failed()) return {};
  return value.value_or(setting.fallback);
}

Outcome checkSetting(const Setting& setting, std::string& value) {
  const std::string name = setting.name;
  if (value.empty()) {
    return name + " cannot be empty; quillon config unset " + name + " takes it away.";
  }
  if (!isPrintable(value) || wide(value).size() > kMaxValueChars) {
    return name + " is one line of at most " + std::to_string(kMaxValueChars) +
           " characters, in UTF-8.";
  }
  switch (setting.kind) {
    case SettingKind::Directory:
    case SettingKind::File:
    case SettingKind::SecretFile:
      return checkPath(setting, value);
    case SettingKind::PlaceOnMedium:
      return checkContentPlace(value);
    case SettingKind::Flag:
      return value == "0" || value == "1" ? Outcome() : name + " is 0 or 1, and not " + value + ".";
    case SettingKind::Choice:
      return isChoice(setting, value) ? Outcome()
                                      : name + " is one of " + shownChoices(setting.choices) +
                                            ", and not " + value + ".";
    case SettingKind::CodePage:
      return isCodePage(value) ? Outcome()
                               : name + " is the number of a code page that the system has, and " +
                                     value + " is none.";
    case SettingKind::Text:
      break;
  }
  return {};
}

Outcome writeSetting(const Setting& setting, const std::string& value) {
  RegistryKey key;
  if (const LSTATUS code = key.make(setting.key); code != 0) return unwritable(code);
  const Text name = wide(setting.name);
  LSTATUS code = 0;
  if (setting.kind == SettingKind::Flag) {
    const DWORD number = value == "1" ? 1 : 0;
    code = RegSetValueExW(key.get(), name.c_str(), 0, REG_DWORD,
                          reinterpret_cast<const BYTE*>(&number), sizeof number);
  } else {
    const Text text = wide(value);
    code = RegSetValueExW(key.get(), name.c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(OLECHAR)));
  }
  return code == 0 ? Outcome() : unwritable(code);
}

Outcome removeSetting(const Setting& setting, bool& wasSet) {
  wasSet = false;
  RegistryKey key;
  if (key.open(setting.key, KEY_SET_VALUE) != 0) return {};
  const LSTATUS code = RegDeleteValueW(key.get(), wide(setting.name).c_str());
  wasSet = code == 0;
  return wasSet || code == static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND) ? Outcome()
                                                                      : unwritable(code);
}

Outcome checkRegistryFile() {
  const platform::RegistryFileStatus file = platform::registryFileStatus();
  if (file.code != 0) {
    return "The registry file " + file.path + " cannot be read: " + systemReason(file.code);
  }
  if (file.damagedLine == 0) return {};
  return "The registry file " + file.path + " cannot be understood: line " +
         std::to_string(file.damagedLine) + " is neither a key nor a value.";
}

Outcome checkRegistry() {
  Outcome outcome = checkRegistryFile();
  for (const Setting& setting : kSettings) {
    std::optional<std::string> value;
    if (!outcome.failed()) outcome = readSetting(setting, value);
  }
  return outcome;
}

}  // namespace quillon::cli
