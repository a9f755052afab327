#include "file_set_creation.h"

#include <algorithm>
#include <string>

#include "dicomobjects/dicom_util.h"
#include "dicomobjects/documents.h"
#include "file_id_rules.h"
#include "path_join.h"
#include "platform/services.h"
#include "record_keys.h"
#include "source_guard.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kDicomDirName = OLESTR("DICOMDIR");

// Names that are given in the file set, and the digits that their counters have at least.
constexpr const OLECHAR* kObjectPrefix = OLESTR("QLN");
constexpr std::size_t kObjectDigits = 5;
constexpr const OLECHAR* kPatientPrefix = OLESTR("P");
constexpr const OLECHAR* kStudyPrefix = OLESTR("S");
constexpr const OLECHAR* kSeriesPrefix = OLESTR("E");
constexpr std::size_t kDirectoryDigits = 7;

// Who made the DICOMDIR: (0002,0012), (0002,0013) and (0002,0016).
constexpr std::string_view kImplementationClassUid = "1.2.840.987654.1.1";
constexpr std::string_view kImplementationVersionName = "QuillonV3,2,1,33";
constexpr std::string_view kSourceAeTitle = "QuillonDicomSCP";
static_assert(kImplementationClassUid.size() <= 64 && kImplementationVersionName.size() <= 16 &&
                  kSourceAeTitle.size() <= 16,
              "the values fit their VRs");

Text NumberedName(const OLECHAR* prefix, std::int64_t number, std::size_t digits) {
  const Text text = NumberText(number);
  Text name(prefix);
  if (text.size() < digits) name.append(digits - text.size(), OLESTR('0'));
  return name += text;
}

Text DirectoryBelow(TextView parent, const OLECHAR* prefix, std::size_t number) {
  Text directory(parent);
  directory += NumberedName(prefix, static_cast<std::int64_t>(number), kDirectoryDigits);
  return directory += OLESTR('\\');
}

}  // namespace

FileSetCreation::FileSetCreation(CPatientList& patients, CFileUtil& files, TextView rootDirectory,
                                 TextView objectDirectory, bool useHierarchy)
    : patients_(patients),
      files_(files),
      root_(rootDirectory),
      objectDirectory_(objectDirectory),
      useHierarchy_(useHierarchy) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

bool FileSetCreation::Run() {
  return ResolveDirectories() && CheckSources() && PrepareRoot() && BeginDicomDir() &&
         AddPatients() && WriteDicomDir();
}

bool FileSetCreation::ResolveDirectories() {
  if (!files_.ValidatePath(root_) || !files_.ValidatePath(objectDirectory_)) return FailAs(files_);
  if (!EndsInSeparator(root_) && !JoinPath(root_, OLESTR("\\"), *this)) return false;
  if (objectDirectory_.starts_with(OLESTR('\\')) || objectDirectory_.starts_with(OLESTR('/'))) {
    objectDirectory_.erase(0, 1);
  }
  if (!objectDirectory_.empty() && !EndsInSeparator(objectDirectory_) &&
      !JoinPath(objectDirectory_, OLESTR("\\"), *this)) {
    return false;
  }
  if (!CheckFileId(objectDirectory_, files_, *this)) return false;
  // In a File ID only "\" separates.
  std::replace(objectDirectory_.begin(), objectDirectory_.end(), OLESTR('/'), OLESTR('\\'));
  dicomDirPath_ = root_;
  return JoinPath(dicomDirPath_, kDicomDirName, *this);
}

bool FileSetCreation::CheckSources() {
  Text objects = root_;
  return JoinPath(objects, objectDirectory_, *this) &&
         CheckSourcesOutside(patients_, objects, dicomDirPath_, files_, *this);
}

bool FileSetCreation::PrepareRoot() {
  if (files_.PathExists(dicomDirPath_) && !files_.DeleteFile(dicomDirPath_)) return FailAs(files_);
  Text objects = root_;
  if (!JoinPath(objects, objectDirectory_, *this)) return false;
  return files_.CreateDirectoryTree(objects) || FailAs(files_);
}

bool FileSetCreation::BeginDicomDir() {
  dicomDir_.emplace(NarrowText(root_, FileSystemCodePage()).c_str());
  if (dicomDir_->initialCode() != kDcOk || dicomDir_->rootPath().empty()) {
    return Fail(kMsgCannotCreateDicomDirIn, {root_});
  }
  DcFileMetaInfo metaInfo = dicomDir_->fileMetaInfo();
  metaInfo.implementationClassUid = kImplementationClassUid;
  metaInfo.implementationVersionName = kImplementationVersionName;
  metaInfo.sourceAeTitle = kSourceAeTitle;
  dicomDir_->setFileMetaInfo(metaInfo);
  return true;
}

bool FileSetCreation::AddPatients() {
  for (std::size_t p = 0; p < patients_.GetCount(); ++p) {
    CPatient& patient = *patients_.At(p);
    at_.patient = &patient;
    DcDirRec* record = Attach(*dicomDir_, MakePatientRecord(patient));
    if (record == nullptr) return false;
    if (!AddStudies(patient, *record, DirectoryBelow({}, kPatientPrefix, p + 1))) return false;
  }
  return true;
}

