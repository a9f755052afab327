// The two ways to call an object: by name through IDispatch, and through the vtable.
#pragma once

#include <optional>

#include "values.h"

namespace quillon::client {

enum class Kind { Get, Put, Call };

struct Answer {
  HRESULT hr = S_OK;
  std::string value;  // as it is shown; empty when nothing came back
};

Answer callLate(IDispatch& object, Kind kind, const Token& name,
                const std::vector<Token>& arguments, const Variables& variables);
// Nothing when there is no such operation, or it takes other arguments.
std::optional<Answer> callEarly(IQuillonMediaRW& object, Kind kind, const Token& name,
                                const std::vector<Token>& arguments, const Variables& variables);

// One line for each operation: place in the vtable, kind, name, identifier, parameters, help text.
std::string operationTable();

}  // namespace quillon::client
