#include <deque>

#include "binding.h"

namespace quillon::client {

Answer callLate(IDispatch& object, Kind kind, const Token& name,
                const std::vector<Token>& arguments, const Variables& variables) {
  BSTR wideName = bstrOf(name.text);
  LPOLESTR names = wideName;
  DISPID id = 0;
  Answer answer;
  answer.hr = object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  SysFreeString(wideName);
  if (FAILED(answer.hr)) return answer;

  std::deque<Value> values(arguments.size());
  std::vector<VARIANT> reversed;
  for (std::size_t i = arguments.size(); i > 0; --i) {
    values[i - 1].Read(arguments[i - 1]);
    reversed.push_back(values[i - 1].Get());
  }
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  WORD flags = DISPATCH_PROPERTYGET;
  if (kind == Kind::Call) flags = DISPATCH_METHOD;
  if (kind == Kind::Put) {
    flags = DISPATCH_PROPERTYPUT;
    params.rgdispidNamedArgs = &put;
    params.cNamedArgs = 1;
  }
  Value result;
  EXCEPINFO exception{};
  answer.hr = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                            kind == Kind::Put ? nullptr : &result.Get(), &exception, nullptr);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (kind != Kind::Put && SUCCEEDED(answer.hr)) {
    answer.value = shownValue(result.Get(), variables);
  }
  return answer;
}

}  // namespace quillon::client
