// The creation of one file set and its delivery, one after the other.
#pragma once

#include <functional>

#include "create_job.h"
#include "outcome.h"
#include "write_job.h"

namespace quillon::cli {

struct Published {
  CreateResult created;
  WriteResult written;  // as far as it came
  [[nodiscard]] const Outcome& outcome() const {
    return created.outcome.failed() ? created.outcome : written.outcome;
  }
};

// The delivery is asked before the creation begins. keepRoot: see Delivery.
Published publishFileSet(CreateOptions create, const WriteOptions& write,
                         std::function<void()> keepRoot);

}  // namespace quillon::cli
