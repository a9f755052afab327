#include "text_properties.h"

#include <algorithm>
#include <new>

namespace quillon::platform {
namespace {

bool isValidSpec(const PROPSPEC& spec) {
  return spec.ulKind == PRSPEC_PROPID || (spec.ulKind == PRSPEC_LPWSTR && spec.lpwstr != nullptr);
}

std::optional<std::u16string> textOf(const PROPVARIANT& value) {
  if (value.vt == VT_BSTR) {
    return value.bstrVal == nullptr ? std::u16string()
                                    : std::u16string(value.bstrVal, SysStringLen(value.bstrVal));
  }
  if (value.vt == VT_LPWSTR && value.pwszVal != nullptr) return std::u16string(value.pwszVal);
  return std::nullopt;
}

}  // namespace

TextProperties::Place TextProperties::find(const PROPSPEC& spec) {
  return std::find_if(properties_.begin(), properties_.end(), [&](const Property& property) {
    return spec.ulKind == PRSPEC_PROPID ? property.id == spec.propid : property.name == spec.lpwstr;
  });
}

HRESULT TextProperties::ReadMultiple(ULONG count, const PROPSPEC* specs, PROPVARIANT* values) {
  if (specs == nullptr || values == nullptr) return E_POINTER;
  if (!std::all_of(specs, specs + count, isValidSpec)) return STG_E_INVALIDPARAMETER;
  for (ULONG i = 0; i < count; ++i) PropVariantInit(&values[i]);
  ULONG found = 0;
  for (ULONG i = 0; i < count; ++i) {
    const Place place = find(specs[i]);
    if (place == properties_.end()) continue;
    values[i].bstrVal =
        SysAllocStringLen(place->text.data(), static_cast<UINT>(place->text.size()));
    if (values[i].bstrVal == nullptr) {
      for (ULONG k = 0; k < i; ++k) PropVariantClear(&values[k]);
      return E_OUTOFMEMORY;
    }
    values[i].vt = VT_BSTR;
    ++found;
  }
  return found > 0 || count == 0 ? S_OK : S_FALSE;
}

HRESULT TextProperties::WriteMultiple(ULONG count, const PROPSPEC* specs, const PROPVARIANT* values,
                                      PROPID nameFirst) {
  if (specs == nullptr || values == nullptr) return E_POINTER;
  for (ULONG i = 0; i < count; ++i) {
    if (!isValidSpec(specs[i]) || !textOf(values[i])) return STG_E_INVALIDPARAMETER;
  }
  try {
    PROPID nextId = nameFirst;
    for (const Property& property : properties_) nextId = std::max(nextId, property.id + 1);
    for (ULONG i = 0; i < count; ++i) {
      const Place place = find(specs[i]);
      if (place != properties_.end()) {
        place->text = *textOf(values[i]);
      } else if (specs[i].ulKind == PRSPEC_PROPID) {
        properties_.push_back({specs[i].propid, {}, *textOf(values[i])});
      } else {
        properties_.push_back({nextId++, specs[i].lpwstr, *textOf(values[i])});
      }
    }
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT readTextProperty(IPropertyStorage& properties, std::u16string_view name,
                         std::optional<std::u16string>& text) {
  std::u16string writableName(name);
  PROPSPEC spec{};
  spec.ulKind = PRSPEC_LPWSTR;
  spec.lpwstr = writableName.data();
  PROPVARIANT value;
  PropVariantInit(&value);
  const HRESULT hr = properties.ReadMultiple(1, &spec, &value);
  if (FAILED(hr)) return hr;
  text = textOf(value);
  PropVariantClear(&value);
  return S_OK;
}

std::size_t countTextProperties(IPropertyStorage& properties) {
  ComPtr<IPropertyStorage> own;
  if (FAILED(properties.QueryInterface(kOwnTextProperties, own.PutVoid()))) return 0;
  return static_cast<TextProperties*>(own.Get())->size();
}

}  // namespace quillon::platform
