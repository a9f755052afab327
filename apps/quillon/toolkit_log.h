// Where the toolkit's log lines go.
#pragma once

#include <string>

namespace quillon::cli {

// By default they go to standard output, where a program's results belong: with an empty name they
// are switched off, otherwise appended to the file. False when it cannot be opened.
bool sendToolkitLog(const std::string& fileName);

}  // namespace quillon::cli
