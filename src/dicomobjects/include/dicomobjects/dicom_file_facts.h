// What the one reading of a DICOM file told beside its properties: what its directory record needs
// and what tells whether the file is still the same.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dicom/dir_rec.h"
#include "dicom/file_meta_info.h"
#include "dicomobjects/dicom_object_properties.h"
#include "foundation/file_util.h"
#include "foundation/shared_text.h"

namespace quillon {

// A directory record that hangs nowhere yet, with keys as an object has them.
struct KeptRecord {
  std::unique_ptr<DcDirRec> record;
  std::vector<DcTag> missingKeys;  // required ones that the object has no value for
};

// The record of an object that is no image, or the sentence of what a report, presentation state or
// key object document lacks for one. An image's record is made of its properties.
struct OwnRecord {
  KeptRecord kept;
  Text problem;
};

struct DicomFileFacts {
  using Uid = SharedString<std::string>;

  // Meta information as far as a record refers to it, as the file itself has it: empty where the
  // file says nothing.
  [[nodiscard]] DcFileMetaInfo Reference(const CDicomObjectProperties& object) const {
    DcFileMetaInfo metaInfo;
    metaInfo.sopClassUid = sopClassUid.Get();
    metaInfo.sopInstanceUid =
        isOwnInstance ? NarrowText(object.InstanceUid(), CP_ACP) : sopInstanceUid.Get();
    metaInfo.transferSyntaxUid = transferSyntaxUid.Get();
    metaInfo.transferSyntax = transferSyntax;
    return metaInfo;
  }
  // like, which may be null: the facts of an object that often has the same UIDs.
  void SetReference(const DcFileMetaInfo& metaInfo, const CDicomObjectProperties& object,
                    const DicomFileFacts* like) {
    sopClassUid.Set(metaInfo.sopClassUid, like == nullptr ? nullptr : &like->sopClassUid);
    transferSyntaxUid.Set(metaInfo.transferSyntaxUid,
                          like == nullptr ? nullptr : &like->transferSyntaxUid);
    transferSyntax = metaInfo.transferSyntax;
    isOwnInstance = NarrowText(object.InstanceUid(), CP_ACP) == metaInfo.sopInstanceUid;
    if (!isOwnInstance) sopInstanceUid.Set(metaInfo.sopInstanceUid);
  }

  Uid sopClassUid;
  Uid sopInstanceUid;  // where it is not the one of the data set
  Uid transferSyntaxUid;
  DcUid transferSyntax = DcUid::ImplicitLittleEndian;
  bool isOwnInstance = false;
  FileFacts file;                     // as it was when it was read
  std::unique_ptr<OwnRecord> record;  // null for an image
};

}  // namespace quillon
