// A medium in the image of a disc, wherever the bytes of that come from.
#pragma once

#include <memory>

#include "medium/medium_source.h"

namespace quillon {

// bytes: of the whole disc. name stands for it in sentences. Null, with a sentence in errors, for
// null and when there is no file system in it that can be read.
[[nodiscard]] std::unique_ptr<MediumSource> OpenImage(std::unique_ptr<MediumFile> bytes,
                                                      TextView name, CBaseItem& errors);

}  // namespace quillon
