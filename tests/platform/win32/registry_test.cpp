// The registry and its file.
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "layer_fixture.h"
#include "platform/registry_file_status.h"
#include "registry_file.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class Registry : public LayerTest {
 protected:
  void write(std::string_view text) { writeText(dir_ / "registry.reg", text); }

  [[nodiscard]] std::string read() const {
    std::ifstream in(dir_ / "registry.reg", std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  static LSTATUS query(HKEY root, const char16_t* path, const char16_t* name, DWORD& type,
                       std::string& data) {
    HKEY key = nullptr;
    LSTATUS status = RegOpenKeyExW(root, path, 0, KEY_QUERY_VALUE, &key);
    if (status != 0) return status;
    DWORD length = 0;
    status = RegQueryValueExW(key, name, nullptr, &type, nullptr, &length);
    if (status == 0) {
      data.resize(length);
      status = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                                &length);
    }
    RegCloseKey(key);
    return status;
  }

  // The text of a REG_SZ without its terminator; the code as a text on failure.
  static std::u16string text(HKEY root, const char16_t* path, const char16_t* name) {
    DWORD type = 0;
    std::string data;
    const LSTATUS status = query(root, path, name, type, data);
    if (status != 0) return u"<" + std::u16string(1, static_cast<char16_t>(u'0' + status)) + u">";
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(data.size() % 2, 0U);
    std::u16string units(data.size() / 2, u'\0');
    std::copy(data.begin(), data.end(), reinterpret_cast<char*>(units.data()));
    EXPECT_EQ(units.back(), u'\0');
    units.pop_back();
    return units;
  }

  static LSTATUS setText(HKEY key, const char16_t* name, std::u16string_view value) {
    const std::u16string terminated(value);
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(terminated.c_str()),
                          static_cast<DWORD>((terminated.size() + 1) * 2));
  }
};

constexpr const char* kSample =
    "Windows Registry Editor Version 5.00\r\n"
    "\r\n"
    "; a comment\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\Product]\r\n"
    "@=\"default\"\r\n"
    "\"Path\"=\"C:\\\\Data \\\"here\\\"\"\r\n"
    "\"Na\\\\me \\\"=\\\"\"=\"odd name\"\r\n"
    "\"Number\"=dword:0000ff01\r\n"
    "\"Bytes\"=hex:01,02,\\\r\n"
    "  03,\\\r\n"
    "  fe\r\n"
    "\"Expand\"=hex(2):25,00,00,00\r\n"
    "\"Empty\"=\"\"\r\n"
    "\"Backslash\"=\"C:\\\\\"\r\n"
    "\"Gone\"=\"x\"\r\n"
    "\"Gone\"=-\r\n"
    "\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\Old]\r\n"
    "\"A\"=\"b\"\r\n"
    "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\Old]\r\n"
    "[HKEY_CURRENT_USER\\Software]\r\n"
    "\"U\"=\"M\xC3\xBCller\"\r\n";

constexpr const char16_t* kProduct = u"SOFTWARE\\Maker\\Product";

TEST_F(Registry, ReadsTheStandardFormat) {
  write(kSample);
  struct Case {
    const char16_t* name;
    DWORD type;
    std::string data;
  };
  const auto utf16 = [](std::u16string_view value) {
    return std::string(reinterpret_cast<const char*>(value.data()), value.size() * 2);
  };
  const Case cases[] = {
      {nullptr, REG_SZ, utf16({u"default\0", 8})},
      {u"", REG_SZ, utf16({u"default\0", 8})},
      {u"Path", REG_SZ, utf16({u"C:\\Data \"here\"\0", 15})},
      {u"PATH", REG_SZ, utf16({u"C:\\Data \"here\"\0", 15})},
      {u"Na\\me \"=\"", REG_SZ, utf16({u"odd name\0", 9})},
      {u"Number", REG_DWORD, std::string("\x01\xFF\0\0", 4)},
      {u"Bytes", REG_BINARY, "\x01\x02\x03\xFE"},
      {u"Expand", REG_EXPAND_SZ, std::string("%\0\0\0", 4)},
      {u"Empty", REG_SZ, std::string(2, '\0')},
      {u"Backslash", REG_SZ, utf16({u"C:\\\0", 4})},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name == nullptr ? "(null)" : narrow(c.name));
    DWORD type = 0;
    std::string data;
    EXPECT_EQ(query(HKEY_LOCAL_MACHINE, kProduct, c.name, type, data), 0);
    EXPECT_EQ(type, c.type);
    EXPECT_EQ(data, c.data);
  }
  EXPECT_EQ(text(HKEY_LOCAL_MACHINE, kProduct, u"Gone"), u"<2>");
  EXPECT_EQ(text(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Maker\\Old", u"A"), u"<2>");
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"software", u"u"), u"M\u00FCller");
}

