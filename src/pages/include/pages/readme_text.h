// README.TXT: what a medium is, for people who open it without knowing what it is. It names no
// patient, so that it can be read out on the telephone.
#pragma once

#include <string>

#include "pages/medium_model.h"

namespace quillon {

// Lines of at most 80 ASCII characters, each ended by CR LF.
[[nodiscard]] std::string ReadmeText(const MediumModel& medium);

}  // namespace quillon
