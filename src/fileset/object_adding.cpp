// Adding files and directories: how one DICOM file finds its place in the patient list. A file is
// read here and never again: what its directory record and the checks of a creation need is kept.
#include "dicomobjects/dicom_file_facts.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/documents.h"
#include "file_set_plan.h"
#include "fileset/dicom_dir_processor.h"
#include "fileset/model/element_text.h"
#include "foundation/find_handle.h"
#include "path_join.h"
#include "platform/services.h"
#include "record_keys.h"

namespace quillon {

// Takes back what a list gained, unless it is kept. What hangs below the new item goes with it, so
// only the topmost list that grew counts.
class ListGrowth {
 public:
  ListGrowth() = default;
  ~ListGrowth() {
    if (grown_ != nullptr) grown_->RemoveLast();
  }
  ListGrowth(const ListGrowth&) = delete;
  ListGrowth& operator=(const ListGrowth&) = delete;

  void Note(CBaseList& list) {
    if (grown_ == nullptr) grown_ = &list;
  }
  void Keep() { grown_ = nullptr; }

 private:
  CBaseList* grown_ = nullptr;
};

namespace {

constexpr DcTag kSopInstanceUid = 0x00080018;
constexpr DcTag kPatientName = 0x00100010;
constexpr DcTag kPatientId = 0x00100020;
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

// Reads what the record of a document needs, or why it cannot have one.
template <typename Document>
void TakeDocument(CDicomUtil& file, const CDicomObjectProperties& object, DicomFileFacts& facts,
                  std::unique_ptr<DcDirRec> (*make)(const CDicomObjectProperties&, const Document&,
                                                    CDicomUtil&)) {
  Document document;
  if (document.ReadFromDicom(file)) {
    facts.document = make(object, document, file);
  } else {
    facts.documentProblem = document.ErrorMessage();
  }
}

std::shared_ptr<const DicomFileFacts> FactsOf(CDicomUtil& file,
                                              const CDicomObjectProperties& object) {
  auto facts = std::make_shared<DicomFileFacts>();
  const DcFileReading& reading = file.GetReading();
  const DcFileMetaInfo& metaInfo = reading.metaInfo;
  facts->sopClassUid = metaInfo.sopClassUid;
  facts->sopInstanceUid = metaInfo.sopInstanceUid;
  facts->transferSyntaxUid = metaInfo.transferSyntaxUid;
  facts->transferSyntax = metaInfo.transferSyntax;
  facts->stamp = {reading.sizeBytes, reading.lastWriteTime};
  const Text& modality = object.Modality();
  if (modality == OLESTR("SR")) {
    TakeDocument<CStructuredReport>(file, object, *facts, &MakeReportRecord);
  } else if (modality == OLESTR("PR")) {
    TakeDocument<CPresentation>(file, object, *facts, &MakePresentationRecord);
  } else if (modality == OLESTR("KO")) {
    TakeDocument<CKeyObjectDocument>(file, object, *facts, &MakeKeyObjectRecord);
  }
  return facts;
}

// A name that the toolkit's code page cannot hold would lead it to another file.
bool IsNarrowable(TextView fileName) {
  return WidenText(NarrowText(fileName, FileSystemCodePage()), FileSystemCodePage()) == fileName;
}

// A file that a creation would refuse, as far as that shows in the file.
AddOutcome JudgeFitness(const CDicomUtil& file) {
  const DcFileMetaInfo& metaInfo = file.GetReading().metaInfo;
  if (!file.GetReading().hasMagic) return AddOutcome::NotDicom;
  if (metaInfo.sopClass == DcUid::MediaStorageDirectory) return AddOutcome::OtherDirectory;
  if (metaInfo.sopClassUid.empty() || metaInfo.sopInstanceUid.empty() ||
      metaInfo.transferSyntaxUid.empty()) {
    return AddOutcome::IncompleteMetaInfo;
  }
  return AddOutcome::Added;
}

}  // namespace

bool CDicomDirProcessor::AddFile(TextView fileName) {
  ClearIheLabel();
  if (!files_.ValidatePath(fileName)) return FailAs(files_);
  EnsurePatientList();
  AddedFile told;
  return FileObject(fileName, nullptr, told);
}

bool CDicomDirProcessor::AddFitFile(TextView fileName, const FitnessRules& rules, AddedFile& told) {
  ClearIheLabel();
  told = AddedFile{};
  told.outcome = AddOutcome::Refused;
  if (!files_.ValidatePath(fileName)) return FailAs(files_);
  EnsurePatientList();
  return FileObject(fileName, &rules, told);
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
    AddedFile told;
    if (!(IsDirectory(entry) ? WalkDirectory(path) : FileObject(path, nullptr, told))) return false;
  } while (found.Next());
  // A share that went away in the middle has more files than were seen.
  return !found.EndedEarly() || Fail(kMsgSearchPatternInvalid, {pattern});
}

