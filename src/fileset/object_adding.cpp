#include "object_adding.h"

#include <algorithm>
#include <array>
#include <optional>

#include "charset/character_set.h"
#include "dicom/tags.h"
#include "dicomobjects/decoded_text.h"
#include "dicomobjects/dicom_file_facts.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/instance_uid.h"
#include "directory_record.h"
#include "fileset/model/element_text.h"
#include "fileset/object_selection.h"
#include "foundation/find_handle.h"
#include "kept_elements.h"
#include "key_inventor.h"
#include "path_join.h"
#include "platform/read_ahead.h"
#include "platform/services.h"
#include "profile_watch.h"
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

// A name that the toolkit's code page cannot hold would lead it to another file.
bool IsNarrowable(TextView fileName) {
  return WidenText(NarrowText(fileName, FileSystemCodePage()), FileSystemCodePage()) == fileName;
}

// What cannot be read is empty.
ObjectPlace PlaceOf(const DcElemList& dataSet) {
  ObjectPlace place;
  static_cast<void>(ReadElementText(dataSet, tags::kStudyInstanceUid, place.studyUid));
  static_cast<void>(ReadElementText(dataSet, tags::kSeriesInstanceUid, place.seriesUid));
  static_cast<void>(ReadElementText(dataSet, tags::kModality, place.modality));
  for (const DcTag tag :
       {tags::kStudyDate, tags::kSeriesDate, tags::kAcquisitionDate, tags::kContentDate}) {
    static_cast<void>(ReadElementText(dataSet, tag, place.date));
    if (!place.date.empty()) break;
  }
  std::erase(place.date, OLESTR('.'));  // of the dates of old
  return place;
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

struct ObjectAdding::Source {
  CDicomUtil& file;
  TextView fileName;
  // With the practice of today; else texts are read in the platform's code page.
  std::optional<CharacterSet> characterSet;

  [[nodiscard]] const DcElemList& DataSet() const { return *file.GetElementList(); }
  [[nodiscard]] const CharacterSet* Set() const { return characterSet ? &*characterSet : nullptr; }
  [[nodiscard]] NodeSource Texts() const { return {&DataSet(), Set()}; }
};

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
  struct Entry {
    Text name;
    bool isDirectory;
  };
  std::vector<Entry> entries;
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry) || (IsDirectory(entry) && !isRecursive)) continue;
    entries.push_back({entry.cFileName, IsDirectory(entry)});
  } while (found.Next());
  ReadAhead ahead(entries.size(), [&](std::size_t i) {
    return entries[i].isDirectory ? Text() : directory + OLESTR("\\") + entries[i].name;
  });
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!files_.ValidateName(entries[i].name)) return errors_.FailAs(files_);
    Text path(directory);
    if (!JoinBelow(path, entries[i].name, errors_)) return false;
    if (entries[i].isDirectory) {
      if (!AddDirectory(path, isRecursive)) return false;
      continue;
    }
    const ReadAhead::Turn turn(ahead, i);
    if (!AddFile(path)) return false;
  }
  // A share that went away in the middle has more files than were seen.
  return !found.EndedEarly() || errors_.Fail(kMsgSearchPatternInvalid, {pattern});
}

bool ObjectAdding::ReadAndFile(TextView fileName, const FitnessRules* rules, AddedFile& told) {
  const bool mustBeFit = rules != nullptr;
  CDicomUtil object;
  const DcTagSet& kept = watch_ == nullptr ? KeptElements() : watch_->Elements();
  const bool isRead =
      IsNarrowable(fileName) && object.ReadFile(fileName, /*deferPixelData=*/true, &kept);
  if (mustBeFit && (isRead || object.GetReading().file.sizeBytes != 0)) {
    told.outcome = JudgeFitness(object);
    if (told.outcome != AddOutcome::Added) return false;
    told.outcome = AddOutcome::Refused;
  }
  if (!isRead || object.LostElements()) {
    return errors_.Fail(kMsgCannotReadDicomInformation, {fileName});
  }
  object.SettleUnknownVrs();
  const DcElemList& dataSet = *object.GetElementList();
  const bool hasSelection =
      mustBeFit && rules->selection != nullptr && !rules->selection->TakesAll();
  Source source{object, fileName, std::nullopt};
  if (options_.currentPractice) {
    source.characterSet = options_.characterSet.empty() ? CharacterSetOf(dataSet)
                                                        : CharacterSet(options_.characterSet);
  }
  if (options_.currentPractice && dataSet.contains(tags::kSopInstanceUid)) {
    const RecordRow& row = RecordRowOf(object.GetReading().metaInfo.sopClassUid);
    if (IsTopLevel(row.type)) {
      if (hasSelection) {
        told.outcome = AddOutcome::NotSelected;
        return true;
      }
      const std::array rows{&row};
      return (!mustBeFit || !rules->refusesMissingKeys || HasKeysOf(rows, source, told)) &&
             FileTopLevelObject(source, told);
    }
  }
  if (!dataSet.contains(tags::kStudyInstanceUid) || !dataSet.contains(tags::kSeriesInstanceUid) ||
      !dataSet.contains(tags::kSopInstanceUid)) {
    // What was read of a deflated data set are not its elements.
    const bool isDeflated =
        object.GetReading().metaInfo.transferSyntax == DcUid::DeflatedExplicitLittleEndian;
    told.outcome = isDeflated ? AddOutcome::Deflated : AddOutcome::NamesNoObject;
    return !mustBeFit || !isDeflated;
  }
  if (hasSelection && !rules->selection->Takes(PlaceOf(dataSet))) {
    told.outcome = AddOutcome::NotSelected;
    return true;
  }
  told.isPixelDataCut = object.IsPixelDataCut();
  return (!mustBeFit || ApplyRules(source, *rules, told)) && FileObject(source, mustBeFit, told);
}

