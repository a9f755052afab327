#include "dicom/element_form.h"

#include "dicom/dict.h"

namespace quillon {

bool isTransferSyntaxUid(DcUid uid) {
  if (isUncompressed(uid)) return true;
  DcUidKind kind = DcUidKind::Other;
  return theDictionary().getUidType(uid, &kind) == kDcOk && kind == DcUidKind::TransferSyntax;
}

DcCode checkTransferSyntax(DcUid uid, DcCode refusal) {
  if (isTransferSyntaxUid(uid)) return kDcOk;
  int byteOrder = 0;
  return theDictionary().getEndian(uid, &byteOrder) == kDcOk ? kDcOk : refusal;
}

}  // namespace quillon
