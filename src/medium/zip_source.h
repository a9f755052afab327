// A ZIP file as a medium. Its entries are read as streams, in the order in which they lie in the
// file at the least cost.
#pragma once

#include <memory>

#include "medium/medium_source.h"

namespace quillon {

// Whether a file begins as a ZIP file does.
[[nodiscard]] bool IsZip(const Text& path);
// Null, with a sentence.
[[nodiscard]] std::unique_ptr<MediumSource> OpenZip(TextView path, CBaseItem& errors);

}  // namespace quillon