bool ObjectAdding::ApplyRules(const Source& source, const FitnessRules& rules, AddedFile& told) {
  Text name;
  Text id;
  // What cannot be read of them fails the patient's own reading below.
  static_cast<void>(ReadElementText(source.DataSet(), tags::kPatientsName, name, source.Set()));
  static_cast<void>(ReadElementText(source.DataSet(), tags::kPatientId, id, source.Set()));
  patientId_ = rules.patientKey(name, id);
  if (rules.refusesCutFiles && told.isPixelDataCut) {
    told.outcome = AddOutcome::PixelDataCut;
    return false;
  }
  if (!rules.refusesMissingKeys || !options_.currentPractice) return true;
  const std::array rows{&RecordRowOf(DcDirRecType::Patient), &RecordRowOf(DcDirRecType::Study),
                        &RecordRowOf(DcDirRecType::Series),
                        &RecordRowOf(source.file.GetReading().metaInfo.sopClassUid)};
  return HasKeysOf(rows, source, told);
}

bool ObjectAdding::HasKeysOf(std::span<const RecordRow* const> rows, const Source& source,
                             AddedFile& told) const {
  for (const RecordRow* row : rows) {
    const KeptRecord kept = CopyRecord(*row, source.file, options_.characterSet);
    std::ranges::copy(kept.missingKeys, std::back_inserter(told.missingKeys));
  }
  if (told.missingKeys.empty()) return true;
  told.outcome = AddOutcome::KeysMissing;
  return false;
}

bool ObjectAdding::FileTopLevelObject(const Source& source, AddedFile& told) {
  CDicomObjectList& objects = patients_.TopLevelObjects();
  Text uid;
  if (!ReadKey(source.DataSet(), tags::kSopInstanceUid, uid)) {
    return errors_.Fail(kMsgCannotReadDicomInformation, {source.fileName});
  }
  if (const CDicomObjectProperties* first = objects.FindBySopInstanceUid(uid); first != nullptr) {
    told.outcome = AddOutcome::AlreadyAdded;
    told.firstFile = first->FileName();
    return true;
  }
  ListGrowth growth;
  CDicomObjectProperties* const added =
      growth.Note(objects, objects.AddObject(source.file, /*instanceUidOptional=*/true));
  if (added == nullptr) return errors_.Fail(kMsgCannotReadDicomInformation, {source.fileName});
  added->SetFacts(FactsOfLast(objects, source));
  if (watch_ != nullptr) {
    watch_->Look(added->SharedFileName(), source.file.GetReading().metaInfo, source.DataSet());
  }
  growth.Keep();
  told.outcome = AddOutcome::Added;
  return true;
}

const RecordRow& ObjectAdding::RowOf(const RecordRow& row) const {
  return watch_ == nullptr ? row : watch_->RowOf(row);
}

void ObjectAdding::KeepRecord(CRecordedItem& node, DcDirRecType type, const Source& source) {
  if (!options_.currentPractice) {
    node.SetCharacterSetOfBytes(CharacterSetOf(source.DataSet()).Terms());
    return;
  }
  KeptRecord kept = CopyRecord(RowOf(RecordRowOf(type)), source.file, options_.characterSet);
  if (options_.inventsMissingKeys) TakeOtherTimes(*kept.record, source.DataSet(), kept.missingKeys);
  node.SetRecord(std::move(kept), source.fileName);
}

