// The values that configure the program and the COM object: what each means, where it stands in the
// registry, what it may be, and how it is read and changed.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/text.h"
#include "outcome.h"

namespace quillon::cli {

enum class SettingKind : std::uint8_t {
  Text,
  Directory,      // that is there
  File,           // that is there or can be made
  SecretFile,     // that is there
  PlaceOnMedium,  // a directory below the root, or "." for the root
  Flag,           // a number, 0 or 1
  Choice,
  CodePage,
};

struct Setting {
  const char* name;    // without its key: no two have the same
  const OLECHAR* key;  // below HKEY_LOCAL_MACHINE
  SettingKind kind;
  const char* fallback;  // what holds without it; empty: nothing
  const char* choices;   // of a choice, with spaces between
  const char* meaning;
};

std::span<const Setting> allSettings();
// By its name in any case; null: there is none.
const Setting* findSetting(std::string_view name);
std::vector<std::string> settingNames();
const char* kindName(SettingKind kind);

// Of the registry; nothing where it has none. Fails for a value of another type.
Outcome readSetting(const Setting& setting, std::optional<std::string>& value);
// The same of a value by its name, which is in the table: what holds, and empty where it fails.
std::string settingText(const char* name);
// Makes of what a user gives what is to be written: paths become absolute.
Outcome checkSetting(const Setting& setting, std::string& value);
Outcome writeSetting(const Setting& setting, const std::string& value);
Outcome removeSetting(const Setting& setting, bool& wasSet);

// Fails when not all of the registry's file can be read: what it says beyond would be passed over.
Outcome checkRegistryFile();
// The same, and when a value in it is of another type than it should be.
Outcome checkRegistry();

}  // namespace quillon::cli
