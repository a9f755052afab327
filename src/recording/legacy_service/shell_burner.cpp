// The shell's burner, which programs ask whether there is a drive that records.
#include <algorithm>
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
      RecorderList recorders;
      DiscResult result = listRecorders(recorders);
      if (result.failed()) return result;
      *has = std::any_of(recorders.begin(), recorders.end(), mayWrite) ? TRUE : FALSE;
      return S_OK;
    });
  }

 private:
  // Discs of any kind. A drive of which nothing can be learnt counts: whoever goes on to use it is
  // told the reason, which these classes have no words for.
  static bool mayWrite(const std::unique_ptr<Recorder>& recorder) {
    return !recorder->identity().writableTypes.empty() ||
           recorder->enter("HasRecordableDrive").failed();
  }
};

}  // namespace

HRESULT createShellBurner(REFIID riid, void** object) {
  return createObject<ShellBurner>(riid, object);
}

}  // namespace quillon::platform