TEST_F(Registry, ReadsUtf16AndWritesItBack) {
  std::u16string wide =
      u"\uFEFFWindows Registry Editor Version 5.00\r\n\r\n"
      u"[HKEY_CURRENT_USER\\K]\r\n\"N\"=\"\u4E2D\"\r\n";
  write({reinterpret_cast<const char*>(wide.data()), wide.size() * 2});
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"\u4E2D");
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"K", 0, KEY_SET_VALUE, &key), 0);
  ASSERT_EQ(setText(key, u"P", u"q"), 0);
  RegCloseKey(key);
  wide += u"\"P\"=\"q\"\r\n";
  EXPECT_EQ(read(), std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2));
}

TEST_F(Registry, WritesWhatAnyReaderOfTheFormatUnderstands) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kProduct, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                            &key, &disposition),
            0);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  EXPECT_EQ(setText(key, u"Path", u"C:\\x \"y\""), 0);
  EXPECT_EQ(setText(key, nullptr, u"d"), 0);
  EXPECT_EQ(setText(key, u"Lines", u"a\nb"), 0);
  const DWORD number = 10;
  EXPECT_EQ(RegSetValueExW(key, u"Number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4),
            0);
  EXPECT_EQ(
      RegSetValueExW(key, u"Raw", 0, REG_BINARY, reinterpret_cast<const BYTE*>("\x01\xFF"), 2), 0);
  RegCloseKey(key);
  EXPECT_EQ(read(),
            "Windows Registry Editor Version 5.00\n"
            "\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\Product]\n"
            "@=\"d\"\n"
            "\"Lines\"=hex(1):61,00,0a,00,62,00,00,00\n"
            "\"Number\"=dword:0000000a\n"
            "\"Path\"=\"C:\\\\x \\\"y\\\"\"\n"
            "\"Raw\"=hex:01,ff\n");
  EXPECT_EQ(text(HKEY_LOCAL_MACHINE, kProduct, u"Lines"), u"a\nb");
}

TEST_F(Registry, WrittenTextReadsBackTheSame) {
  const platform::RegistryDocument first = platform::parseRegistry(kSample);
  const std::string once = platform::writeRegistry(first);
  const platform::RegistryDocument second = platform::parseRegistry(once);
  EXPECT_FALSE(first.damaged);
  EXPECT_FALSE(second.damaged);
  EXPECT_EQ(platform::writeRegistry(second), once);
  platform::RegistryDocument large;
  bool created = false;
  platform::RegistryKey& key = large.roots.make(u"HKEY_CURRENT_USER\\L", created);
  key.values[u"Long"] = {REG_BINARY, std::vector<BYTE>(1000, 0xAB)};
  EXPECT_EQ(platform::parseRegistry(platform::writeRegistry(large))
                .roots.find(u"hkey_current_user\\l")
                ->values[u"Long"]
                .data,
            std::vector<BYTE>(1000, 0xAB));
}

TEST_F(Registry, ALineThatIsNotUnderstoodIsNeverLost) {
  for (const char* line :
       {"nonsense", "\"A\"=dword:123456789", "\"A\"=hex:1,xy", "\"A\"=\"open", "\"A\"=hex:012",
        "[HKEY_CURRENT_USER\\X", "\"A\" \"b\"", "\"A\"=\"b\" c"}) {
    SCOPED_TRACE(line);
    const std::string content =
        std::string("Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\K]\n\"N\"=\"v\"\n") +
        line + "\n";
    write(content);
    EXPECT_EQ(platform::registryFileStatus().damagedLine, 4U);
    EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"v");
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"K", 0, KEY_ALL_ACCESS, &key), 0);
    EXPECT_EQ(setText(key, u"P", u"q"), static_cast<LSTATUS>(ERROR_BADKEY));
    EXPECT_EQ(RegDeleteValueW(key, u"N"), static_cast<LSTATUS>(ERROR_BADKEY));
    RegCloseKey(key);
    EXPECT_EQ(read(), content);
  }
}