bool CDicomDirProcessor::FileObject(TextView fileName, const FitnessRules* rules, AddedFile& told) {
  plan_.reset();
  const bool mustBeFit = rules != nullptr;
  CDicomUtil object;
  const bool isRead = IsNarrowable(fileName) && object.ReadFile(fileName, /*deferPixelData=*/true);
  if (mustBeFit && (isRead || object.GetReading().sizeBytes != 0)) {
    told.outcome = JudgeFitness(object);
    if (told.outcome != AddOutcome::Added) return false;
    told.outcome = AddOutcome::Refused;
  }
  if (!isRead || object.LostElements()) {
    return Fail(kMsgCannotReadDicomInformation, {fileName});
  }
  object.SettleUnknownVrs();
  const DcElemList& dataSet = *object.GetElementList();
  if (!dataSet.contains(kStudyInstanceUid) || !dataSet.contains(kSeriesInstanceUid) ||
      !dataSet.contains(kSopInstanceUid)) {
    // What was read of a deflated data set are not its elements.
    const bool isDeflated =
        object.GetReading().metaInfo.transferSyntax == DcUid::DeflatedExplicitLittleEndian;
    told.outcome = isDeflated ? AddOutcome::Deflated : AddOutcome::NamesNoObject;
    return !mustBeFit || !isDeflated;
  }
  if (mustBeFit) {
    Text name;
    Text id;
    // What cannot be read of them fails the patient's own reading below.
    static_cast<void>(ReadElementText(dataSet, kPatientName, name));
    static_cast<void>(ReadElementText(dataSet, kPatientId, id));
    uniquePatientId_ = rules->patientKey(name, id);
  }
  told.isPixelDataCut = object.IsPixelDataCut();
  if (mustBeFit && rules->refusesCutFiles && told.isPixelDataCut) {
    told.outcome = AddOutcome::PixelDataCut;
    return false;
  }
  return FileIntoSeries(object, fileName, mustBeFit, told);
}

bool CDicomDirProcessor::FileIntoSeries(CDicomUtil& object, TextView fileName, bool mustBeFit,
                                        AddedFile& told) {
  const DcElemList& dataSet = *object.GetElementList();
  // What the lists gain on the way goes again when the object cannot be added after all: a patient
  // without an object would be named on the medium.
  ListGrowth growth;
  CStudy* study = FindOrAddStudy(dataSet, fileName, growth);
  if (study == nullptr) return false;
  CSeries* series = FindOrAddSeries(dataSet, *study, fileName, growth);
  if (series == nullptr) return false;

  const Text& seriesUid = series->SeriesInstanceUid();
  const Text& studyUid = study->StudyInstanceUid();
  Text uid;
  if (!ReadKey(dataSet, kSopInstanceUid, uid)) {
    return Fail(kMsgImageSopInstanceUidMissing, {fileName, seriesUid, studyUid, uniquePatientId_});
  }
  if (const UINT message = CheckMakerUid(uid); message != 0) return Fail(message, {fileName});
  CDicomObjectList& images = series->Images();
  if (const CDicomObjectProperties* first = images.FindBySopInstanceUid(uid); first != nullptr) {
    told.outcome = AddOutcome::AlreadyAdded;
    told.firstFile = first->FileName();
    return true;
  }
  // Lenient: a file set may hold objects that lack what an image viewer would want.
  const bool isAppended = images.AddObject(object, /*instanceUidOptional=*/true);
  if (isAppended) growth.Note(images);
  CDicomObjectProperties* added = isAppended ? images.FindBySopInstanceUid(uid) : nullptr;
  if (added == nullptr) {
    return Fail(kMsgCannotAddImage, {uid, seriesUid, studyUid, uniquePatientId_, fileName});
  }
  auto facts = FactsOf(object, *added);
  if (mustBeFit && !facts->documentProblem.empty()) {
    SetErrorMessage(facts->documentProblem);
    return false;
  }
  added->SetFacts(std::move(facts));
  growth.Keep();
  told.outcome = AddOutcome::Added;
  return true;
}

CStudy* CDicomDirProcessor::FindOrAddStudy(const DcElemList& dataSet, TextView fileName,
                                           ListGrowth& growth) {
  CPatient* patient = patients_->FindByUniqueId(uniquePatientId_);
  if (patient == nullptr && patients_->AddPatient(&dataSet, uniquePatientId_)) {
    growth.Note(*patients_);
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
  if (study == nullptr && studies.AddStudy(&dataSet)) {
    growth.Note(studies);
    study = studies.FindByStudyInstanceUid(uid);
  }
  if (study == nullptr) Fail(kMsgCannotAddStudy, {uid, uniquePatientId_, fileName});
  return study;
}

CSeries* CDicomDirProcessor::FindOrAddSeries(const DcElemList& dataSet, CStudy& study,
                                             TextView fileName, ListGrowth& growth) {
  const Text& studyUid = study.StudyInstanceUid();
  Text uid;
  if (!ReadKey(dataSet, kSeriesInstanceUid, uid)) {
    Fail(kMsgCannotReadSeries, {studyUid, uniquePatientId_, fileName});
    return nullptr;
  }
  CSeriesList& list = study.Series();
  CSeries* series = list.FindBySeriesInstanceUid(uid);
  if (series == nullptr && list.AddSeries(&dataSet)) {
    growth.Note(list);
    series = list.FindBySeriesInstanceUid(uid);
  }
  if (series == nullptr) Fail(kMsgCannotAddSeries, {uid, studyUid, uniquePatientId_, fileName});
  return series;
}

}  // namespace quillon
