// Late-bound calls as a script may make them: names, and calls with values of any type, by value
// and by reference, named and not, more or fewer than wanted. The object that is called does
// nothing but check that what arrives has the types of its parameters.
#include <array>
#include <deque>
#include <set>
#include <vector>

#include "dispatch.h"
#include "input_parts.h"
#include "operations.h"
#include "platform/com/com_object.h"
#include "win32/utf8.h"

namespace quillon {
namespace {

using fuzz::require;

class AnsweringMedia final : public DispatchObject<IQuillonMediaRW, IID_IQuillonMediaRW> {
  HRESULT take() {
    isCalled = true;
    return answer;
  }
  template <typename First, typename... Rest>
  HRESULT take(First first, Rest... rest) {
    pass(first);
    return take(rest...);
  }
  // Every unit up to the length that it says is there to be read.
  static void pass(BSTR text) {
    const std::u16string copy(text == nullptr ? u"" : text, SysStringLen(text));
    require(text == nullptr || text[copy.size()] == 0);
  }
  static void pass(VARIANT_BOOL) {}
  void pass(BSTR* text) const {
    require(text != nullptr);
    if (writesOut) *text = SysAllocString(OLESTR("out"));
  }
  template <typename Number>
  void pass(Number* number) const {
    require(number != nullptr);
    if (writesOut) *number = static_cast<Number>(-1);
  }

 public:
#define QUILLON_METHOD(method, parameters, passed) \
  HRESULT STDMETHODCALLTYPE method parameters override { return take passed; }
#include "server/com_server/operations.inc"

  HRESULT answer = S_OK;
  bool writesOut = true;
  bool isCalled = false;
};

// Values whose memory lives as long as this object.
class Values {
 public:
  Values() = default;
  ~Values() {
    for (VARIANT& value : owned_) VariantClear(&value);
  }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  // The value itself, a reference to what is in it, to nothing, or to it as a whole.
  VARIANT make(fuzz::InputParts& parts) {
    const unsigned form = parts.byte() % 8;
    VARIANT& value = owned_.emplace_back(plain(parts));
    if (form < 4) return value;
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | (form < 6 ? value.vt : VARTYPE{VT_VARIANT}));
    if (form % 4 != 1) reference.byref = form < 6 ? static_cast<void*>(&value.llVal) : &value;
    return reference;
  }

 private:
  static VARIANT plain(fuzz::InputParts& parts) {
    constexpr VARTYPE kTypes[] = {VT_EMPTY, VT_NULL,     VT_I2,      VT_I4,      VT_R4,
                                  VT_R8,    VT_CY,       VT_DATE,    VT_BSTR,    VT_ERROR,
                                  VT_BOOL,  VT_I1,       VT_UI1,     VT_UI2,     VT_UI4,
                                  VT_I8,    VT_UI8,      VT_INT,     VT_UINT,    VT_BSTR,
                                  VT_BOOL,  VT_DISPATCH, VT_UNKNOWN, VT_DECIMAL, VT_ARRAY | VT_UI1};
    VARIANT value{};
    value.vt = kTypes[parts.byte() % std::size(kTypes)];
    switch (value.vt) {
      case VT_BSTR: {
        const std::u16string text = platform::wideFromNative(parts.text());
        value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        break;
      }
      case VT_DISPATCH:
      case VT_UNKNOWN:
        break;  // null
      case VT_ARRAY | VT_UI1:
        value.parray = SafeArrayCreateVector(VT_UI1, 0, parts.byte());
        break;
      default:
        for (const char byte : parts.bytes(8)) {
          value.ullVal = value.ullVal << 8U | static_cast<unsigned char>(byte);
        }
        if (value.vt == VT_ERROR && value.scode % 2 == 0) value.scode = DISP_E_PARAMNOTFOUND;
    }
    return value;
  }

  std::deque<VARIANT> owned_;  // stay where they are
};

void askForNames(fuzz::InputParts& parts) {
  std::vector<std::u16string> names;
  for (unsigned count = parts.byte() % 5; count > 0; --count) {
    names.push_back(platform::wideFromNative(parts.text()));
  }
  std::vector<LPOLESTR> pointers;
  for (std::u16string& name : names) pointers.push_back(name.data());
  std::vector<DISPID> ids(names.size(), 77);
  const HRESULT hr =
      FindDispatchIds(IID_NULL, pointers.data(), static_cast<UINT>(names.size()), ids.data());
  for (const DISPID id : ids) require(FAILED(hr) || id != DISPID_UNKNOWN);
}

void call(fuzz::InputParts& parts) {
  AnsweringMedia media;
  const unsigned choice = parts.byte();
  constexpr HRESULT kAnswers[] = {S_OK, S_FALSE, E_FAIL, E_OUTOFMEMORY};
  media.answer = kAnswers[choice % 4];
  media.writesOut = (choice & 4U) != 0;
  const auto operations = Operations();
  const Operation& operation = operations[parts.byte() % operations.size()];
  const WORD flags = (choice & 8U) != 0 ? parts.byte() : operation.kind;

  Values values;
  std::vector<VARIANT> arguments;
  for (unsigned count = parts.byte() % 5; count > 0; --count) {
    arguments.push_back(values.make(parts));
  }
  std::vector<DISPID> named;
  for (unsigned count = parts.byte() % 6; count > 0; --count) {
    const unsigned which = parts.byte();
    named.push_back(which < 128 ? DISPID_PROPERTYPUT : static_cast<DISPID>(which) - 130);
  }
  if ((choice & 16U) != 0 && operation.kind == DISPATCH_PROPERTYPUT) named = {DISPID_PROPERTYPUT};
  DISPPARAMS params{arguments.empty() ? nullptr : arguments.data(),
                    named.empty() ? nullptr : named.data(), static_cast<UINT>(arguments.size()),
                    static_cast<UINT>(named.size())};
  VARIANT result{};
  EXCEPINFO exception{};
  UINT bad = ~0U;
  const HRESULT hr = InvokeOperation(
      media, operation.id, IID_NULL, flags, &params, (choice & 32U) != 0 ? nullptr : &result,
      (choice & 64U) != 0 ? nullptr : &exception, (choice & 128U) != 0 ? nullptr : &bad);
  require(bad == ~0U || bad < params.cArgs);
  require(hr != DISP_E_EXCEPTION || (media.isCalled && FAILED(media.answer)));
  require(!SUCCEEDED(hr) || (media.isCalled && hr == media.answer));
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  VariantClear(&result);
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  fuzz::InputParts parts(data, size);
  if (parts.byte() % 8 == 0) askForNames(parts);
  for (unsigned calls = 0; !parts.isEmpty() && calls < 8; ++calls) call(parts);
  return 0;
}
