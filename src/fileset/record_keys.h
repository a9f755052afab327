// Which keys the directory records of a file set carry. Inside a record the elements stand in tag
// order, whatever order they are added in.
#pragma once

#include <memory>

#include "dicom/dir_rec.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/documents.h"
#include "fileset/model/patient_list.h"

namespace quillon {

std::unique_ptr<DcDirRec> MakePatientRecord(const CPatient& patient);
std::unique_ptr<DcDirRec> MakeStudyRecord(const CStudy& study);
std::unique_ptr<DcDirRec> MakeSeriesRecord(const CSeries& series);
std::unique_ptr<DcDirRec> MakeImageRecord(const CDicomObjectProperties& object);
// The three kinds of document: attributes from the reader, sequences copied from the loaded file.
std::unique_ptr<DcDirRec> MakeReportRecord(const CDicomObjectProperties& object,
                                           const CStructuredReport& report, CDicomUtil& file);
std::unique_ptr<DcDirRec> MakePresentationRecord(const CDicomObjectProperties& object,
                                                 const CPresentation& presentation,
                                                 CDicomUtil& file);
std::unique_ptr<DcDirRec> MakeKeyObjectRecord(const CDicomObjectProperties& object,
                                              const CKeyObjectDocument& document, CDicomUtil& file);

}  // namespace quillon