TEST_F(Registry, CallsAnswerTheirCode) {
  write(kSample);
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"SOFTWARE\\No", 0, KEY_READ, &key), 2);
  EXPECT_EQ(key, nullptr);
  EXPECT_EQ(RegOpenKeyExW(nullptr, u"SOFTWARE", 0, KEY_READ, &key), 6);
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"\\SOFTWARE", 0, KEY_READ, &key), 161);
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"software\\maker", 0, KEY_READ, &key), 0);
  EXPECT_EQ(RegQueryValueExW(key, u"No", nullptr, nullptr, nullptr, nullptr), 2);
  EXPECT_EQ(setText(key, u"X", u"y"), 5) << "opened for reading";
  HKEY product = nullptr;
  ASSERT_EQ(RegOpenKeyExW(key, u"Product", 0, KEY_QUERY_VALUE, &product), 0);
  BYTE small[4];
  DWORD length = sizeof small;
  EXPECT_EQ(RegQueryValueExW(product, u"Path", nullptr, nullptr, small, &length), 234);
  EXPECT_EQ(length, 30U);
  EXPECT_EQ(RegCloseKey(product), 0);
  EXPECT_EQ(RegCloseKey(product), 6);
  EXPECT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Maker"), 5) << "has subkeys";
  EXPECT_EQ(RegDeleteKeyW(key, u"Product"), 0);
  EXPECT_EQ(RegDeleteKeyW(key, u"Product"), 2);
  EXPECT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Maker"), 0);
  EXPECT_EQ(RegQueryValueExW(key, u"No", nullptr, nullptr, nullptr, nullptr), 1018) << "deleted";
  EXPECT_EQ(RegDeleteKeyW(key, u"Product"), 1018);
  EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"Software", u"U"), u"M\u00FCller") << "not below the tree";
}

TEST_F(Registry, AValueIsRemovedAlone) {
  write(std::string(kSample) + "\"V\"=hex:01,\\\r\n  02\r\nnonsense\r\n");
  EXPECT_EQ(platform::registryFileStatus().damagedLine, 25U) << "lines that go on count";
  write(kSample);
  EXPECT_EQ(platform::registryFileStatus().damagedLine, 0U);
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kProduct, 0, KEY_READ, &key), 0);
  EXPECT_EQ(RegDeleteValueW(key, u"Path"), 5) << "opened for reading";
  RegCloseKey(key);
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kProduct, 0, KEY_SET_VALUE, &key), 0);
  EXPECT_EQ(RegDeleteValueW(key, u"PATH"), 0);
  EXPECT_EQ(RegDeleteValueW(key, u"Path"), 2);
  RegCloseKey(key);
  EXPECT_EQ(text(HKEY_LOCAL_MACHINE, kProduct, u"Path"), u"<2>");
  EXPECT_EQ(text(HKEY_LOCAL_MACHINE, kProduct, u""), u"default");
}

TEST_F(Registry, DeletingAKeyLeavesItsNeighbours) {
  HKEY key = nullptr;
  for (const char16_t* name : {u"A", u"B", u"C"}) {
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr),
        0);
    RegCloseKey(key);
  }
  EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"B"), 0);
  for (const char16_t* name : {u"A", u"C"}) {
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ, &key), 0) << narrow(name);
    RegCloseKey(key);
  }
  EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"B", 0, KEY_READ, &key), 2);
}

