#include "directory_source.h"
#include "foundation/file_util.h"
#include "image_source.h"
#include "medium/medium_source.h"
#include "zip_source.h"

namespace quillon {

std::unique_ptr<MediumSource> OpenMedium(TextView path, CBaseItem& errors,
                                         const std::string& password) {
  const DWORD attributes = GetFileAttributesW(Text(path).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return std::make_unique<DirectorySource>(path);
  }
  if (IsImage(Text(path))) return OpenImage(path, errors);
  if (IsZip(Text(path))) return OpenZip(path, errors, password);
  const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
  errors.SetErrorMessage(isThere ? kMsgNotAMedium : kMsgCannotOpenFile, {path});
  return nullptr;
}

}  // namespace quillon
