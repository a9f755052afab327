// What a File ID (PS 3.10) may look like in the file sets that are made here.
#pragma once

#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

// False, with the sentence left in errors, for a File ID that is empty, has more than 103
// characters, other characters than upper-case letters, digits, "_" and separators, more than 8
// levels, or a level of more than 12 characters.
[[nodiscard]] bool CheckFileId(TextView fileId, CFileUtil& files, CBaseItem& errors);

}  // namespace quillon
