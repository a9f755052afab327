#include <cstdlib>

#include "binding.h"

namespace quillon::client {
namespace {

// The types of parameters: how they are read from the script and put into a VARIANT to be shown.
class TextArgument {
 public:
  explicit TextArgument(const Token& token) : text_(bstrOf(token.text)) {}
  ~TextArgument() { SysFreeString(text_); }
  TextArgument(const TextArgument&) = delete;
  TextArgument& operator=(const TextArgument&) = delete;
  [[nodiscard]] BSTR Get() const { return text_; }

 private:
  BSTR text_;
};

class FlagArgument {
 public:
  explicit FlagArgument(const Token& token)
      : flag_(token.text == "true"    ? VARIANT_TRUE
              : token.text == "false" ? VARIANT_FALSE
                                      : static_cast<VARIANT_BOOL>(std::atoi(token.text.c_str()))) {}
  [[nodiscard]] VARIANT_BOOL Get() const { return flag_; }

 private:
  VARIANT_BOOL flag_;
};

template <typename Type>
struct ArgumentOf;
template <>
struct ArgumentOf<BSTR> {
  using Reader = TextArgument;
};
template <>
struct ArgumentOf<VARIANT_BOOL> {
  using Reader = FlagArgument;
};

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

template <typename Type>
using In = typename ArgumentOf<Type>::Reader;

// Calls with a variable for the out value and shows what is in it then.
template <typename Type, typename Call>
Answer answered(const Variables& variables, Call call) {
  Type out{};
  Answer answer{call(&out), {}};
  Value value;
  store(value.Get(), out);
  answer.value = shownValue(value.Get(), variables);
  return answer;
}

}  // namespace

std::optional<Answer> callEarly(IQuillonMediaRW& object, Kind kind, const Token& name,
                                const std::vector<Token>& arguments, const Variables& variables) {
  const std::string& text = name.text;
  const std::size_t count = arguments.size();
#define QUILLON_GET(id, operation, type, help)                                                \
  if (kind == Kind::Get && text == #operation && count == 0) {                                \
    return answered<type>(variables, [&](type* out) { return object.get_##operation(out); }); \
  }
#define QUILLON_PUT(id, operation, type, help)                               \
  if (kind == Kind::Put && text == #operation && count == 1) {               \
    return Answer{object.put_##operation(In<type>(arguments[0]).Get()), {}}; \
  }
#define QUILLON_CALL(id, operation, help)                       \
  if (kind == Kind::Call && text == #operation && count == 0) { \
    return Answer{object.operation(), "empty"};                 \
  }
#define QUILLON_CALL_OUT(id, operation, outType, outName, help)                               \
  if (kind == Kind::Call && text == #operation && count == 0) {                               \
    return answered<outType>(variables, [&](outType* out) { return object.operation(out); }); \
  }
#define QUILLON_CALL_IN_OUT(id, operation, inType, inName, outType, outName, help) \
  if (kind == Kind::Call && text == #operation && count == 1) {                    \
    return answered<outType>(variables, [&](outType* out) {                        \
      return object.operation(In<inType>(arguments[0]).Get(), out);                \
    });                                                                            \
  }
#define QUILLON_CALL_IN_IN_OUT(id, operation, inType1, inName1, inType2, inName2, outType,      \
                               outName, help)                                                   \
  if (kind == Kind::Call && text == #operation && count == 2) {                                 \
    return answered<outType>(variables, [&](outType* out) {                                     \
      return object.operation(In<inType1>(arguments[0]).Get(), In<inType2>(arguments[1]).Get(), \
                              out);                                                             \
    });                                                                                         \
  }
#include "server/com_server/operations.inc"
  return std::nullopt;
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
