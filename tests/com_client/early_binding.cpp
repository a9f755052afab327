#include <array>
#include <cstdlib>
#include <tuple>

#include "binding.h"

namespace quillon::client {
namespace {

void store(VARIANT& out, BSTR text) {
  out.vt = VT_BSTR;
  out.bstrVal = text;
}
void store(VARIANT& out, VARIANT_BOOL flag) {
  out.vt = VT_BOOL;
  out.boolVal = flag;
}
void store(VARIANT& out, LONG number) {
  out.vt = VT_I4;
  out.lVal = number;
}
void store(VARIANT& out, ULONG number) {
  out.vt = VT_UI4;
  out.ulVal = number;
}
void store(VARIANT& out, ULONGLONG number) {
  out.vt = VT_UI8;
  out.ullVal = number;
}

// What a parameter is called with: a value that is read from the script, or room for one that comes
// out.
template <typename Type>
class Parameter;
template <>
class Parameter<BSTR> {
 public:
  static constexpr bool kIsOut = false;
  explicit Parameter(const Token* token) : text_(bstrOf(token->text)) {}
  ~Parameter() { SysFreeString(text_); }
  Parameter(const Parameter&) = delete;
  Parameter& operator=(const Parameter&) = delete;
  BSTR Get() { return text_; }

 private:
  BSTR text_;
};
template <>
class Parameter<VARIANT_BOOL> {
 public:
  static constexpr bool kIsOut = false;
  explicit Parameter(const Token* token) : text_(token->text) {}
  VARIANT_BOOL Get() {
    if (text_ == "true") return VARIANT_TRUE;
    return text_ == "false" ? VARIANT_FALSE : static_cast<VARIANT_BOOL>(std::atoi(text_.c_str()));
  }

 private:
  std::string text_;
};
template <typename Type>
class Parameter<Type*> {
 public:
  static constexpr bool kIsOut = true;
  explicit Parameter(const Token*) {}
  Type* Get() { return &value_; }
  [[nodiscard]] std::string Shown(const Variables& variables) const {
    Value value;
    store(value.Get(), value_);
    return shownValue(value.Get(), variables);
  }

 private:
  Type value_{};
};

template <typename... Types>
std::optional<Answer> callMethod(IQuillonMediaRW& object,
                                 HRESULT (STDMETHODCALLTYPE IQuillonMediaRW::*method)(Types...),
                                 const std::vector<Token>& arguments, const Variables& variables) {
  constexpr std::size_t kInCount = (std::size_t{0} + ... + (Parameter<Types>::kIsOut ? 0 : 1));
  if (arguments.size() != kInCount) return std::nullopt;
  constexpr std::array<bool, sizeof...(Types)> kAreOut{Parameter<Types>::kIsOut...};
  std::array<const Token*, sizeof...(Types)> given{};
  for (std::size_t i = 0, next = 0; i < given.size(); ++i) {
    if (!kAreOut[i]) given[i] = &arguments[next++];
  }
  auto parameters = std::make_from_tuple<std::tuple<Parameter<Types>...>>(given);
  const auto call = [&](auto&... parameter) { return (object.*method)(parameter.Get()...); };
  Answer answer{std::apply(call, parameters), "empty"};
  const auto show = [&](const auto& parameter) {
    if constexpr (requires { parameter.Shown(variables); }) {
      answer.value = parameter.Shown(variables);
    }
  };
  std::apply([&](const auto&... parameter) { (show(parameter), ...); }, parameters);
  return answer;
}

std::optional<Answer> callNamed(IQuillonMediaRW& object, const std::string& wanted,
                                const std::vector<Token>& arguments, const Variables& variables) {
#define QUILLON_METHOD(method, parameters, passed) \
  if (wanted == #method) return callMethod(object, &IQuillonMediaRW::method, arguments, variables);
#include "server/com_server/operations.inc"
  return std::nullopt;
}

}  // namespace

std::optional<Answer> callEarly(IQuillonMediaRW& object, Kind kind, const Token& name,
                                const std::vector<Token>& arguments, const Variables& variables) {
  const char* const prefix = kind == Kind::Get ? "get_" : kind == Kind::Put ? "put_" : "";
  std::optional<Answer> answer = callNamed(object, prefix + name.text, arguments, variables);
  if (answer && kind == Kind::Put) answer->value.clear();
  return answer;
}

std::string operationTable() {
  std::string table;
  int slot = 7;
  const auto add = [&](const char* kind, const char* name, int id, const char* parameters,
                       const char* help) {
    table += std::to_string(slot++) + ' ' + kind + ' ' + name + " [" + std::to_string(id) + "] (" +
             parameters + ") \"" + help + "\"\n";
  };
#define QUILLON_GET(id, name, type, help) add("get", #name, id, "retval " #type "*", help);
#define QUILLON_PUT(id, name, type, help) add("put", #name, id, "in " #type, help);
#define QUILLON_CALL(id, name, help) add("call", #name, id, "", help);
#define QUILLON_CALL_OUT(id, name, outType, out, help) \
  add("call", #name, id, "retval " #outType "* " #out, help);
#define QUILLON_CALL_IN_OUT(id, name, inType, in, outType, out, help) \
  add("call", #name, id, "in " #inType " " #in ", retval " #outType "* " #out, help);
#define QUILLON_CALL_IN_IN_OUT(id, name, inType1, in1, inType2, in2, outType, out, help) \
  add("call", #name, id,                                                                 \
      "in " #inType1 " " #in1 ", in " #inType2 " " #in2 ", retval " #outType "* " #out, help);
#include "server/com_server/operations.inc"
  return table;
}

}  // namespace quillon::client
