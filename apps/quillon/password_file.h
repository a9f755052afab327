// The password of a ZIP file, which no command line shows to others.
#pragma once

#include <string>

#include "outcome.h"

namespace quillon::cli {

// The first line of a file that nobody else can read. Fails for one that others can, and for a line
// that is no password.
Outcome readPassword(const std::string& file, std::string& password);

}  // namespace quillon::cli
