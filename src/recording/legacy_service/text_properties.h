// A property set that lives in memory and holds texts under names.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/com/com_object.h"
#include "platform/com/refusing.h"

namespace quillon::platform {

// Answered by objects of the class below alone, whose own interface it stands for.
inline constexpr IID kOwnTextProperties = {
    0x6E2D94B3, 0x0F11, 0x4C0B, {0xA9, 0x57, 0x18, 0x3C, 0x60, 0xFE, 0x2D, 0x9A}};

class TextProperties final
    : public ComObject<Refusing<IPropertyStorage>, IID_IPropertyStorage, kOwnTextProperties> {
 public:
  struct Property {
    PROPID id;
    std::u16string name;
    std::u16string text;
  };

  explicit TextProperties(std::vector<Property> properties) : properties_(std::move(properties)) {}

  // S_FALSE when it has none of them; those that it has not are VT_EMPTY. Texts are VT_BSTR.
  HRESULT STDMETHODCALLTYPE ReadMultiple(ULONG count, const PROPSPEC* specs,
                                         PROPVARIANT* values) override;
  // Takes VT_BSTR and VT_LPWSTR; new names get identifiers from nameFirst on.
  HRESULT STDMETHODCALLTYPE WriteMultiple(ULONG count, const PROPSPEC* specs,
                                          const PROPVARIANT* values, PROPID nameFirst) override;
  // What is written is there at once.
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return S_OK; }
  [[nodiscard]] std::size_t size() const { return properties_.size(); }

 private:
  using Place = std::vector<Property>::iterator;
  Place find(const PROPSPEC& spec);

  std::vector<Property> properties_;
};

// The text of a property in a set of any make; nothing when it is not there or no text.
HRESULT readTextProperty(IPropertyStorage& properties, std::u16string_view name,
                         std::optional<std::u16string>& text);
// How many properties a set of the class above holds; 0 for a set of another make.
std::size_t countTextProperties(IPropertyStorage& properties);

}  // namespace quillon::platform
