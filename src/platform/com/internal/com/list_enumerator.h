// What the enumerators of the layer's classes share: a list as it was when it was asked for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/com/com_object.h"

namespace quillon::platform {

// Element is what the list holds, Given what Next hands out; kGive makes the one of the other and
// says false when memory has run out.
template <typename Interface, const IID& kInterfaceId, typename Element, typename Given,
          bool (*kGive)(const Element&, Given*)>
class ListEnumerator final : public ComObject<Interface, kInterfaceId> {
 public:
  using List = std::vector<Element>;
  ListEnumerator(std::shared_ptr<const List> list, std::size_t next)
      : list_(std::move(list)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, Given* items, ULONG* fetched) override {
    if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    ULONG given = 0;
    for (; given < count && next_ < list_->size(); ++given, ++next_) {
      if (!kGive((*list_)[next_], items + given)) return E_OUTOFMEMORY;
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

}  // namespace quillon::platform
