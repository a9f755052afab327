// A ZIP file as a medium. Its entries are read as streams, in the order in which they lie in the
// file at the least cost.
#pragma once

#include <memory>
#include <string>

#include "medium/medium_source.h"

namespace quillon {

// Whether a file begins as a ZIP file does.
[[nodiscard]] bool IsZip(const Text& path);
// Null, with a sentence. password: as for OpenMedium.
[[nodiscard]] std::unique_ptr<MediumSource> OpenZip(TextView path, CBaseItem& errors,
                                                    const std::string& password);

}  // namespace quillon
