// Names the process's log sink; only the dictionary, whose life the sink shares, does that.
#pragma once

#include "dicom/log.h"

namespace quillon {

void dcSetTheLog(DcLog* sink);

}  // namespace quillon
