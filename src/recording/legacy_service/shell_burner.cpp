// The shell's burner, which programs ask whether there is a drive that records.
#include <memory>

#include "classes.h"
#include "com/create_object.h"
#include "legacy_results.h"
#include "platform/com/com_object.h"
#include "platform/refusing_disc_interfaces.h"
#include "recorders/catalogue.h"

namespace quillon::platform {
namespace {

class ShellBurner final : public ComObject<Refusing<ICDBurn>, IID_ICDBurn> {
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
