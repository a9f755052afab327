// The operations as late binding sees them, made from the one table.
#pragma once

#include <cstddef>
#include <span>

#include "server/com_server/quillon_media_rw.h"

namespace quillon {

struct OperationParameter {
  const OLECHAR* name;
  VARTYPE type;
  bool isOut;  // passed by its address; only the last one
};

struct Operation {
  const OLECHAR* name;
  DISPID id;
  WORD kind;  // DISPATCH_METHOD, DISPATCH_PROPERTYGET or DISPATCH_PROPERTYPUT
  std::span<const OperationParameter> parameters;
  // Calls the operation with one value for each parameter, of the parameter's type.
  HRESULT (*call)(IQuillonMediaRW& object, VARIANT* values);
};

inline constexpr std::size_t kOperationCount = 41;
inline constexpr std::size_t kMaxParameters = 3;

// In the order of the interface.
std::span<const Operation, kOperationCount> Operations();

}  // namespace quillon