TEST_F(Registry, AHandleOfADeletedKeyIsOneForGood) {
  write(kSample);
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kProduct, 0, KEY_ALL_ACCESS, &key), 0);
  HKEY parent = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Maker", 0, KEY_ALL_ACCESS, &parent), 0);
  EXPECT_EQ(RegDeleteKeyW(parent, u"PRODUCT"), 0);
  char16_t name[16];
  DWORD units = 16;
  HKEY other = nullptr;
  for (const bool isMadeAnew : {false, true}) {
    SCOPED_TRACE(isMadeAnew);
    if (isMadeAnew) {
      ASSERT_EQ(
          RegCreateKeyExW(parent, u"Product", 0, nullptr, 0, KEY_READ, nullptr, &other, nullptr),
          0);
      EXPECT_EQ(RegQueryValueExW(other, u"Path", nullptr, nullptr, nullptr, nullptr), 2);
      RegCloseKey(other);
    }
    EXPECT_EQ(RegQueryValueExW(key, u"Path", nullptr, nullptr, nullptr, nullptr), 1018);
    EXPECT_EQ(setText(key, u"X", u"y"), 1018);
    EXPECT_EQ(RegDeleteKeyW(key, u"Sub"), 1018);
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &units, nullptr, nullptr, nullptr, nullptr), 1018);
    EXPECT_EQ(RegOpenKeyExW(key, u"Sub", 0, KEY_READ, &other), 1018);
    EXPECT_EQ(RegCreateKeyExW(key, u"Sub", 0, nullptr, 0, KEY_READ, nullptr, &other, nullptr),
              1018);
  }
  EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegCloseKey(parent), 0);
}

// Removes what is below a key from the first name on, as the calls allow it.
LSTATUS removeBelow(HKEY key) {
  for (;;) {
    char16_t name[32];
    DWORD units = 32;
    LSTATUS status = RegEnumKeyExW(key, 0, name, &units, nullptr, nullptr, nullptr, nullptr);
    if (status == 259) return 0;
    if (status != 0) return status;
    HKEY below = nullptr;
    status = RegOpenKeyExW(key, name, 0, KEY_READ, &below);
    if (status != 0) return status;
    status = removeBelow(below);
    if (status == 0) status = RegDeleteKeyW(key, name);  // while it is open
    RegCloseKey(below);
    if (status != 0) return status;
  }
}

TEST_F(Registry, ATreeIsRemovedKeyByKey) {
  write(
      "[HKEY_CLASSES_ROOT\\T]\n[HKEY_CLASSES_ROOT\\T\\a\\b\\c]\n@=\"x\"\n"
      "[HKEY_CLASSES_ROOT\\T\\a\\b2]\n[HKEY_CLASSES_ROOT\\T\\z]\n[HKEY_CLASSES_ROOT\\U\\a]\n");
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, u"T", 0, KEY_READ, &key), 0);
  EXPECT_EQ(RegDeleteKeyW(HKEY_CLASSES_ROOT, u"T"), 5);
  EXPECT_EQ(RegDeleteKeyW(key, u"A"), 5) << "the case does not count, what is below does";
  EXPECT_EQ(RegDeleteKeyW(key, u"none"), 2);
  EXPECT_EQ(RegDeleteKeyW(key, nullptr), 87);
  EXPECT_EQ(removeBelow(key), 0) << "the rights of the handle do not count for deleting";
  EXPECT_EQ(RegDeleteKeyW(HKEY_CLASSES_ROOT, u"T"), 0);
  RegCloseKey(key);
  EXPECT_EQ(read(), "Windows Registry Editor Version 5.00\n\n[HKEY_CLASSES_ROOT\\U\\a]\n");
}

TEST_F(Registry, ATextWithoutItsTerminatorStaysWithout) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"K", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr),
            0);
  EXPECT_EQ(RegSetValueExW(key, u"N", 0, REG_SZ, reinterpret_cast<const BYTE*>(u"ab"), 4), 0);
  RegCloseKey(key);
  DWORD type = 0;
  std::string data;
  EXPECT_EQ(query(HKEY_CURRENT_USER, u"K", u"N", type, data), 0);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(data, std::string("a\0b\0", 4));
}

