// Which keys the directory records of a file set carry. Inside a record the elements stand in tag
// order, whatever order they are added in.
#pragma once

#include <memory>

#include "dicom/dir_rec.h"
#include "dicomobjects/dicom_util.h"
#include "fileset/model/patient_list.h"

namespace quillon {

std::unique_ptr<DcDirRec> MakePatientRecord(const CPatient& patient);
std::unique_ptr<DcDirRec> MakeStudyRecord(const CStudy& study);
std::unique_ptr<DcDirRec> MakeSeriesRecord(const CSeries& series);
std::unique_ptr<DcDirRec> MakeImageRecord(const CDicomObjectProperties& object);
// Of a report, presentation state or key object document, from the loaded file. Null for an object
// of another modality, and, with the sentence of what it lacks as the problem, for one that has no
// record.
std::unique_ptr<DcDirRec> MakeDocumentRecord(const CDicomObjectProperties& object, CDicomUtil& file,
                                             Text& problem);

}  // namespace quillon
