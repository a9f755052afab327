// Names, identifiers, places in the vtable, and what late binding does to arguments and results.
#include "dispatch.h"

#include <array>
#include <optional>
#include <vector>

#include "com_test_tools.h"
#include "platform/com/com_object.h"

namespace quillon::test {
namespace {

// Notes which method was called, with what, and answers as it is told.
class RecordingMedia final : public DispatchObject<IQuillonMediaRW, IID_IQuillonMediaRW> {
  // Takes the arguments of the call of that name.
  [[nodiscard]] auto Noting(const char* name) {
    return [this, name](auto... passed) {
      called = name;
      (Take(passed), ...);
      return answer;
    };
  }
  void Take(BSTR text) { arguments.push_back(text == nullptr ? "null" : narrow(text)); }
  void Take(VARIANT_BOOL flag) { arguments.push_back(std::to_string(flag)); }
  void Take(BSTR* text) const {
    if (text != nullptr && writesOut) *text = SysAllocString(OLESTR("out"));
  }
  template <typename Number>
  void Take(Number* number) const {
    if (number != nullptr && writesOut) *number = static_cast<Number>(-1);
  }

 public:
#define QUILLON_METHOD(method, parameters, passed) \
  HRESULT STDMETHODCALLTYPE method parameters override { return Noting(#method) passed; }
#include "server/com_server/operations.inc"

  std::string called;
  std::vector<std::string> arguments;
  HRESULT answer = S_OK;
  bool writesOut = true;
};

// What hosts were built with: names, kinds (get, put, call) and identifiers in interface order.
constexpr struct {
  const char* name;
  const char* kinds;
  DISPID id;
} kContract[] = {
    {"IheLabel", "g", 1},
    {"AllowAddHierarchyTree", "gp", 2},
    {"UseHierarchyForDicomObjects", "gp", 3},
    {"ClearAfterWrite", "gp", 4},
    {"PerformFullErase", "gp", 5},
    {"SimulateCreation", "gp", 6},
    {"EjectMediumAfterCreation", "gp", 7},
    {"VolumeName", "gp", 8},
    {"DicomRootDirectory", "gp", 9},
    {"DicomObjectDirectory", "gp", 10},
    {"ErrMessageText", "g", 11},
    {"Result", "g", 12},
    {"AddDirectory", "c", 13},
    {"AddFile", "c", 14},
    {"CreateDicomFileSet", "c", 15},
    {"Write", "c", 16},
    {"TotalSizeOfFileSet", "g", 17},
    {"TotalNumberOfFilesInFileSet", "g", 18},
    {"IncludeOtherContent", "gp", 19},
    {"OtherContentDirectory", "gp", 20},
    {"PerformDirectCopy", "gp", 21},
    {"DirectCopyDirectory", "gp", 22},
    {"Wipe", "c", 23},
    {"LoadHeaderTextFromFile", "c", 24},
    {"CDRWHasContent", "g", 25},
    {"CDIsRecordable", "g", 26},
    {"UniquePatientId", "gp", 27},
};

HRESULT idsOf(std::vector<std::string> names, std::vector<DISPID>& ids) {
  std::vector<Text> texts;
  for (const std::string& name : names) texts.push_back(wide(name));
  std::vector<LPOLESTR> pointers;
  for (Text& text : texts) pointers.push_back(text.data());
  ids.assign(names.size(), 99);
  return FindDispatchIds(IID_NULL, pointers.data(), static_cast<UINT>(pointers.size()), ids.data());
}

// Calls with the arguments in the order of the parameters.
struct LateResult {
  HRESULT hr = S_OK;
  Value value;
  UINT badArgument = 77;
  EXCEPINFO exception{};
};
void invoke(RecordingMedia& media, DISPID id, WORD flags, std::vector<Value> arguments,
            LateResult& result) {
  std::vector<VARIANT> reversed;
  for (auto at = arguments.rbegin(); at != arguments.rend(); ++at) reversed.push_back(at->Get());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  if ((flags & DISPATCH_PROPERTYPUT) != 0) {
    params.rgdispidNamedArgs = &put;
    params.cNamedArgs = 1;
  }
  result.hr = InvokeOperation(media, id, IID_NULL, flags, &params, &result.value, &result.exception,
                              &result.badArgument);
}

TEST(Dispatch, NamesIdentifiersAndPlacesAreWhatHostsWereBuiltWith) {
  // A slot is called as a host does that knows nothing but its number: with an out pointer that has
  // room for any value. Slots 0 to 6 are those of IDispatch.
  using AnyMethod = HRESULT(STDMETHODCALLTYPE*)(void*, void*, void*, void*);
  RecordingMedia media;
  std::size_t slot = 7;
  for (const auto& row : kContract) {
    SCOPED_TRACE(row.name);
    std::string other(row.name);
    for (char& c : other) c = static_cast<char>(c ^ 0x20);
    std::vector<DISPID> ids;
    EXPECT_EQ(idsOf({row.name}, ids), S_OK);
    EXPECT_EQ(ids[0], row.id);
    EXPECT_EQ(idsOf({other}, ids), S_OK);
    EXPECT_EQ(ids[0], row.id) << other;
    for (const char* kind = row.kinds; *kind != 0; ++kind, ++slot) {
      const std::string expected = std::string(*kind == 'g'   ? "get_"
                                               : *kind == 'p' ? "put_"
                                                              : "") +
                                   row.name;
      const bool isGet = *kind == 'g';
      const bool isPut = *kind == 'p';
      const WORD flags = isGet   ? DISPATCH_PROPERTYGET
                         : isPut ? DISPATCH_PROPERTYPUT
                                 : DISPATCH_METHOD;
      std::vector<Value> arguments;
      if (isPut) arguments.emplace_back("1");
      if (expected.starts_with("Add")) arguments.emplace_back("a");
      if (expected.starts_with("Load")) arguments = {Value("a"), Value("a")};
      LateResult result;
      invoke(media, row.id, flags, arguments, result);
      EXPECT_EQ(result.hr, S_OK);
      EXPECT_EQ(media.called, expected);
      media.called.clear();
      media.writesOut = false;
      IQuillonMediaRW* const host = &media;
      AnyMethod* const table = *reinterpret_cast<AnyMethod**>(host);
#ifndef _WIN32  // the callee takes its own number of arguments off the stack there
      table[slot](host, nullptr, nullptr, nullptr);
      EXPECT_EQ(media.called, expected) << "slot " << slot;
#else
      static_cast<void>(table);
#endif
      media.writesOut = true;
    }
  }
  EXPECT_EQ(slot, 7U + 41U);
}

TEST(Dispatch, UnknownNamesHaveNoIdentifier) {
  std::vector<DISPID> ids;
  EXPECT_EQ(idsOf({"AddFile", "PBRESULT", "bstrFilename"}, ids), S_OK);
  EXPECT_EQ(ids, (std::vector<DISPID>{14, 1, 0}));
  EXPECT_EQ(idsOf({"AddFile", "Nothing", "bstrFilename"}, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids, (std::vector<DISPID>{14, DISPID_UNKNOWN, 0}));
  EXPECT_EQ(idsOf({"get_Result", "pVal"}, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids, (std::vector<DISPID>{DISPID_UNKNOWN, DISPID_UNKNOWN}));
  EXPECT_EQ(idsOf({"AddFil"}, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(idsOf({"AddFiles"}, ids), DISP_E_UNKNOWNNAME);
  LPOLESTR none = nullptr;
  DISPID id = 5;
  EXPECT_EQ(FindDispatchIds(IID_NULL, &none, 1, &id), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(FindDispatchIds(IID_IUnknown, &none, 1, &id), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(FindDispatchIds(IID_NULL, nullptr, 1, &id), E_INVALIDARG);
}

TEST(Dispatch, ArgumentsAreConvertedOrRefused) {
  OLECHAR text[] = {'r', 'e', 'f', 0};
  BSTR reference = SysAllocString(text);
  VARIANT_BOOL flag = 7;
  LONG number = 7;
  const struct {
    const char* what;
    DISPID id;
    WORD flags;
    std::vector<Value> arguments;
    HRESULT hr;
    const char* passed;  // the first argument as the operation saw it
    UINT badArgument = 77;
  } cases[] = {
      {"true is minus one", 6, DISPATCH_PROPERTYPUT, {Value::Bool(-1)}, S_OK, "-1"},
      {"one of a flag stays one", 6, DISPATCH_PROPERTYPUT, {Value::Bool(1)}, S_OK, "1"},
      {"a number becomes a flag", 6, DISPATCH_PROPERTYPUT, {Value::Long(1)}, S_OK, "-1"},
      {"a word becomes a flag", 6, DISPATCH_PROPERTYPUT, {Value("False")}, S_OK, "0"},
      {"a word that is none", 6, DISPATCH_PROPERTYPUT, {Value("x")}, DISP_E_TYPEMISMATCH, "", 0},
      {"a number becomes a text", 8, DISPATCH_PROPERTYPUT, {Value::Long(12)}, S_OK, "12"},
      {"an empty value", 8, DISPATCH_PROPERTYPUT, {Value()}, S_OK, ""},
      {"by reference",
       8,
       DISPATCH_PROPERTYPUT,
       {Value::Reference(VT_BSTR, &reference)},
       S_OK,
       "ref"},
      {"null", 8, DISPATCH_PROPERTYPUT, {Value::OfType(VT_NULL)}, DISP_E_TYPEMISMATCH, "", 0},
      {"nothing to put", 8, DISPATCH_PROPERTYPUT, {}, DISP_E_BADPARAMCOUNT, ""},
      {"a property is no method", 8, DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND, ""},
      {"what cannot be put", 11, DISPATCH_PROPERTYPUT, {Value("x")}, DISP_E_MEMBERNOTFOUND, ""},
      {"no such operation", 28, DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND, ""},
      {"a get takes nothing",
       12,
       DISPATCH_PROPERTYGET,
       {Value::Reference(VT_I4, &number)},
       DISP_E_BADPARAMCOUNT,
       ""},
      {"result left away", 14, DISPATCH_METHOD, {Value("f")}, S_OK, "f"},
      {"result omitted", 14, DISPATCH_METHOD, {Value("f"), Value::Omitted()}, S_OK, "f"},
      {"result by value",
       14,
       DISPATCH_METHOD,
       {Value("f"), Value::Bool(0)},
       DISP_E_TYPEMISMATCH,
       "",
       0},
      {"result of another type",
       14,
       DISPATCH_METHOD,
       {Value("f"), Value::Reference(VT_I4, &number)},
       DISP_E_TYPEMISMATCH,
       "",
       0},
      {"result nowhere",
       14,
       DISPATCH_METHOD,
       {Value("f"), Value::Reference(VT_BOOL, nullptr)},
       E_INVALIDARG,
       "",
       0},
      {"too many",
       14,
       DISPATCH_METHOD,
       {Value("f"), Value::Omitted(), Value::Omitted()},
       DISP_E_BADPARAMCOUNT,
       ""},
      {"too few", 14, DISPATCH_METHOD, {}, DISP_E_BADPARAMCOUNT, ""},
      {"a required one omitted",
       24,
       DISPATCH_METHOD,
       {Value::Omitted(), Value("s")},
       DISP_E_PARAMNOTOPTIONAL,
       "",
       1},
      {"the script's way to get", 11, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, S_OK, ""},
      {"the script's way to call",
       14,
       DISPATCH_METHOD | DISPATCH_PROPERTYGET,
       {Value("f"), Value::Reference(VT_BOOL, &flag)},
       S_OK,
       "f"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    RecordingMedia media;
    LateResult result;
    invoke(media, c.id, c.flags, c.arguments, result);
    EXPECT_EQ(result.hr, c.hr);
    EXPECT_EQ(media.called.empty(), FAILED(c.hr));
    EXPECT_EQ(media.arguments.empty() ? "" : media.arguments[0], c.passed);
    EXPECT_EQ(result.badArgument, c.badArgument);
  }
  EXPECT_EQ(flag, -1);
  EXPECT_EQ(number, 7);
  SysFreeString(reference);
}

TEST(Dispatch, NamedArgumentsFindTheirParameters) {
  RecordingMedia media;
  Value file("file");
  Value sheet("sheet");
  VARIANT values[] = {file.Get(), sheet.Get()};
  DISPID names[] = {0, 1};
  DISPPARAMS params{values, names, 2, 2};
  Value result;
  UINT bad = 0;
  EXPECT_EQ(InvokeOperation(media, 24, IID_NULL, DISPATCH_METHOD, &params, &result, nullptr, &bad),
            S_OK);
  EXPECT_EQ(media.arguments, (std::vector<std::string>{"file", "sheet"}));
  EXPECT_EQ(result.AsText(), "out");
  for (const DISPID wrong : {DISPID{0}, DISPID{3}, DISPID{-1}, DISPID{DISPID_PROPERTYPUT}}) {
    SCOPED_TRACE(wrong);
    names[1] = wrong;
    EXPECT_EQ(
        InvokeOperation(media, 24, IID_NULL, DISPATCH_METHOD, &params, nullptr, nullptr, &bad),
        DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(bad, 1U);
  }
  // What is put must be said to be the value.
  params = {values, names, 1, 0};
  EXPECT_EQ(
      InvokeOperation(media, 8, IID_NULL, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, &bad),
      DISP_E_PARAMNOTFOUND);
  names[0] = 0;
  params = {values, names, 1, 1};
  EXPECT_EQ(
      InvokeOperation(media, 8, IID_NULL, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, &bad),
      DISP_E_PARAMNOTFOUND)
      << "the value is no parameter";
  EXPECT_EQ(bad, 0U);
  EXPECT_EQ(InvokeOperation(media, 8, IID_IUnknown, DISPATCH_PROPERTYGET, &params, nullptr, nullptr,
                            nullptr),
            DISP_E_UNKNOWNINTERFACE);
}

TEST(Dispatch, ResultsComeBackInEveryForm) {
  RecordingMedia media;
  LateResult result;
  invoke(media, 17, DISPATCH_PROPERTYGET, {}, result);
  EXPECT_EQ(result.value.Get().vt, VT_UI8);
  EXPECT_EQ(result.value.Get().ullVal, ~0ULL);
  invoke(media, 18, DISPATCH_PROPERTYGET, {}, result);
  EXPECT_EQ(result.value.Get().vt, VT_UI4);
  invoke(media, 12, DISPATCH_PROPERTYGET, {}, result);
  EXPECT_EQ(result.value.Get().vt, VT_I4);
  EXPECT_EQ(result.value.Get().lVal, -1);
  invoke(media, 23, DISPATCH_METHOD, {}, result);
  EXPECT_EQ(result.value.Get().vt, VT_EMPTY);

  // Into a text and into a variant that hold something already.
  BSTR text = SysAllocString(OLESTR("old"));
  Value variant("old");
  LateResult header;
  invoke(media, 24, DISPATCH_METHOD, {Value("f"), Value("s"), Value::Reference(VT_BSTR, &text)},
         header);
  EXPECT_EQ(narrow(text), "out");
  EXPECT_EQ(header.value.AsText(), "out");
  SysFreeString(text);
  LateResult second;
  invoke(media, 24, DISPATCH_METHOD,
         {Value("f"), Value("s"), Value::Reference(VT_VARIANT, &variant)}, second);
  EXPECT_EQ(variant.AsText(), "out");
}

// What an earlier call may have left where the next one has its values.
[[gnu::noinline]] void litterTheStack() {
  volatile unsigned char litter[8192];
  for (auto& byte : litter) byte = 0xAB;
}

TEST(Dispatch, AValueThatIsNotWrittenIsHandedOutEmpty) {
  RecordingMedia media;
  media.answer = S_FALSE;
  media.writesOut = false;
  const struct {
    DISPID id;
    WORD flags;
    std::vector<Value> arguments;
    VARTYPE type;
  } cases[] = {
      {16, DISPATCH_METHOD, {}, VT_BOOL},                        // Write
      {14, DISPATCH_METHOD, {Value("f")}, VT_BOOL},              // AddFile
      {24, DISPATCH_METHOD, {Value("f"), Value("s")}, VT_BSTR},  // LoadHeaderTextFromFile
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    LateResult result;
    litterTheStack();
    invoke(media, c.id, c.flags, c.arguments, result);
    EXPECT_EQ(result.hr, S_FALSE);
    EXPECT_EQ(result.value.Get().vt, c.type);
    EXPECT_EQ(result.value.Get().bstrVal, nullptr);
  }
}

TEST(Dispatch, WhatDoesNotSucceedLeavesTheCallersValueAlone) {
  RecordingMedia media;
  VARIANT_BOOL flag = 7;
  const std::vector<Value> arguments = {Value("f"), Value::Reference(VT_BOOL, &flag)};
  media.answer = S_FALSE;
  media.writesOut = false;
  LateResult result;
  invoke(media, 14, DISPATCH_METHOD, arguments, result);
  EXPECT_EQ(result.hr, S_FALSE);
  EXPECT_EQ(flag, 7);
  EXPECT_EQ(result.value.Get().vt, VT_BOOL);
  EXPECT_EQ(result.value.Get().boolVal, VARIANT_FALSE);

  media.answer = E_OUTOFMEMORY;
  media.writesOut = true;
  LateResult failed;
  invoke(media, 14, DISPATCH_METHOD, arguments, failed);
  EXPECT_EQ(failed.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(failed.exception.scode, E_OUTOFMEMORY);
  EXPECT_EQ(narrow(failed.exception.bstrSource), "QuillonMediaRW.QuillonMediaRW.1");
  EXPECT_EQ(narrow(failed.exception.bstrDescription), "out");
  EXPECT_EQ(flag, 7);
  SysFreeString(failed.exception.bstrSource);
  SysFreeString(failed.exception.bstrDescription);
}

}  // namespace
}  // namespace quillon::test
