// The creation of one file set and its delivery, one after the other.
#pragma once

#include <functional>

#include "create_job.h"
#include "outcome.h"
#include "write_job.h"

namespace quillon::cli {

class JobAudit;

struct Published {
  CreateResult created;
  WriteResult written;  // as far as it came
  Outcome outcome;      // of both, and of their record
};

// The delivery is asked before the creation begins. keepRoot: see Delivery. audit gets all that
// there is to record, and the end.
Published publishFileSet(CreateOptions create, const WriteOptions& write,
                         std::function<void()> keepRoot, JobAudit& audit);

}  // namespace quillon::cli