TEST_F(Registry, SubkeysAreEnumerated) {
  write(
      "Windows Registry Editor Version 5.00\n[HKEY_CLASSES_ROOT\\CLSID\\{b}]\n"
      "[HKEY_CLASSES_ROOT\\CLSID\\{A}\\ProgID]\n@=\"x\"\n");
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, u"CLSID", 0, KEY_READ, &key), 0);
  char16_t name[8];
  DWORD units = 8;
  EXPECT_EQ(RegEnumKeyExW(key, 0, name, &units, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(std::u16string(name, units), u"{A}");
  units = 3;
  EXPECT_EQ(RegEnumKeyExW(key, 1, name, &units, nullptr, nullptr, nullptr, nullptr), 234);
  units = 4;
  EXPECT_EQ(RegEnumKeyExW(key, 1, name, &units, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(std::u16string(name), u"{b}");
  EXPECT_EQ(RegEnumKeyExW(key, 2, name, &units, nullptr, nullptr, nullptr, nullptr), 259);
  char16_t keyClass[] = u"before";
  DWORD classUnits = 7;
  DWORD reserved = 0;
  EXPECT_EQ(RegEnumKeyExW(key, 1, name, &units, &reserved, nullptr, nullptr, nullptr), 87);
  EXPECT_EQ(RegEnumKeyExW(key, 1, name, &units, nullptr, keyClass, nullptr, nullptr), 87);
  EXPECT_EQ(RegEnumKeyExW(key, 1, name, &units, nullptr, keyClass, &classUnits, nullptr), 234);
  units = 8;
  EXPECT_EQ(RegEnumKeyExW(key, 1, name, &units, nullptr, keyClass, &classUnits, nullptr), 0);
  EXPECT_EQ(classUnits, 0U);
  EXPECT_EQ(std::u16string(keyClass), u"");
  RegCloseKey(key);
}

TEST_F(Registry, FollowsTheFileAndTheVariable) {
  write("[HKEY_CURRENT_USER\\K]\n\"N\"=\"one\"\n");
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"one");
  write("[HKEY_CURRENT_USER\\K]\n\"N\"=\"two..\"\n");
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"two..");
  writeText(dir_ / "other.reg", "[HKEY_CURRENT_USER\\K]\n\"N\"=\"three\"\n");
  {
    const ScopedEnvironment elsewhere("QUILLON_REGISTRY", (dir_ / "other.reg").string());
    EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"three");
  }
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"two..");
  fs::remove(dir_ / "registry.reg");
  EXPECT_EQ(text(HKEY_CURRENT_USER, u"K", u"N"), u"<2>");
}

TEST_F(Registry, WithoutAVariableTheFileIsInTheUsersConfiguration) {
  const ScopedEnvironment config("XDG_CONFIG_HOME", (dir_ / "config").string());
  ::unsetenv("QUILLON_REGISTRY");
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"K", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr),
            0);
  RegCloseKey(key);
  EXPECT_TRUE(fs::exists(dir_ / "config/quillon/registry.reg"));
}

TEST_F(Registry, AWriteLeavesNothingElseBehindAndKeepsALink) {
  fs::create_directory(dir_ / "etc");
  fs::create_symlink(dir_ / "etc/real.reg", dir_ / "registry.reg");
  writeText(dir_ / "etc/real.reg", "[HKEY_CURRENT_USER\\K]\n");
  fs::permissions(dir_ / "etc/real.reg", fs::perms::owner_read | fs::perms::owner_write);
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"K", 0, KEY_ALL_ACCESS, &key), 0);
  ASSERT_EQ(setText(key, u"N", u"v"), 0);
  RegCloseKey(key);
  EXPECT_TRUE(fs::is_symlink(dir_ / "registry.reg"));
  EXPECT_EQ(fs::status(dir_ / "etc/real.reg").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_ / "etc"), fs::directory_iterator()), 1);
  EXPECT_NE(read().find("\"N\"=\"v\""), std::string::npos);
}

TEST_F(Registry, ProcessesDoNotUndoEachOthersWrites) {
  constexpr int kProcesses = 4;
  constexpr int kWrites = 10;
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    const pid_t child = ::fork();
    if (child == 0) {
      bool good = true;
      for (int i = 0; i < kWrites; ++i) {
        const std::string name = std::to_string(process) + "_" + std::to_string(i);
        HKEY key = nullptr;
        const std::u16string wideName(name.begin(), name.end());
        good = good && RegCreateKeyExW(HKEY_CURRENT_USER, wideName.c_str(), 0, nullptr, 0,
                                       KEY_ALL_ACCESS, nullptr, &key, nullptr) == 0;
      }
      ::_exit(good ? 0 : 1);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  HKEY user = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, nullptr, 0, KEY_READ, &user), 0);
  char16_t name[16];
  DWORD units = 16;
  EXPECT_EQ(RegEnumKeyExW(user, kProcesses * kWrites - 1, name, &units, nullptr, nullptr, nullptr,
                          nullptr),
            0)
      << "all keys are there";
  RegCloseKey(user);
}

}  // namespace
}  // namespace quillon::test
