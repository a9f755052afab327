// Counted texts, variants and arrays.
#include <cstring>

#include "layer_fixture.h"
#include "text_argument.h"

namespace quillon::test {
namespace {

TEST(Bstr, CarriesZerosAndItsLength) {
  const char16_t text[] = {u'a', 0, u'b'};
  BSTR bstr = SysAllocStringLen(text, 3);
  ASSERT_NE(bstr, nullptr);
  EXPECT_EQ(SysStringLen(bstr), 3U);
  EXPECT_EQ(std::u16string(bstr, 4), std::u16string(u"a\0b\0", 4)) << "and a terminator follows";
  std::uint32_t lengthBefore = 0;
  std::memcpy(&lengthBefore, reinterpret_cast<const char*>(bstr) - 4, 4);
  EXPECT_EQ(lengthBefore, 6U) << "the byte length stands before the text";
  // The new text may lie within the old one.
  EXPECT_TRUE(SysReAllocStringLen(&bstr, bstr + 1, 2));
  EXPECT_EQ(std::u16string(bstr, 2), std::u16string(u"\0b", 2));
  EXPECT_TRUE(SysReAllocString(&bstr, nullptr));
  EXPECT_EQ(bstr, nullptr) << "no text is no empty text";

  BSTR odd = SysAllocStringByteLen("xyz", 3);
  EXPECT_EQ(SysStringByteLen(odd), 3U);
  EXPECT_EQ(SysStringLen(odd), 1U);
  SysFreeString(odd);
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0U);
  SysFreeString(nullptr);
}

VARIANT variantOf(VARTYPE type) {
  VARIANT value{};
  value.vt = type;
  return value;
}

VARIANT textVariant(const char16_t* text) {
  VARIANT value = variantOf(VT_BSTR);
  value.bstrVal = SysAllocString(text);
  return value;
}

VARIANT longVariant(LONG number) {
  VARIANT value = variantOf(VT_I4);
  value.lVal = number;
  return value;
}

VARIANT realVariant(double number) {
  VARIANT value = variantOf(VT_R8);
  value.dblVal = number;
  return value;
}

VARIANT boolVariant(VARIANT_BOOL flag) {
  VARIANT value = variantOf(VT_BOOL);
  value.boolVal = flag;
  return value;
}

// The value as text, for comparison.
std::string shown(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return "'" + narrow({value.bstrVal, SysStringLen(value.bstrVal)}) + "'";
    case VT_BOOL:
      return value.boolVal == VARIANT_TRUE ? "true" : value.boolVal == 0 ? "false" : "bad";
    case VT_UI1:
      return std::to_string(value.bVal);
    case VT_I2:
      return std::to_string(value.iVal);
    case VT_I4:
      return std::to_string(value.lVal);
    case VT_UI4:
      return std::to_string(value.ulVal);
    case VT_I8:
      return std::to_string(value.llVal);
    case VT_R8:
      return std::to_string(value.dblVal);
    default:
      return "type " + std::to_string(value.vt);
  }
}

TEST(Variant, ChangesItsType) {
  struct Case {
    const char* what;
    VARIANT value;
    VARTYPE type;
    HRESULT result;
    const char* expected;
  };
  const Case cases[] = {
      {"text to number", textVariant(u" -42 "), VT_I4, S_OK, "-42"},
      {"number to text", longVariant(-7), VT_BSTR, S_OK, "'-7'"},
      {"text with a fraction", textVariant(u"2.5"), VT_I4, S_OK, "2"},
      {"halves go to the even number", realVariant(3.5), VT_I4, S_OK, "4"},
      {"text to real", textVariant(u"1.5e2"), VT_R8, S_OK, "150.000000"},
      {"real to text", realVariant(0.1), VT_BSTR, S_OK, "'0.1'"},
      {"no more digits than are sure", realVariant(0.1 + 0.2), VT_BSTR, S_OK, "'0.3'"},
      {"a large real to text", realVariant(1e20), VT_BSTR, S_OK, "'1E+20'"},
      {"no number", textVariant(u"12x"), VT_I4, DISP_E_TYPEMISMATCH, ""},
      {"empty text", textVariant(u""), VT_I4, DISP_E_TYPEMISMATCH, ""},
      {"not a number", textVariant(u"nan"), VT_R8, DISP_E_TYPEMISMATCH, ""},
      {"too large", longVariant(256), VT_UI1, DISP_E_OVERFLOW, ""},
      {"largest", longVariant(255), VT_UI1, S_OK, "255"},
      {"digits that no type takes", textVariant(u"99999999999"), VT_I4, DISP_E_OVERFLOW, ""},
      {"a real beyond all reals", textVariant(u"1e999"), VT_R8, DISP_E_OVERFLOW, ""},
      {"negative to unsigned", longVariant(-1), VT_UI4, DISP_E_OVERFLOW, ""},
      {"real too large", realVariant(2147483648.0), VT_I4, DISP_E_OVERFLOW, ""},
      {"real just fits", realVariant(-2147483648.0), VT_I4, S_OK, "-2147483648"},
      {"real beyond 64 bits", realVariant(9.3e18), VT_I8, DISP_E_OVERFLOW, ""},
      {"true is -1", boolVariant(VARIANT_TRUE), VT_I2, S_OK, "-1"},
      {"any number is true", longVariant(2), VT_BOOL, S_OK, "true"},
      {"text to boolean", textVariant(u"FALSE"), VT_BOOL, S_OK, "false"},
      {"boolean to text", boolVariant(VARIANT_TRUE), VT_BSTR, S_OK, "'-1'"},
      {"empty to text", variantOf(VT_EMPTY), VT_BSTR, S_OK, "''"},
      {"empty to number", variantOf(VT_EMPTY), VT_I4, S_OK, "0"},
      {"null has no value", variantOf(VT_NULL), VT_I4, DISP_E_TYPEMISMATCH, ""},
  };
  for (Case c : cases) {
    SCOPED_TRACE(c.what);
    VARIANT changed;
    VariantInit(&changed);
    EXPECT_EQ(VariantChangeType(&changed, &c.value, 0, c.type), c.result);
    if (SUCCEEDED(c.result)) {
      EXPECT_EQ(changed.vt, c.type);
      EXPECT_EQ(shown(changed), c.expected);
    }
    VariantClear(&changed);
    VariantClear(&c.value);
  }
  VARIANT inPlace = textVariant(u"5");
  EXPECT_EQ(VariantChangeType(&inPlace, &inPlace, 0, VT_I4), S_OK);
  EXPECT_EQ(shown(inPlace), "5");
}

