// quillon register and quillon unregister: what installers do with a server.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

void addRegisterCommands(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
