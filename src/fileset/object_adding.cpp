#include "object_adding.h"

#include "dicom/tags.h"
#include "dicomobjects/dicom_file_facts.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/instance_uid.h"
#include "fileset/model/element_text.h"
#include "foundation/find_handle.h"
#include "path_join.h"
#include "platform/services.h"
#include "record_keys.h"

namespace quillon {

namespace {

// False when the element cannot be read or has no value.
bool ReadKey(const DcElemList& dataSet, DcTag tag, Text& key) {
  return ReadElementText(dataSet, tag, key) == kDcOk && !key.empty();
}

// 0, or the message that says what is wrong with a UID of the maker's form.
UINT CheckMakerUid(TextView uid) {
  if (!uid.starts_with(kMakerUidRoot) || uid.size() == kMakerUidRoot.size()) return 0;
  const TextView rest = uid.substr(kMakerUidRoot.size());
  const std::size_t lastDot = rest.rfind(OLESTR('.'));
  if (lastDot == 0) return kMsgImageInstanceUidInvalid;
  if (lastDot == rest.size() - 1) return kMsgInstanceUidInvalid;
  return 0;
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
  facts->document = MakeDocumentRecord(object, file, facts->documentProblem);
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

// Takes back what a list gained, unless it is kept. What hangs below the new item goes with it, so
// only the topmost list that grew counts.
class ObjectAdding::ListGrowth {
 public:
  ListGrowth() = default;
  ~ListGrowth() {
    if (grown_ != nullptr) grown_->RemoveLast();
  }
  ListGrowth(const ListGrowth&) = delete;
  ListGrowth& operator=(const ListGrowth&) = delete;

  // Answers what the list was given; null when it did not grow.
  template <typename Item>
  Item* Note(CBaseList& list, Item* added) {
    if (added != nullptr && grown_ == nullptr) grown_ = &list;
    return added;
  }
  void Keep() { grown_ = nullptr; }

 private:
  CBaseList* grown_ = nullptr;
};

bool ObjectAdding::AddFile(TextView fileName) {
  AddedFile told;
  return ReadAndFile(fileName, nullptr, told);
}

bool ObjectAdding::AddFitFile(TextView fileName, const FitnessRules& rules, AddedFile& told) {
  return ReadAndFile(fileName, &rules, told);
}

bool ObjectAdding::AddDirectory(const Text& directory, bool isRecursive) {
  if (directory.size() > kMaxPathChars) {
    return errors_.Fail(kMsgPathNameTooLong, {directory, kMaxPathCharsText});
  }
  Text pattern(directory);
  if (!JoinBelow(pattern, OLESTR("*.*"), errors_)) return false;
  FindHandle found(pattern);
  if (!found.IsOpen()) return errors_.Fail(kMsgSearchPatternInvalid, {pattern});
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry) || (IsDirectory(entry) && !isRecursive)) continue;
    if (!files_.ValidateName(entry.cFileName)) return errors_.FailAs(files_);
    Text path(directory);
    if (!JoinBelow(path, entry.cFileName, errors_)) return false;
    if (!(IsDirectory(entry) ? AddDirectory(path, isRecursive) : AddFile(path))) return false;
  } while (found.Next());
  // A share that went away in the middle has more files than were seen.
  return !found.EndedEarly() || errors_.Fail(kMsgSearchPatternInvalid, {pattern});
}

bool ObjectAdding::ReadAndFile(TextView fileName, const FitnessRules* rules, AddedFile& told) {
  const bool mustBeFit = rules != nullptr;
  CDicomUtil object;
  const bool isRead = IsNarrowable(fileName) && object.ReadFile(fileName, /*deferPixelData=*/true);
  if (mustBeFit && (isRead || object.GetReading().sizeBytes != 0)) {
    told.outcome = JudgeFitness(object);
    if (told.outcome != AddOutcome::Added) return false;
    told.outcome = AddOutcome::Refused;
  }
  if (!isRead || object.LostElements()) {
    return errors_.Fail(kMsgCannotReadDicomInformation, {fileName});
  }
  object.SettleUnknownVrs();
  const DcElemList& dataSet = *object.GetElementList();
  if (!dataSet.contains(tags::kStudyInstanceUid) || !dataSet.contains(tags::kSeriesInstanceUid) ||
      !dataSet.contains(tags::kSopInstanceUid)) {
    // What was read of a deflated data set are not its elements.
    const bool isDeflated =
        object.GetReading().metaInfo.transferSyntax == DcUid::DeflatedExplicitLittleEndian;
    told.outcome = isDeflated ? AddOutcome::Deflated : AddOutcome::NamesNoObject;
    return !mustBeFit || !isDeflated;
  }
  told.isPixelDataCut = object.IsPixelDataCut();
  if (mustBeFit) {
    Text name;
    Text id;
    // What cannot be read of them fails the patient's own reading below.
    static_cast<void>(ReadElementText(dataSet, tags::kPatientsName, name));
    static_cast<void>(ReadElementText(dataSet, tags::kPatientId, id));
    patientId_ = rules->patientKey(name, id);
    if (rules->refusesCutFiles && told.isPixelDataCut) {
      told.outcome = AddOutcome::PixelDataCut;
      return false;
    }
  }
  return FileObject(object, fileName, mustBeFit, told);
}

