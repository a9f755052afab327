// What the one reading of a DICOM file told beside its properties: what its directory record needs
// and what tells whether the file is still the same.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dicom/dir_rec.h"
#include "dicom/file_meta_info.h"
#include "foundation/file_util.h"

namespace quillon {

// A directory record that hangs nowhere yet, with keys as an object has them.
struct KeptRecord {
  std::unique_ptr<DcDirRec> record;
  std::vector<DcTag> missingKeys;  // required ones that the object has no value for
};

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
  FileFacts file;  // as it was when it was read
  // The object's directory record, unless it is an image's, which is made of the properties; or the
  // sentence of what a report, presentation state or key object document lacks for one.
  KeptRecord directory;
  Text recordProblem;
};

}  // namespace quillon
