// What is thrown in a step of a job becomes the failure of that step: what has to be said at the
// end, such as where the file set is, is said then, too.
#pragma once

#include <utility>

#include "outcome.h"

namespace quillon::cli {

// Of the exception that is being handled.
Outcome thrownOutcome();

// The outcome of the step, or of what it throws.
template <typename Step>
Outcome guarded(Step&& step) {
  try {
    return std::forward<Step>(step)();
  } catch (...) {
    return thrownOutcome();
  }
}

}  // namespace quillon::cli
