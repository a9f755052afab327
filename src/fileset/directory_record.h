// Directory records as the field reads them today: the keys are the elements of the object, byte by
// byte, with the character set that they are written in.
#pragma once

#include <string_view>
#include <vector>

#include "dicomobjects/dicom_file_facts.h"
#include "dicomobjects/dicom_util.h"
#include "fileset/record_rows.h"

namespace quillon {

// With those of the row's keys that the file has. declaredCharacterSet: stands for the file's own
// (0008,0005); empty: it has the right one.
KeptRecord CopyRecord(const RecordRow& row, CDicomUtil& file,
                      std::string_view declaredCharacterSet);

// The keys of the row that the record lacks a value of, Specific Character Set among them when the
// others go beyond ASCII.
std::vector<DcTag> MissingKeys(const RecordRow& row, const DcDirRec& record);

// Gives a record empty elements for the keys that must be there and are not.
void AddEmptyKeys(const RecordRow& row, DcDirRec& record);

}  // namespace quillon
