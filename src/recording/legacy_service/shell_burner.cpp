// The shell's burner, which programs ask whether there is a drive that records.
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include "classes.h"
#include "com/create_object.h"
#include "legacy_results.h"
#include "platform/com/com_object.h"
#include "platform/imapi.h"
#include "recorders/catalogue.h"
#include "win32/path_translation.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr UINT kDriveNameUnits = 4;  // "D:\" with its terminator

std::string realPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real == nullptr ? std::string() : std::string(real.get());
}

// The letter under which one of the places lies; 0 for none. Drive C is never a recorder.
char16_t letterOf(const std::vector<std::u16string>& volumePaths) {
  for (const std::u16string& volumePath : volumePaths) {
    const std::string wanted = realPath(nativeFromWide(volumePath));
    if (wanted.empty()) continue;
    for (char16_t letter = u'D'; letter <= u'Z'; ++letter) {
      const OLECHAR drive[] = {letter, u':', u'\\', 0};
      if (realPath(translatePath(drive).text) == wanted) return letter;
    }
  }
  return 0;
}

class ShellBurner final : public ComObject<ICDBurn, IID_ICDBurn> {
 public:
  HRESULT STDMETHODCALLTYPE HasRecordableDrive(BOOL* has) override {
    return legacyAnswer([&]() -> DiscResult {
      if (has == nullptr) return E_POINTER;
      *has = FALSE;
      std::unique_ptr<Recorder> recorder;
      DiscResult result = firstRecorder(recorder);
      if (result.failed()) return result;
      *has = recorder != nullptr ? TRUE : FALSE;
      return S_OK;
    });
  }

  // E_FAIL where no drive letter leads to the recorder.
  HRESULT STDMETHODCALLTYPE GetRecorderDriveLetter(LPWSTR drive, UINT cch) override {
    return legacyAnswer([&]() -> DiscResult {
      if (drive == nullptr || cch < kDriveNameUnits) return E_INVALIDARG;
      drive[0] = 0;
      std::unique_ptr<Recorder> recorder;
      DiscResult result = firstRecorder(recorder);
      if (result.failed()) return result;
      const char16_t letter =
          recorder == nullptr ? char16_t{0} : letterOf(recorder->identity().volumePaths);
      if (letter == 0) return E_FAIL;
      drive[0] = letter;
      drive[1] = u':';
      drive[2] = u'\\';
      drive[3] = 0;
      return S_OK;
    });
  }

  // There is no window to guide a user through it.
  HRESULT STDMETHODCALLTYPE Burn(HWND) override { return E_NOTIMPL; }

 private:
  // The first one that writes discs of any kind; null for none.
  static DiscResult firstRecorder(std::unique_ptr<Recorder>& recorder) {
    RecorderList recorders;
    DiscResult result = listRecorders(recorders);
    for (std::unique_ptr<Recorder>& candidate : recorders) {
      if (recorder == nullptr && !candidate->identity().writableTypes.empty()) {
        recorder = std::move(candidate);
      }
    }
    return result;
  }
};

}  // namespace

HRESULT createShellBurner(REFIID riid, void** object) {
  return createObject<ShellBurner>(riid, object);
}

}  // namespace quillon::platform