bool ObjectAdding::FileObject(CDicomUtil& object, TextView fileName, bool mustBeFit,
                              AddedFile& told) {
  const DcElemList& dataSet = *object.GetElementList();
  // What the lists gain on the way goes again when the object cannot be added after all: a patient
  // without an object would be named on the medium.
  ListGrowth growth;
  CStudy* const study = StudyOf(dataSet, fileName, growth);
  if (study == nullptr) return false;
  CSeries* const series = SeriesOf(dataSet, *study, fileName, growth);
  if (series == nullptr) return false;

  const Text& seriesUid = series->SeriesInstanceUid();
  const Text& studyUid = study->StudyInstanceUid();
  Text uid;
  if (!ReadKey(dataSet, tags::kSopInstanceUid, uid)) {
    return errors_.Fail(kMsgImageSopInstanceUidMissing,
                        {fileName, seriesUid, studyUid, patientId_});
  }
  if (const UINT message = CheckMakerUid(uid); message != 0) {
    return errors_.Fail(message, {fileName});
  }
  CDicomObjectList& images = series->Images();
  if (const CDicomObjectProperties* first = images.FindBySopInstanceUid(uid); first != nullptr) {
    told.outcome = AddOutcome::AlreadyAdded;
    told.firstFile = first->FileName();
    return true;
  }
  // Lenient: a file set may hold objects that lack what an image viewer would want.
  CDicomObjectProperties* const added =
      growth.Note(images, images.AddObject(object, /*instanceUidOptional=*/true));
  if (added == nullptr || added->InstanceUid() != uid) {
    return errors_.Fail(kMsgCannotAddImage, {uid, seriesUid, studyUid, patientId_, fileName});
  }
  auto facts = FactsOf(object, *added);
  if (mustBeFit && !facts->documentProblem.empty()) {
    errors_.SetErrorMessage(facts->documentProblem);
    return false;
  }
  added->SetFacts(std::move(facts));
  growth.Keep();
  told.outcome = AddOutcome::Added;
  return true;
}

CStudy* ObjectAdding::StudyOf(const DcElemList& dataSet, TextView fileName, ListGrowth& growth) {
  CPatient* patient = patients_.Find(patientId_);
  if (patient == nullptr) patient = growth.Note(patients_, patients_.Add(&dataSet, patientId_));
  if (patient == nullptr) {
    errors_.Fail(kMsgCannotAddPatient, {fileName, patientId_});
    return nullptr;
  }
  Text uid;
  if (!ReadKey(dataSet, tags::kStudyInstanceUid, uid)) {
    errors_.Fail(kMsgCannotReadStudy, {patientId_, fileName});
    return nullptr;
  }
  CStudyList& studies = patient->Studies();
  CStudy* study = studies.Find(uid);
  if (study == nullptr) study = growth.Note(studies, studies.Add(&dataSet));
  if (study == nullptr) errors_.Fail(kMsgCannotAddStudy, {uid, patientId_, fileName});
  return study;
}

CSeries* ObjectAdding::SeriesOf(const DcElemList& dataSet, CStudy& study, TextView fileName,
                                ListGrowth& growth) {
  const Text& studyUid = study.StudyInstanceUid();
  Text uid;
  if (!ReadKey(dataSet, tags::kSeriesInstanceUid, uid)) {
    errors_.Fail(kMsgCannotReadSeries, {studyUid, patientId_, fileName});
    return nullptr;
  }
  CSeriesList& list = study.Series();
  CSeries* series = list.Find(uid);
  if (series == nullptr) series = growth.Note(list, list.Add(&dataSet));
  if (series == nullptr) errors_.Fail(kMsgCannotAddSeries, {uid, studyUid, patientId_, fileName});
  return series;
}

}  // namespace quillon
