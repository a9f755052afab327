// Adding files and directories: how one DICOM file finds its place in the patient list.
#include "dicomobjects/dicom_util.h"
#include "fileset/dicom_dir_processor.h"
#include "fileset/model/element_text.h"
#include "foundation/find_handle.h"
#include "path_join.h"

namespace quillon {

namespace {

constexpr DcTag kSopInstanceUid = 0x00080018;
constexpr DcTag kStudyInstanceUid = 0x0020000D;
constexpr DcTag kSeriesInstanceUid = 0x0020000E;

// The maker's systems name the frames of a split image by this root, a key, "." and the frame.
constexpr TextView kMakerRoot = OLESTR("1.2.840.987654.99.");

// False when the element cannot be read or has no value.
bool ReadKey(const DcElemList& dataSet, DcTag tag, Text& key) {
  return ReadElementText(dataSet, tag, key) == kDcOk && !key.empty();
}

// 0, or the message that says what is wrong with a UID of the maker's form.
UINT CheckMakerUid(TextView uid) {
  if (uid.size() <= kMakerRoot.size() || uid.substr(0, kMakerRoot.size()) != kMakerRoot) return 0;
  const TextView rest = uid.substr(kMakerRoot.size());
  const std::size_t lastDot = rest.rfind(OLESTR('.'));
  if (lastDot == 0) return kMsgImageInstanceUidInvalid;
  if (lastDot == rest.size() - 1) return kMsgInstanceUidInvalid;
  return 0;
}

}  // namespace

bool CDicomDirProcessor::AddFile(TextView fileName) {
  ClearIheLabel();
  if (!files_.ValidatePath(fileName)) return FailAs(files_);
  EnsurePatientList();
  return FileObject(fileName);
}

bool CDicomDirProcessor::AddDirectory(TextView directory, bool createAfterwards) {
  ClearIheLabel();
  Text start(directory);
  if (start.empty() && !files_.GetCurrentDirectory(start)) return FailAs(files_);
  if (!files_.ValidatePath(start)) return FailAs(files_);
  EnsurePatientList();
  if (!WalkDirectory(start)) return false;
  return !createAfterwards || CreateDicomFileSet({}, {});
}

bool CDicomDirProcessor::WalkDirectory(const Text& directory) {
  if (directory.size() > kMaxPathChars) {
    return Fail(kMsgPathNameTooLong, {directory, kMaxPathCharsText});
  }
  Text pattern(directory);
  if (!JoinBelow(pattern, OLESTR("*.*"), *this)) return false;
  FindHandle found(pattern);
  if (!found.IsOpen()) return Fail(kMsgSearchPatternInvalid, {pattern});
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry) || (IsDirectory(entry) && !allowAddHierarchyTree)) continue;
    if (!files_.ValidateName(entry.cFileName)) return FailAs(files_);
    Text path(directory);
    if (!JoinBelow(path, entry.cFileName, *this)) return false;
    if (!(IsDirectory(entry) ? WalkDirectory(path) : FileObject(path))) return false;
  } while (found.Next());
  return true;
}

bool CDicomDirProcessor::FileObject(TextView fileName) {
  CDicomUtil object;
  if (!object.ReadFile(fileName, /*deferPixelData=*/true)) {
    return Fail(kMsgCannotReadDicomInformation, {fileName});
  }
  object.SettleUnknownVrs();
  const DcElemList& dataSet = *object.GetElementList();
  if (!dataSet.contains(kStudyInstanceUid) || !dataSet.contains(kSeriesInstanceUid) ||
      !dataSet.contains(kSopInstanceUid)) {
    return true;
  }
  CStudy* study = FileIntoStudy(dataSet, fileName);
  if (study == nullptr) return false;
  CSeries* series = FileIntoSeries(dataSet, *study, fileName);
  if (series == nullptr) return false;

  const Text& seriesUid = series->SeriesInstanceUid();
  const Text& studyUid = study->StudyInstanceUid();
  Text uid;
  if (!ReadKey(dataSet, kSopInstanceUid, uid)) {
    return Fail(kMsgImageSopInstanceUidMissing, {fileName, seriesUid, studyUid, uniquePatientId_});
  }
  if (const UINT message = CheckMakerUid(uid); message != 0) return Fail(message, {fileName});
  CDicomObjectList& images = series->Images();
  if (images.FindBySopInstanceUid(uid) != nullptr) return true;
  // Lenient: a file set may hold objects that lack what an image viewer would want.
  if (!images.AddObject(object, /*instanceUidOptional=*/true) ||
      images.FindBySopInstanceUid(uid) == nullptr) {
    return Fail(kMsgCannotAddImage, {uid, seriesUid, studyUid, uniquePatientId_, fileName});
  }
  return true;
}

CStudy* CDicomDirProcessor::FileIntoStudy(const DcElemList& dataSet, TextView fileName) {
  CPatient* patient = patients_->FindByUniqueId(uniquePatientId_);
  if (patient == nullptr && patients_->AddPatient(&dataSet, uniquePatientId_)) {
    patient = patients_->FindByUniqueId(uniquePatientId_);
  }
  if (patient == nullptr) {
    Fail(kMsgCannotAddPatient, {fileName, uniquePatientId_});
    return nullptr;
  }
  Text uid;
  if (!ReadKey(dataSet, kStudyInstanceUid, uid)) {
    Fail(kMsgCannotReadStudy, {uniquePatientId_, fileName});
    return nullptr;
  }
  CStudyList& studies = patient->Studies();
  CStudy* study = studies.FindByStudyInstanceUid(uid);
  if (study == nullptr && studies.AddStudy(&dataSet)) study = studies.FindByStudyInstanceUid(uid);
  if (study == nullptr) Fail(kMsgCannotAddStudy, {uid, uniquePatientId_, fileName});
  return study;
}

CSeries* CDicomDirProcessor::FileIntoSeries(const DcElemList& dataSet, CStudy& study,
                                            TextView fileName) {
  const Text& studyUid = study.StudyInstanceUid();
  Text uid;
  if (!ReadKey(dataSet, kSeriesInstanceUid, uid)) {
    Fail(kMsgCannotReadSeries, {studyUid, uniquePatientId_, fileName});
    return nullptr;
  }
  CSeriesList& list = study.Series();
  CSeries* series = list.FindBySeriesInstanceUid(uid);
  if (series == nullptr && list.AddSeries(&dataSet)) series = list.FindBySeriesInstanceUid(uid);
  if (series == nullptr) Fail(kMsgCannotAddSeries, {uid, studyUid, uniquePatientId_, fileName});
  return series;
}

}  // namespace quillon
