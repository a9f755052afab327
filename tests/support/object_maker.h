// Makes small valid DICOM objects of the kinds that a file set holds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/dicom_bytes.h"

namespace quillon::test {

enum class ObjectKind { Ct, Mr, Cr, Sr, Presentation, KeyObject };

// What one object says. UIDs are derived from the numbers unless given.
struct ObjectDescription {
  ObjectKind kind = ObjectKind::Ct;
  int patient = 1;
  int study = 1;   // within the patient
  int series = 1;  // within the study
  int instance = 1;
  std::string patientName;  // "PATIENT^<n>" when empty
  std::string patientId;    // "ID<n>" when empty
  std::string patientBirthDate = "19500102";
  std::string patientSex = "O";
  std::string patientAge = "059Y";
  std::string studyDate = "20090305";
  std::string studyUid, seriesUid, instanceUid;
  std::string studyDescription = "Sample study";
  std::string verificationFlag = "UNVERIFIED";       // SR
  std::string relationshipType = "HAS CONCEPT MOD";  // SR, KO: of the first content item
  int rows = 16, columns = 16;                       // images
  int extraElements = 0;  // more header elements, to reach a realistic count
  Syntax syntax = Syntax::ExplicitLittle;
};

std::string studyUidOf(const ObjectDescription& description);
std::string seriesUidOf(const ObjectDescription& description);
std::string instanceUidOf(const ObjectDescription& description);
std::string sopClassUidOf(ObjectKind kind);

// A whole DICOM file.
Bytes makeObject(const ObjectDescription& description);
void makeObjectFile(const std::filesystem::path& file, const ObjectDescription& description);

// A directory tree of objects that scripts/demo.sh and tests use: two patients, of which the first
// has two studies; CT, MR and CR series; an SR, a presentation state and a key object document.
// Answers the files in the order in which they were made.
std::vector<std::filesystem::path> makeSampleTree(const std::filesystem::path& directory);

}  // namespace quillon::test
