// The list of the recorders.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "discmastering/catalogue.h"
#include "discmastering/com_answers.h"
#include "discmastering/create_object.h"
#include "discmastering/imapi2_classes.h"
#include "platform/com/com_object.h"
#include "platform/imapi2.h"

namespace quillon::platform {
namespace {

constexpr const OLECHAR* kSource = u"MsftDiscMaster2";
using Identifiers = std::vector<std::u16string>;

// The recorders as they were when the enumerator was made.
class IdentifierEnumerator final : public ComObject<IEnumVARIANT, IID_IEnumVARIANT> {
 public:
  IdentifierEnumerator(std::shared_ptr<const Identifiers> identifiers, std::size_t next)
      : identifiers_(std::move(identifiers)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override {
    if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    ULONG given = 0;
    for (; given < count && next_ < identifiers_->size(); ++given, ++next_) {
      VariantInit(&items[given]);
      if (giveText((*identifiers_)[next_], &items[given].bstrVal).failed()) return E_OUTOFMEMORY;
      items[given].vt = VT_BSTR;
    }
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = identifiers_->size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return E_POINTER;
    *copy = new (std::nothrow) IdentifierEnumerator(identifiers_, next_);
    return *copy == nullptr ? E_OUTOFMEMORY : S_OK;
  }

 private:
  std::shared_ptr<const Identifiers> identifiers_;
  std::size_t next_;
};

class DiscMaster2 final : public DispatchObject<IDiscMaster2, IID_IDiscMaster2> {
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
  HRESULT STDMETHODCALLTYPE get_Item(LONG index, BSTR* value) override {
    return answer([&]() -> DiscResult {
      Identifiers found;
      DiscResult result = list(found);
      if (result.failed()) return result;
      if (index < 0 || static_cast<std::size_t>(index) >= found.size()) return DISP_E_BADINDEX;
      return giveText(found[static_cast<std::size_t>(index)], value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* value) override {
    return answer([&] {
      Identifiers found;
      DiscResult result = list(found);
      return result.failed() ? result : giveNumber(found.size(), value);
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
