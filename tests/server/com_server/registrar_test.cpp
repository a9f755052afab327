// What registration leaves in the registry, and scripts that are none.
#include "registrar.h"

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <utility>

#include "com_test_tools.h"
#include "module.h"
#ifndef _WIN32
#include "support/failing_calls.h"
#endif
#include "support/temp_dir.h"

STDAPI DllRegisterServer();
STDAPI DllUnregisterServer();

#ifndef _WIN32
// The linker hands calls of two functions over to these (CMakeLists.txt). There are no type
// libraries here, so registering one never fails by itself.
static HRESULT typeLibraryResult = S_OK;
extern "C" HRESULT __wrap__ZN7quillon22RegisterOwnTypeLibraryEv() { return typeLibraryResult; }

static std::function<void()> beforeNextDeletion;
extern "C" LSTATUS __real__Z13RegDeleteKeyWP6HKEY__PKDs(HKEY key, LPCWSTR name);
extern "C" LSTATUS __wrap__Z13RegDeleteKeyWP6HKEY__PKDs(HKEY key, LPCWSTR name) {
  if (const auto change = std::exchange(beforeNextDeletion, nullptr)) change();
  return __real__Z13RegDeleteKeyWP6HKEY__PKDs(key, name);
}
#endif

namespace quillon::test {
namespace {

#ifndef _WIN32
// A registry of the test's own.
class Registrar : public ::testing::Test {
 protected:
  Registrar() { ::setenv("QUILLON_REGISTRY", (dir_ / "registry.reg").c_str(), 1); }
  ~Registrar() override { ::unsetenv("QUILLON_REGISTRY"); }

  [[nodiscard]] std::string registry() const {
    const auto bytes = readBytes(dir_ / "registry.reg");
    return {bytes.begin(), bytes.end()};
  }

  TempDir dir_;
};
using Registration = Registrar;

const std::string kHeading = "Windows Registry Editor Version 5.00\n";

std::string registered() {
  std::string module = narrow(CQuillonMediaRWModule::Path());
  return kHeading + R"(
[HKEY_CLASSES_ROOT\AppID\QuillonMediaRW.DLL]
"AppID"="{60A00BE0-73D4-4DDC-BBDA-AB0DF9FCD3A6}"

[HKEY_CLASSES_ROOT\AppID\{60A00BE0-73D4-4DDC-BBDA-AB0DF9FCD3A6}]
@="QuillonMediaRW"

[HKEY_CLASSES_ROOT\CLSID\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}]
@="QuillonMediaRW Class"
"AppID"="{60A00BE0-73D4-4DDC-BBDA-AB0DF9FCD3A6}"

[HKEY_CLASSES_ROOT\CLSID\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\InprocServer32]
@=")" + module +
         R"("
"ThreadingModel"="Apartment"

[HKEY_CLASSES_ROOT\CLSID\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\ProgID]
@="QuillonMediaRW.QuillonMediaRW.1"

[HKEY_CLASSES_ROOT\CLSID\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\Programmable]

[HKEY_CLASSES_ROOT\CLSID\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\TypeLib]
@="{CBD24DDB-39FB-4A5A-9EB9-4B6FD4A70DF1}"

[HKEY_CLASSES_ROOT\CLSID\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\VersionIndependentProgID]
@="QuillonMediaRW.QuillonMediaRW"

[HKEY_CLASSES_ROOT\QuillonMediaRW.QuillonMediaRW]
@="QuillonMediaRW Class"

[HKEY_CLASSES_ROOT\QuillonMediaRW.QuillonMediaRW\CLSID]
@="{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}"

[HKEY_CLASSES_ROOT\QuillonMediaRW.QuillonMediaRW\CurVer]
@="QuillonMediaRW.QuillonMediaRW.1"

[HKEY_CLASSES_ROOT\QuillonMediaRW.QuillonMediaRW.1]
@="QuillonMediaRW Class"

[HKEY_CLASSES_ROOT\QuillonMediaRW.QuillonMediaRW.1\CLSID]
@="{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}"
)";
}

const std::string kUnregistered = kHeading + R"(
[HKEY_CLASSES_ROOT\AppID]

[HKEY_CLASSES_ROOT\CLSID]
)";

TEST_F(Registration, TwiceLeavesOneSetOfKeysAndUnregistrationTheRoots) {
  EXPECT_EQ(DllUnregisterServer(), S_OK) << "nothing is there to remove";
  EXPECT_EQ(DllRegisterServer(), S_OK);
  EXPECT_EQ(registry(), registered());
  // What an older server left below the class goes away, what others keep there stays.
  HKEY key = nullptr;
  const Text stale = wide("CLSID\\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\\LocalServer32");
  const Text others = wide("CLSID\\{00000000-0000-0000-0000-000000000001}");
  for (const Text& path : {stale, others}) {
    ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                              &key, nullptr),
              0);
    RegCloseKey(key);
  }
  EXPECT_EQ(DllRegisterServer(), S_OK);
  EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, stale.c_str(), 0, KEY_READ, &key), 2);
  EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, others.c_str(), 0, KEY_READ, &key), 0);
  RegCloseKey(key);
  EXPECT_EQ(RegDeleteKeyW(HKEY_CLASSES_ROOT, others.c_str()), 0);
  EXPECT_EQ(registry(), registered());
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(DllUnregisterServer(), S_OK);
    EXPECT_EQ(registry(), kUnregistered);
  }
}

