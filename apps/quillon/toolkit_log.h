// Where the toolkit's log lines go.
#pragma once

#include "outcome.h"

namespace quillon::cli {

// By default they go to standard output, where a program's results belong: with an empty name they
// are switched off, otherwise appended to the file. Fails when it cannot be opened.
Outcome sendToolkitLog(const std::string& fileName);

}  // namespace quillon::cli
