// What the one reading of a DICOM file told beside its properties: what its directory record needs
// and what tells whether the file is still the same.
#pragma once

#include <memory>
#include <string>

#include "dicom/dir_rec.h"
#include "dicom/file_meta_info.h"
#include "foundation/file_util.h"

namespace quillon {

struct DicomFileFacts {
  // Meta information as far as a record refers to it, as the file itself has it: empty where the
  // file says nothing.
  [[nodiscard]] DcFileMetaInfo Reference() const {
    DcFileMetaInfo metaInfo;
    metaInfo.sopClassUid = sopClassUid;
    metaInfo.sopInstanceUid = sopInstanceUid;
    metaInfo.transferSyntaxUid = transferSyntaxUid;
    metaInfo.transferSyntax = transferSyntax;
    return metaInfo;
  }

  std::string sopClassUid;
  std::string sopInstanceUid;
  std::string transferSyntaxUid;
  DcUid transferSyntax = DcUid::ImplicitLittleEndian;
  FileStamp stamp;
  // Of a report, presentation state or key object document: its directory record, or the sentence
  // of what it lacks for one. Neither for other objects.
  std::unique_ptr<DcDirRec> document;
  Text documentProblem;
};

}  // namespace quillon
