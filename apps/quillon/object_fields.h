// What the program itself wants to know of a DICOM file before it hands it to the media object.
#pragma once

#include <string>

namespace quillon::cli {

// Values as in the file, without padding; empty when absent.
struct ObjectFields {
  std::string mediaSopClassUid;
  std::string mediaSopInstanceUid;
  std::string transferSyntaxUid;
  std::string instanceUid;
  std::string studyDate;
  std::string modality;
  std::string patientName;
  std::string patientId;
  std::string patientBirthDate;
  std::string studyUid;
  std::string seriesUid;
  bool namesObject = false;  // has a Study, Series and SOP Instance UID element
};

// False when the data set cannot be read; what the file meta information says is there all the
// same. `path` is in the file-system code page.
bool readObjectFields(const std::string& path, ObjectFields& fields);

}  // namespace quillon::cli