bool FileSetCreation::AddStudies(CPatient& patient, DcDirRec& patientRecord,
                                 TextView patientDirectory) {
  CStudyList& studies = patient.Studies();
  for (std::size_t s = 0; s < studies.GetCount(); ++s) {
    CStudy& study = *studies.At(s);
    at_.study = &study;
    DcDirRec* record = Attach(patientRecord, MakeStudyRecord(study));
    if (record == nullptr) return false;
    if (!AddSeries(study, *record, DirectoryBelow(patientDirectory, kStudyPrefix, s + 1))) {
      return false;
    }
  }
  return true;
}

bool FileSetCreation::AddSeries(CStudy& study, DcDirRec& studyRecord, TextView studyDirectory) {
  CSeriesList& list = study.Series();
  for (std::size_t e = 0; e < list.GetCount(); ++e) {
    CSeries& series = *list.At(e);
    at_.series = &series;
    at_.directory = useHierarchy_ ? DirectoryBelow(studyDirectory, kSeriesPrefix, e + 1) : Text();
    DcDirRec* record = Attach(studyRecord, MakeSeriesRecord(series));
    if (record == nullptr || !AddObjects(series, *record)) return false;
  }
  return true;
}

bool FileSetCreation::AddObjects(CSeries& series, DcDirRec& seriesRecord) {
  const CDicomObjectList& images = series.Images();
  for (std::size_t i = 0; i < images.GetCount(); ++i) {
    keepsPatients_ = false;
    if (i == 0 && useHierarchy_ && !CreateSeriesDirectory()) return false;
    if (!AddObject(*images.At(i), seriesRecord)) return false;
  }
  return true;
}

bool FileSetCreation::CreateSeriesDirectory() {
  Text directory = root_;
  if (!JoinPath(directory, objectDirectory_, *this) || !JoinPath(directory, at_.directory, *this)) {
    return false;
  }
  return files_.CreateDirectoryTree(directory) || FailAs(files_);
}

bool FileSetCreation::AddObject(const CDicomObjectProperties& object, DcDirRec& seriesRecord) {
  Text fileId;
  Text path;
  if (!NameNextObject(fileId, path)) return false;
  if (!files_.MoveFile(path, object.FileName())) return FailAs(files_);
  auto made = MakeRecord(object, path);
  if (made == nullptr) {
    keepsPatients_ = true;
    return false;
  }
  DcDirRec* record = Attach(seriesRecord, std::move(made));
  if (record == nullptr) return false;
  if (record->setRefFile(NarrowText(fileId, CP_ACP).c_str()) != kDcOk) {
    return Fail(kMsgCannotSetImageReference,
                {fileId, at_.series->SeriesInstanceUid(), at_.study->StudyInstanceUid(),
                 at_.patient->UniqueId(), object.FileName()});
  }
  return true;
}

bool FileSetCreation::NameNextObject(Text& fileId, Text& path) {
  ++objectCount_;
  fileId = objectDirectory_;
  fileId += at_.directory;
  fileId += NumberedName(kObjectPrefix, objectCount_, kObjectDigits);
  if (!CheckFileId(fileId, files_, *this)) return false;
  path = root_;
  return JoinPath(path, fileId, *this);
}

std::unique_ptr<DcDirRec> FileSetCreation::MakeRecord(const CDicomObjectProperties& object,
                                                      const Text& path) {
  const Text& modality = object.Modality();
  if (modality == OLESTR("SR")) {
    return MakeDocumentRecord<CStructuredReport>(object, path, &MakeReportRecord);
  }
  if (modality == OLESTR("PR")) {
    return MakeDocumentRecord<CPresentation>(object, path, &MakePresentationRecord);
  }
  if (modality == OLESTR("KO")) {
    return MakeDocumentRecord<CKeyObjectDocument>(object, path, &MakeKeyObjectRecord);
  }
  return MakeImageRecord(object);
}

template <typename Reader>
std::unique_ptr<DcDirRec> FileSetCreation::MakeDocumentRecord(
    const CDicomObjectProperties& object, const Text& path,
    std::unique_ptr<DcDirRec> (*make)(const CDicomObjectProperties&, const Reader&, CDicomUtil&)) {
  CDicomUtil file;
  if (!file.ReadFile(path, /*deferPixelData=*/true)) {
    Fail(kMsgCannotReadDicomFile, {path});
    return nullptr;
  }
  file.SettleUnknownVrs();
  Reader reader;
  if (!reader.ReadFromDicom(file)) {
    FailAs(reader);
    return nullptr;
  }
  return make(object, reader, file);
}

bool FileSetCreation::WriteDicomDir() {
  keepsPatients_ = false;
  if (dicomDir_->write() == kDcOk) return true;
  // Half a DICOMDIR would pass for one.
  if (files_.PathExists(dicomDirPath_)) files_.DeleteFile(dicomDirPath_);
  return Fail(kMsgCannotCreateDicomDirIn, {root_});
}

DcDirRec* FileSetCreation::Attach(DcDirRec& parent, std::unique_ptr<DcDirRec> child) {
  DcDirRec* record = parent.addLower(std::move(child));
  if (record == nullptr) Fail(kMsgCannotCreateDicomDirIn, {root_});
  return record;
}

}  // namespace quillon
