// The list of the recorders.
#include <memory>
#include <string>
#include <vector>

#include "classes.h"
#include "com/list_enumerator.h"
#include "com/method_results.h"
#include "platform/refusing_disc_interfaces.h"
#include "recorders/catalogue.h"
#include "recorders/com_answers.h"

namespace quillon::platform {
namespace {

constexpr const OLECHAR* kSource = u"MsftDiscMaster2";
using Identifiers = std::vector<std::u16string>;

bool giveIdentifier(const std::u16string& identifier, VARIANT* target) {
  VariantInit(target);
  if (FAILED(answerText(identifier, &target->bstrVal))) return false;
  target->vt = VT_BSTR;
  return true;
}
using IdentifierEnumerator =
    ListEnumerator<IEnumVARIANT, IID_IEnumVARIANT, std::u16string, VARIANT, giveIdentifier>;

class DiscMaster2 final : public DispatchObject<Refusing<IDiscMaster2>, IID_IDiscMaster2> {
 public:
  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT** enumerator) override {
    return answer([&]() -> DiscResult {
      if (enumerator == nullptr) return E_POINTER;
      *enumerator = nullptr;
      auto found = std::make_shared<Identifiers>();
      DiscResult result = list(*found);
      if (!result.failed()) *enumerator = new IdentifierEnumerator(std::move(found), 0);
      return result;
    });
  }
  HRESULT STDMETHODCALLTYPE get_IsSupportedEnvironment(VARIANT_BOOL* value) override {
    return answer([&] {
      Identifiers found;
      DiscResult result = list(found);
      return result.failed() ? result : giveBool(!found.empty(), value);
    });
  }

 private:
  template <typename Body>
  HRESULT answer(Body body) {
    return answering(IID_IDiscMaster2, kSource, body);
  }
  static DiscResult list(Identifiers& identifiers) {
    RecorderList recorders;
    DiscResult result = listRecorders(recorders);
    for (const auto& recorder : recorders) identifiers.push_back(recorder->identity().uniqueId);
    return result;
  }
};

}  // namespace

HRESULT createDiscMaster2(REFIID riid, void** object) {
  return createCurrentObject<DiscMaster2>(riid, object);
}

}  // namespace quillon::platform
