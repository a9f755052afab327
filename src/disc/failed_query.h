// A query that fails leaves its object in its reset state, with the sentence of what failed.
#pragma once

#include "foundation/base_item.h"

namespace quillon {

// Always false. The fallback serves when nothing has left a sentence.
template <typename Item>
bool ResetAfterFailure(Item& item, UINT fallback) {
  const Text reason = item.ErrorMessage();
  item.Reset();
  if (reason.empty()) return item.Fail(fallback);
  item.CBaseItem::SetErrorMessage(reason);
  return false;
}

}  // namespace quillon
