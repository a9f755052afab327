#include "dicom/file_meta_info.h"

#include <string>

#include "dicom/dict.h"

namespace quillon {
namespace {

// Under the toolkit's root: what makes the files, and its version.
constexpr const char* kImplementationClass = ".4.8.9";
constexpr const char* kImplementationVersion = "QUILLON_MEDIA_1";  // at most 16 characters

}  // namespace

DcFileMetaInfo::DcFileMetaInfo()
    : implementationClassUid(std::string(kDcToolkitRoot) + kImplementationClass),
      implementationVersionName(kImplementationVersion) {}

// Copied, so that the texts keep their room: this is done several times for every file.
void DcFileMetaInfo::clear() {
  static const DcFileMetaInfo fresh;
  *this = fresh;
}

}  // namespace quillon
