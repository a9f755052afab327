#include "foundation/file_util.h"
#include "medium/medium_source.h"

namespace quillon {

std::unique_ptr<MediumSource> OpenMedium(TextView path, CBaseItem& errors) {
  CFileUtil files;
  if (!files.PathExists(Text(path))) errors.SetErrorMessage(kMsgCannotOpenFile, {path});
  return nullptr;
}

}  // namespace quillon
