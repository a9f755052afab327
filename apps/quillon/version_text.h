// What --version prints.
#pragma once

#include <string>

namespace quillon::cli {

// The program's version, then a line for each library that is inside it or that it loads, with the
// version of what is there on this machine. Loads all of them.
std::string versionText();

}  // namespace quillon::cli