std::shared_ptr<const DicomFileFacts> ObjectAdding::FactsOfLast(const CDicomObjectList& objects,
                                                                const Source& source) {
  const std::size_t last = objects.GetCount() - 1;
  const CDicomObjectProperties& object = *objects.At(last);
  auto facts = std::make_shared<DicomFileFacts>();
  const DcFileReading& reading = source.file.GetReading();
  facts->SetReference(reading.metaInfo, object,
                      last == 0 ? nullptr : objects.At(last - 1)->Facts());
  const DcFileStatus& status = reading.file;
  facts->file = {
      {status.volume, status.index}, {status.sizeBytes, status.lastWriteTime}, status.names};
  if (!options_.currentPractice) {
    OwnRecord own;
    own.kept.record = MakeDocumentRecord(object, source.file, own.problem);
    if (own.kept.record != nullptr || !own.problem.empty()) {
      facts->record = std::make_unique<OwnRecord>(std::move(own));
    }
    return facts;
  }
  const std::string& sopClassUid = reading.metaInfo.sopClassUid;
  const RecordRow& row = RowOf(RecordRowOf(sopClassUid));
  if (row.type == DcDirRecType::Image && watch_ == nullptr) return facts;
  facts->record = std::make_unique<OwnRecord>();
  facts->record->kept = CopyRecord(row, source.file, options_.characterSet);
  if (row.type == DcDirRecType::Private) {
    // The object's class tells what the record is. One that is too long is no UID.
    static_cast<void>(facts->record->kept.record->setPrivateRecordUid(sopClassUid));
  }
  return facts;
}

bool ObjectAdding::FileObject(const Source& source, bool mustBeFit, AddedFile& told) {
  const TextView fileName = source.fileName;
  const DcElemList& dataSet = source.DataSet();
  // What the lists gain on the way goes again when the object cannot be added after all: a patient
  // without an object would be named on the medium.
  ListGrowth growth;
  CStudy* const study = StudyOf(source, growth);
  if (study == nullptr) return false;
  CSeries* const series = SeriesOf(source, *study, growth);
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
      growth.Note(images, images.AddObject(source.file, /*instanceUidOptional=*/true));
  if (added == nullptr || added->InstanceUid() != uid) {
    return errors_.Fail(kMsgCannotAddImage, {uid, seriesUid, studyUid, patientId_, fileName});
  }
  auto facts = FactsOfLast(images, source);
  if (mustBeFit && facts->record != nullptr && !facts->record->problem.empty()) {
    errors_.SetErrorMessage(facts->record->problem);
    return false;
  }
  added->SetFacts(std::move(facts));
  if (watch_ != nullptr) {
    watch_->Look(added->SharedFileName(), source.file.GetReading().metaInfo, dataSet);
  }
  growth.Keep();
  told.outcome = AddOutcome::Added;
  return true;
}

CStudy* ObjectAdding::StudyOf(const Source& source, ListGrowth& growth) {
  const TextView fileName = source.fileName;
  CPatient* patient = patients_.Find(patientId_);
  if (patient == nullptr) {
    patient = growth.Note(patients_, patients_.Add(source.Texts(), patientId_));
    if (patient == nullptr) {
      errors_.Fail(kMsgCannotAddPatient, {fileName, patientId_});
      return nullptr;
    }
    KeepRecord(*patient, DcDirRecType::Patient, source);
  }
  Text uid;
  if (!ReadKey(source.DataSet(), tags::kStudyInstanceUid, uid)) {
    errors_.Fail(kMsgCannotReadStudy, {patientId_, fileName});
    return nullptr;
  }
  CStudyList& studies = patient->Studies();
  CStudy* study = studies.Find(uid);
  if (study != nullptr) return study;
  study = growth.Note(studies, studies.Add(source.Texts()));
  if (study == nullptr) {
    errors_.Fail(kMsgCannotAddStudy, {uid, patientId_, fileName});
    return nullptr;
  }
  KeepRecord(*study, DcDirRecType::Study, source);
  return study;
}

CSeries* ObjectAdding::SeriesOf(const Source& source, CStudy& study, ListGrowth& growth) {
  const TextView fileName = source.fileName;
  const Text& studyUid = study.StudyInstanceUid();
  Text uid;
  if (!ReadKey(source.DataSet(), tags::kSeriesInstanceUid, uid)) {
    errors_.Fail(kMsgCannotReadSeries, {studyUid, patientId_, fileName});
    return nullptr;
  }
  CSeriesList& list = study.Series();
  CSeries* series = list.Find(uid);
  if (series != nullptr) return series;
  series = growth.Note(list, list.Add(source.Texts()));
  if (series == nullptr) {
    errors_.Fail(kMsgCannotAddSeries, {uid, studyUid, patientId_, fileName});
    return nullptr;
  }
  KeepRecord(*series, DcDirRecType::Series, source);
  Text description;
  // One that cannot be read is none.
  if (TakeElementText(source.DataSet(), tags::kSeriesDescription, description, source.Set())) {
    series->SetDescription(std::move(description));
  }
  return series;
}

}  // namespace quillon
