// An image of a disc: the names of UDF where it can be read, else those of Joliet, else of ISO
// 9660.
#pragma once

#include <memory>

#include "medium/medium_image.h"

namespace quillon {

// Whether a file begins as an image does.
[[nodiscard]] bool IsImage(const Text& path);
// Null, with a sentence.
[[nodiscard]] std::unique_ptr<MediumSource> OpenImage(TextView path, CBaseItem& errors);

}  // namespace quillon