TEST_F(Registration, ThatFailsSaysSo) {
  std::filesystem::create_directory(dir_ / "registry.reg");
  EXPECT_EQ(DllRegisterServer(), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

// Whichever write fails (some of them: each waits for the disk), what was registered before is what
// is registered then.
TEST_F(Registration, ThatFailsInTheMiddleChangesNothing) {
  for (const bool wasRegistered : {false, true}) {
    bool happened = true;
    for (int n = 1; happened; n += 6) {
      SCOPED_TRACE(n);
      ASSERT_LT(n, 1000);
      writeText(dir_ / "registry.reg", wasRegistered ? registered() : kHeading);
      HRESULT hr = S_OK;
      {
        const FailingCall failing(Call::Rename, n, ENOSPC);
        hr = DllRegisterServer();
        happened = failing.happened();
      }
      EXPECT_EQ(hr, happened ? HRESULT_FROM_WIN32(ERROR_DISK_FULL) : S_OK);
      if (wasRegistered || !happened) {
        EXPECT_EQ(registry(), registered());
      } else {
        EXPECT_EQ(registry().find("Quillon"), std::string::npos) << registry();
      }
    }
  }
}

TEST_F(Registration, WithoutItsTypeLibraryLeavesWhatWasRegisteredBefore) {
  for (const bool wasRegistered : {false, true}) {
    SCOPED_TRACE(wasRegistered);
    writeText(dir_ / "registry.reg", wasRegistered ? registered() : kHeading);
    typeLibraryResult = E_ACCESSDENIED;
    EXPECT_EQ(DllRegisterServer(), E_ACCESSDENIED);
    typeLibraryResult = S_OK;
    EXPECT_EQ(registry(), wasRegistered ? registered() : kUnregistered);
  }
}

TEST_F(Registrar, ReplacesInNamesAndTexts) {
  const Replacement replacements[] = {{OLESTR("X"), wide("it's")}, {OLESTR("EMPTY"), {}}};
  const char* script =
      "HKCR { 'a%X%' = s 'don''t %X%%EMPTY%' { val 'n %X%' = s '' NoRemove Kept { Below } } }";
  EXPECT_EQ(RunRegistrarScript(script, ScriptUse::Register, replacements), S_OK);
  EXPECT_EQ(registry(), kHeading + R"(
[HKEY_CLASSES_ROOT\ait's]
@="don't it's"
"n it's"=""

[HKEY_CLASSES_ROOT\ait's\Kept\Below]
)");
  EXPECT_EQ(RunRegistrarScript(script, ScriptUse::Unregister, replacements), S_OK);
  EXPECT_EQ(registry(), kHeading) << "a key goes with all below it";
}

// Others may change a key while it is removed; nothing of it may stay for that.
TEST_F(Registrar, RemovesATreeThatAnotherOneChangesMeanwhile) {
  const auto remove = [](std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
      EXPECT_EQ(RegDeleteKeyW(HKEY_CLASSES_ROOT, wide(key).c_str()), 0) << key;
    }
  };
  const struct {
    const char* what;
    std::function<void()> change;
  } cases[] = {
      {"removes a key that is still to be removed",
       [&] {
         remove({"Tree\\B\\X", "Tree\\B"});
       }},
      {"removes all",
       [&] {
         remove({"Tree\\A\\X", "Tree\\A", "Tree\\B\\X", "Tree\\B", "Tree\\C", "Tree"});
       }},
      {"adds a key",
       [] {
         EXPECT_EQ(RunRegistrarScript("HKCR { NoRemove Tree { D } }", ScriptUse::Register, {}),
                   S_OK);
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const char* script = "HKCR { Tree { A { X } B { X } C } }";
    ASSERT_EQ(RunRegistrarScript(script, ScriptUse::Register, {}), S_OK);
    beforeNextDeletion = c.change;
    EXPECT_EQ(RunRegistrarScript(script, ScriptUse::Unregister, {}), S_OK);
    EXPECT_EQ(registry(), kHeading);
  }
}

TEST_F(Registrar, UndoesWhatFails) {
  // A name that cannot be stored comes last.
  const char* script = "HKCR { First = s 'x' NoRemove Kept { Below = s 'y' } '\x01' }";
  EXPECT_EQ(RunRegistrarScript(script, ScriptUse::Register, {}), E_INVALIDARG);
  EXPECT_EQ(registry(), kHeading + "\n[HKEY_CLASSES_ROOT\\Kept]\n");
}
#endif

TEST(RegistrarScripts, ThatAreNoneChangeNothing) {
  const Replacement replacements[] = {{OLESTR("X"), wide("x")}};
  for (const char* script : {"",
                             "HKLM { A }",
                             "HKCR",
                             "HKCR {",
                             "HKCR { A",
                             "HKCR { A }  }",
                             "HKCR { A } B",
                             "HKCR { = s 'a' }",
                             "HKCR { A = 'a' }",
                             "HKCR { A = d '1' }",
                             "HKCR { A = s a }",
                             "HKCR { A = s 'a }",
                             "HKCR { A = s '%Y%' }",
                             "HKCR { A = s '%XY%' }",
                             "HKCR { A = s '%%' }",
                             "HKCR { A = s '%X' }",
                             "HKCR { 'A%' }",
                             "HKCR { val A = s 'a' }",
                             "HKCR { A { val B } }",
                             "HKCR { A { val } }",
                             "HKCR { NoRemove }",
                             "HKCR { '' }",
                             "HKCR { A { B }"}) {
    SCOPED_TRACE(script);
    EXPECT_EQ(RunRegistrarScript(script, ScriptUse::Register, replacements), E_FAIL);
  }
}

}  // namespace
}  // namespace quillon::test
