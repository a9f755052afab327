// The enumerators of the legacy service: a list as it was when it was asked for.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/com/com_object.h"
#include "platform/imapi.h"

namespace quillon::platform {

inline void giveElement(const IID& element, IID* target) { *target = element; }
inline void giveElement(const ComPtr<IDiscRecorder>& element, IDiscRecorder** target) {
  *target = ComPtr<IDiscRecorder>(element).Detach();
}

// Element is what the list holds, Given what Next hands out.
template <typename Interface, const IID& kInterfaceId, typename Element, typename Given>
class ListEnumerator final : public ComObject<Interface, kInterfaceId> {
 public:
  using List = std::vector<Element>;
  ListEnumerator(std::shared_ptr<const List> list, std::size_t next)
      : list_(std::move(list)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, Given* items, ULONG* fetched) override {
    if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    ULONG given = 0;
    for (; given < count && next_ < list_->size(); ++given, ++next_) {
      giveElement((*list_)[next_], items + given);
    }
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = list_->size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** copy) override {
    if (copy == nullptr) return E_POINTER;
    *copy = new (std::nothrow) ListEnumerator(list_, next_);
    return *copy == nullptr ? E_OUTOFMEMORY : S_OK;
  }

 private:
  std::shared_ptr<const List> list_;
  std::size_t next_;
};

using RecorderEnumerator = ListEnumerator<IEnumDiscRecorders, IID_IEnumDiscRecorders,
                                          ComPtr<IDiscRecorder>, IDiscRecorder*>;
using FormatEnumerator =
    ListEnumerator<IEnumDiscMasterFormats, IID_IEnumDiscMasterFormats, IID, IID>;

}  // namespace quillon::platform