// Counts the references to itself; lives on the stack.
class CountedObject final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  ULONG references = 1;
};

TEST(Variant, CopiesOwnAndReferencesAreFollowed) {
  VARIANT text = textVariant(u"x");
  VARIANT copy{};
  copy.llVal = 7;
  VariantInit(&copy);
  EXPECT_EQ(copy.vt, VT_EMPTY);
  EXPECT_EQ(copy.llVal, 7) << "of Windows nobody gets more than the type";
  EXPECT_EQ(VariantCopy(&copy, &text), S_OK);
  EXPECT_NE(copy.bstrVal, text.bstrVal);
  EXPECT_EQ(shown(copy), "'x'");
  VARIANT reference = variantOf(VT_BYREF | VT_BSTR);
  reference.pbstrVal = &text.bstrVal;
  EXPECT_EQ(VariantCopyInd(&copy, &reference), S_OK);
  EXPECT_EQ(copy.vt, VT_BSTR);
  VariantClear(&reference);
  EXPECT_EQ(shown(text), "'x'") << "a reference owns nothing";
  VariantClear(&copy);
  VariantClear(&text);

  CountedObject object;
  VARIANT holder = variantOf(VT_UNKNOWN);
  holder.punkVal = &object;
  object.AddRef();
  EXPECT_EQ(VariantCopy(&copy, &holder), S_OK);
  EXPECT_EQ(object.references, 3U);
  VariantClear(&copy);
  VariantClear(&holder);
  EXPECT_EQ(object.references, 1U);
  VARIANT bad = variantOf(99);
  EXPECT_EQ(VariantClear(&bad), DISP_E_BADVARTYPE);
}

TEST(SafeArray, ElementsAreCopiedInAndOut) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_BSTR, 5, 2);
  ASSERT_NE(array, nullptr);
  BSTR text = SysAllocString(u"one");
  LONG index = 6;
  EXPECT_EQ(SafeArrayPutElement(array, &index, text), S_OK);
  SysFreeString(text);
  BSTR out = nullptr;
  EXPECT_EQ(SafeArrayGetElement(array, &index, &out), S_OK);
  EXPECT_EQ(std::u16string(out), u"one");
  SysFreeString(out);
  for (const LONG outside : {4, 7, -1}) {
    index = outside;
    EXPECT_EQ(SafeArrayGetElement(array, &index, &out), DISP_E_BADINDEX) << outside;
  }
  LONG lower = 0;
  LONG upper = 0;
  VARTYPE type = 0;
  EXPECT_EQ(SafeArrayGetLBound(array, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 2, &upper), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetVartype(array, &type), S_OK);
  EXPECT_EQ(lower, 5);
  EXPECT_EQ(upper, 6);
  EXPECT_EQ(type, VT_BSTR);
  void* data = nullptr;
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(static_cast<BSTR*>(data)[0], nullptr);
  EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArray, OfVariantsFreesAndCopiesDeeply) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 2);
  CountedObject object;
  LONG index = 0;
  VARIANT value = variantOf(VT_UNKNOWN);
  value.punkVal = &object;
  EXPECT_EQ(SafeArrayPutElement(array, &index, &value), S_OK);
  index = 1;
  VARIANT text = textVariant(u"x");
  EXPECT_EQ(SafeArrayPutElement(array, &index, &text), S_OK);
  VariantClear(&text);
  EXPECT_EQ(object.references, 2U);
  VARIANT holder = variantOf(VT_ARRAY | VT_VARIANT);
  holder.parray = array;
  VARIANT copy;
  VariantInit(&copy);
  EXPECT_EQ(VariantCopy(&copy, &holder), S_OK);
  EXPECT_EQ(object.references, 3U);
  VariantClear(&holder);
  EXPECT_EQ(object.references, 2U);
  VARIANT element = variantOf(VT_UNKNOWN);
  element.punkVal = &object;
  object.AddRef();
  EXPECT_EQ(SafeArrayGetElement(copy.parray, &index, &element), S_OK);
  EXPECT_EQ(object.references, 2U) << "what it held before is freed";
  EXPECT_EQ(shown(element), "'x'");
  VariantClear(&element);
  VariantClear(&copy);
  EXPECT_EQ(object.references, 1U);
}

TEST(SafeArray, EmptyOnesAndUnknownTypes) {
  SAFEARRAY* empty = SafeArrayCreateVector(VT_I4, 0, 0);
  ASSERT_NE(empty, nullptr);
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetUBound(empty, 1, &upper), S_OK);
  EXPECT_EQ(upper, -1);
  EXPECT_EQ(SafeArrayDestroy(empty), S_OK);
  EXPECT_EQ(SafeArrayCreateVector(VT_LPSTR, 0, 1), nullptr);
}

}  // namespace
}  // namespace quillon::test
