#include "file_set_plan.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "dicomobjects/dicom_file_facts.h"
#include "directory_record.h"
#include "file_id_rules.h"
#include "file_set_order.h"
#include "fileset/model/for_each_object.h"
#include "medium_label.h"
#include "path_join.h"
#include "platform/services.h"
#include "profile_watch.h"
#include "record_keys.h"
#include "repeated_patients.h"
#include "source_check.h"
#include "unfinished_mark.h"
#include "unique_uid.h"

namespace quillon {

namespace {

// Names that are given in the file set, and the digits that their counters have at least.
constexpr std::size_t kObjectDigits = 5;
constexpr const OLECHAR* kPatientPrefix = OLESTR("P");
constexpr const OLECHAR* kStudyPrefix = OLESTR("S");
constexpr const OLECHAR* kSeriesPrefix = OLESTR("E");
constexpr std::size_t kDirectoryDigits = 7;

// Where records stand in the tree of a DICOMDIR; objects of no patient stand at the top.
constexpr std::size_t kTopDepth = 0;
constexpr std::size_t kStudyDepth = 1;
constexpr std::size_t kSeriesDepth = 2;
constexpr std::size_t kObjectDepth = 3;

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

// What a DICOMDIR takes per record, and a label; both are small beside any object.
constexpr std::uint64_t kBytesPerRecord = 1024;
constexpr std::size_t kBytesForLabel = 16384;

// What each takes at the least: the elements that every record opens with, and the reference to an
// object's file.
constexpr std::uint64_t kLeastBytesPerRecord = 54;
constexpr std::uint64_t kLeastBytesPerReference = 66;

// An entry of the root that is in the way of a file.
bool IsDirectoryThere(const Text& path, CFileUtil& files) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  return files.GetFileAttributes(path, data) &&
         (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

Text PlannedObject::FileId() const {
  return directory.Get() + NumberedName(kObjectPrefix, number, kObjectDigits);
}

FileSetPlan::FileSetPlan(CPatientList& patients, ProfileWatch* watch, CFileUtil& files,
                         const FileSetOptions& options, const FileSetPlaces& places)
    : patients_(patients),
      watch_(watch),
      files_(files),
      options_(options),
      places_(places),
      root_(places.rootDirectory),
      objectDirectory_(places.objectDirectory),
      content_(files, options_),
      portableData_(files, options_, places_, institution_) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

bool FileSetPlan::Make() {
  keepsPatients_ = true;
  hasOldObjects_ = files_.PathExists(ObjectDirectory());
  if (options_.isForOnePatient && patients_.GetCount() > 1) {
    return Fail(kMsgSeveralPatients, {NumberText(static_cast<long long>(patients_.GetCount()))});
  }
  if (!CheckOldEntries() || !BeginDicomDir()) return false;
  if (!AddPatients() || !AddTopLevelObjects()) return false;
  keepsPatients_ = true;
  if (!CheckProfiles()) return false;
  keepsPatients_ = false;
  if (!PlanContent() || !ComposeLabel()) return false;
  keepsPatients_ = true;
  if (options_.portableData && !PlanPages()) return false;
  planned_.room = RoomOnDisc();
  return !options_.needsRoomForCopies || CheckRoom(planned_.bytesOnDisk);
}

bool FileSetPlan::CheckDirectories() {
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
  if (!JoinPath(dicomDirPath_, kDicomDirName, *this)) return false;
  Text objects = root_;
  if (!JoinPath(objects, objectDirectory_, *this)) return false;
  directories_.assign(1, objects);
  return true;
}

bool FileSetPlan::CheckOldEntries() {
  return !IsDirectoryThere(dicomDirPath_, files_) || Fail(kMsgCannotDeleteFile, {dicomDirPath_});
}

bool FileSetPlan::BeginDicomDir() {
  const std::string root = NarrowText(root_, FileSystemCodePage());
  dicomDir_ = std::make_unique<DcDirDicomDir>(nullptr);
  // A name that the toolkit's code page cannot hold would be another directory's.
  if (WidenText(root, FileSystemCodePage()) != root_ ||
      dicomDir_->startEmpty(root.c_str()) != kDcOk || dicomDir_->rootPath().empty()) {
    return Fail(kMsgCannotCreateDicomDirIn, {root_});
  }
  DcFileMetaInfo metaInfo = dicomDir_->fileMetaInfo();
  metaInfo.implementationClassUid = kImplementationClassUid;
  metaInfo.implementationVersionName = kImplementationVersionName;
  metaInfo.sourceAeTitle = kSourceAeTitle;
  if (options_.currentPractice) {
    metaInfo.sopInstanceUid = MakeUniqueUid();
    if (metaInfo.sopInstanceUid.empty()) return Fail(kMsgCannotCreateDicomDirIn, {root_});
  }
  dicomDir_->setFileMetaInfo(metaInfo);
  dicomDirWriter_ = std::make_unique<DcDirWriter>(*dicomDir_);
  return dicomDirWriter_->begin() == kDcOk || Fail(kMsgCannotCreateDicomDirIn, {root_});
}

void FileSetPlan::NoteIdentities() {
  std::set<TextView> seen;
  const auto note = [&seen](std::vector<Text>& list, const Text& value) {
    if (!value.empty() && seen.insert(value).second) list.push_back(value);
  };
  for (std::size_t p = 0; p < patients_.GetCount(); ++p) {
    const CPatient& patient = *patients_.At(p);
    note(planned_.patientIds, patient.PatientId());
    for (std::size_t s = 0; s < patient.Studies().GetCount(); ++s) {
      note(planned_.studyUids, patient.Studies().At(s)->StudyInstanceUid());
    }
  }
}

bool FileSetPlan::AddPatients() {
  planned_ = PlannedFileSet{};
  std::size_t objects = 0;
  static_cast<void>(ForEachObject(patients_, [&objects](const CDicomObjectProperties&) {
    ++objects;
    return true;
  }));
  planned_.objects.reserve(objects);
  NoteIdentities();
  if (options_.currentPractice) planned_.repeatedPatients = FindRepeatedPatients(patients_);
  inventor_ = KeyInventor();
  for (std::size_t p = 0; options_.inventsMissingKeys && p < patients_.GetCount(); ++p) {
    inventor_.NotePatientId(patients_.At(p)->PatientId());
  }
  for (std::size_t p = 0; p < patients_.GetCount(); ++p) {
    at_.patient = patients_.At(p);
    ++planned_.patients;
    if (!AddRecord(RecordOf(*at_.patient, MakePatientRecord), kTopDepth) ||
        !AddStudies(DirectoryBelow({}, kPatientPrefix, p + 1))) {
      return false;
    }
  }
  return true;
}

bool FileSetPlan::AddStudies(TextView patientDirectory) {
  const auto studies = Ordered<CStudy>(at_.patient->Studies(), options_);
  for (std::size_t s = 0; s < studies.size(); ++s) {
    at_.study = studies[s];
    ++planned_.studies;
    if (!AddRecord(RecordOf(*at_.study, MakeStudyRecord), kStudyDepth) ||
        !AddSeries(DirectoryBelow(patientDirectory, kStudyPrefix, s + 1))) {
      return false;
    }
  }
  return true;
}

bool FileSetPlan::AddSeries(TextView studyDirectory) {
  const auto series = Ordered<CSeries>(at_.study->Series(), options_);
  for (std::size_t e = 0; e < series.size(); ++e) {
    at_.series = series[e];
    ++planned_.series;
    at_.directory.clear();
    if (options_.useHierarchyForDicomObjects) {
      at_.directory = DirectoryBelow(studyDirectory, kSeriesPrefix, e + 1);
    }
    if (!AddRecord(RecordOf(*at_.series, MakeSeriesRecord), kSeriesDepth) || !AddObjects()) {
      return false;
    }
  }
  return true;
}

bool FileSetPlan::AddObjects() {
  const CDicomObjectList& list = at_.series->Images();
  if (list.GetCount() > 0) {
    planned_.seriesOfObjects.push_back({at_.study->StudyInstanceUid(),
                                        at_.series->SeriesInstanceUid(), at_.study->StudyDate(),
                                        planned_.objects.size()});
  }
  const auto objects = Ordered<CDicomObjectProperties>(list, options_);
  for (std::size_t i = 0; i < objects.size(); ++i) {
    keepsPatients_ = false;
    if (i == 0 && options_.useHierarchyForDicomObjects && !AddDirectory()) return false;
    if (!AddObject(*objects[i])) return false;
  }
  return true;
}

bool FileSetPlan::AddTopLevelObjects() {
  at_ = Position{};
  if (patients_.TopLevelObjects().GetCount() > 0) {
    planned_.seriesOfObjects.push_back({{}, {}, {}, planned_.objects.size()});
  }
  for (const CDicomObjectProperties* object : InOrder(patients_.TopLevelObjects())) {
    keepsPatients_ = false;
    if (!AddObject(*object)) return false;
  }
  return true;
}

bool FileSetPlan::AddDirectory() {
  Text directory = root_;
  if (!JoinPath(directory, objectDirectory_, *this) || !JoinPath(directory, at_.directory, *this)) {
    return false;
  }
  directories_.push_back(directory);
  return true;
}

bool FileSetPlan::AddObject(const CDicomObjectProperties& object) {
  PlannedObject planned;
  NameNextObject(planned);
  const Text fileId = planned.FileId();
  if (!CheckName(fileId)) return false;
  const DicomFileFacts& facts = *object.Facts();
  const auto record = MakeRecord(object, facts);
  if (record == nullptr) return false;
  // Each has a number of its own.
  if (record->setRefFile(NarrowText(fileId, CP_ACP).c_str(), facts.Reference(object),
                         dicomDir_->rootPath()) != kDcOk) {
    if (at_.patient == nullptr) return Fail(kMsgCannotCreateDicomDirIn, {root_});
    return Fail(kMsgCannotSetImageReference,
                {fileId, at_.series->SeriesInstanceUid(), at_.study->StudyInstanceUid(),
                 at_.patient->UniqueId(), object.FileName()});
  }
  if (!AddRecord(record, at_.patient == nullptr ? kTopDepth : kObjectDepth)) return false;
  planned.source = object.SharedFileName();
  planned.facts = object.SharedFacts();
  planned.sizeBytes = facts.file.stamp.sizeBytes;
  planned_.objects.push_back(std::move(planned));
  planned_.bytes += facts.file.stamp.sizeBytes;
  planned_.bytesOnDisk += RoundedToBlocks(facts.file.stamp.sizeBytes);
  return true;
}

void FileSetPlan::NameNextObject(PlannedObject& object) const {
  const std::vector<PlannedObject>& before = planned_.objects;
  object.directory.Set(objectDirectory_ + at_.directory,
                       before.empty() ? nullptr : &before.back().directory);
  object.number = static_cast<std::uint32_t>(before.size() + 1);
}

bool FileSetPlan::CheckName(const Text& fileId) {
  if (!CheckFileId(fileId, files_, *this)) return false;
  Text path = root_;
  if (!JoinPath(path, fileId, *this)) return false;
  return !hasOldObjects_ || !IsDirectoryThere(path, files_) || Fail(kMsgCannotOpenFile, {path});
}

std::unique_ptr<DcDirRec> FileSetPlan::MakeRecord(const CDicomObjectProperties& object,
                                                  const DicomFileFacts& facts) {
  const OwnRecord* own = facts.record.get();
  if (own != nullptr && !own->problem.empty()) {
    // A document that cannot be read leaves the patients for another attempt.
    keepsPatients_ = true;
    SetErrorMessage(own->problem);
    return nullptr;
  }
  auto record = own == nullptr ? MakeImageRecord(object) : own->kept.record->copyOfKeys();
  if (record == nullptr) {
    Fail(kMsgCannotCreateDicomDirIn, {root_});  // no memory
  } else if (options_.currentPractice) {
    Complete(*record,
             own == nullptr ? MissingKeys(RowOf(record->type()), *record) : own->kept.missingKeys,
             object.FileName());
  }
  return record;
}

template <typename Node>
std::unique_ptr<DcDirRec> FileSetPlan::RecordOf(const Node& node,
                                                std::unique_ptr<DcDirRec> (*make)(const Node&)) {
  const KeptRecord& kept = node.Record();
  if (kept.record == nullptr) return make(node);
  auto record = kept.record->copyOfKeys();
  if (record == nullptr) {
    Fail(kMsgCannotCreateDicomDirIn, {root_});
  } else {
    Complete(*record, kept.missingKeys, node.RecordSource());
  }
  return record;
}

void FileSetPlan::Complete(DcDirRec& record, const std::vector<DcTag>& missing, TextView source) {
  if (missing.empty()) return AddEmptyKeys(RowOf(record.type()), record);
  if (options_.inventsMissingKeys) {
    inventor_.Invent(record, missing);
  } else if (record.type() == DcDirRecType::Study) {
    GiveUsualStudyId(record, missing);
  }
  const RecordRow& row = RowOf(record.type());
  const std::vector<DcTag> left = MissingKeys(row, record);
  for (const DcTag tag : missing) {
    const bool isMadeUp = std::ranges::find(left, tag) == left.end();
    planned_.incomplete.push_back({Text(source), tag, isMadeUp});
  }
  AddEmptyKeys(row, record);
}

const RecordRow& FileSetPlan::RowOf(DcDirRecType type) const {
  const RecordRow& row = RecordRowOf(type);
  return watch_ == nullptr ? row : watch_->RowOf(row);
}

bool FileSetPlan::CheckProfiles() {
  if (watch_ == nullptr) return true;
  watch_->Conclude(planned_);
  const auto reports = watch_->Reports();
  const bool isMet =
      std::ranges::any_of(reports, [](const ProfileReport& report) { return report.count == 0; });
  if (isMet || !options_.refusesProfileViolations) return true;
  if (reports.size() > 1) return Fail(kMsgNoProfileMet);
  const ProfileReport& report = reports.front();
  const ProfileViolation& first = report.violations.front();
  const Text& source = first.source.Get();
  return Fail(
      kMsgProfileNotMet,
      {WidenText(report.profile->name, CP_ACP), NumberText(static_cast<long long>(report.count)),
       source.empty() ? first.rule : source + OLESTR(": ") + first.rule, first.found});
}

bool FileSetPlan::PlanContent() {
  Text labelPath = root_;
  if (!JoinPath(labelPath, kLabelFileName, *this)) return false;
  if (options_.includeOtherContent) {
    const OtherContents::Places places{places_.rootDirectory, places_.otherContentDirectory,
                                       ObjectDirectory()};
    if (!content_.Plan(places)) return FailAs(content_);
    planned_.contentGap = content_.Gap();
  }
  return !IsDirectoryThere(labelPath, files_) || Fail(kMsgCannotOpenFile, {labelPath});
}

bool FileSetPlan::ComposeLabel() {
  MediumLabel label(options_.currentPractice, options_.portableData);
  label.SetPlaceAmongMedia(options_.mediumNumber, options_.mediumCount);
  if (!label.Compose(patients_)) return FailAs(label);
  planned_.label = label.GetText();
  planned_.labelRemarks = label.LeftOut();
  return true;
}

bool FileSetPlan::PlanPages() {
  if (!ReadInstitution(institution_, *this)) return false;
  if (!portableData_.Plan(patients_, root_, ObjectDirectory(), planned_, content_)) {
    return FailAs(portableData_);
  }
  planned_.pageRemarks = portableData_.Remarks();
  return true;
}

bool FileSetPlan::CheckSources() {
  keepsPatients_ = true;
  SourceCheck check(root_, ObjectDirectory(), dicomDirPath_, files_, *this);
  if (!check.CheckOutside(planned_.objects)) return false;
  keepsPatients_ = false;
  if (!check.Run(planned_.objects)) return false;
  renamable_ = check.Renamable();
  keepsPatients_ = true;
  return CheckRoom(check.BytesToCopy());
}

bool FileSetPlan::CheckRoom(std::uint64_t bytesToCopy) {
  std::uint64_t freeBytes = 0;
  // A file system that does not tell is not one without room.
  if (!files_.GetFreeBytes(ExistingPart(AbsolutePath(root_), files_), freeBytes)) return true;
  const std::uint64_t needed = bytesToCopy + content_.BytesOnDisk() + portableData_.BytesOnDisk() +
                               CountRecords() * kBytesPerRecord +
                               std::max(kBytesForLabel, planned_.label.size() * sizeof(char16_t));
  return needed <= freeBytes ||
         Fail(kMsgNotEnoughRoom,
              {places_.rootDirectory, NumberText(static_cast<long long>(freeBytes)),
               NumberText(static_cast<long long>(needed))});
}

DiscRoom FileSetPlan::RoomOnDisc() const {
  DiscRoom room = content_.Room();
  room.Add(portableData_.Room());
  for (const PlannedObject& object : planned_.objects) room.AddFile(object.sizeBytes);
  const std::uint64_t records = CountRecords();
  room.AddFile(records * kLeastBytesPerRecord + planned_.objects.size() * kLeastBytesPerReference,
               (records + 1) * kBytesPerRecord);
  room.AddFile((planned_.label.size() + 1) * sizeof(char16_t));
  std::set<TextView> directories;
  for (const Text& directory : directories_) {
    for (std::size_t end = directory.find(OLESTR('\\'), root_.size()); end != Text::npos;
         end = directory.find(OLESTR('\\'), end + 1)) {
      if (directories.insert(TextView(directory).substr(0, end)).second) room.AddDirectory();
    }
  }
  return room;
}

std::uint64_t FileSetPlan::CountRecords() const {
  return planned_.objects.size() + planned_.series + planned_.studies + planned_.patients;
}

bool FileSetPlan::HandOver(std::size_t index, TextView copy) {
  PlannedObject& object = planned_.objects[index];
  WIN32_FILE_ATTRIBUTE_DATA data{};
  const Text& source = object.source.Get();
  if (!files_.GetFileAttributes(source, data)) return FailAs(files_);
  if (object.facts && !(StampOf(data) == object.facts->file.stamp)) {
    return Fail(kMsgSourceChanged, {source});
  }
  object.source.Set(copy);
  object.facts.reset();
  return true;
}

bool FileSetPlan::AddRecord(const std::unique_ptr<DcDirRec>& record, std::size_t depth) {
  if (record == nullptr) return false;
  return dicomDirWriter_->add(*record, depth) == kDcOk || Fail(kMsgCannotCreateDicomDirIn, {root_});
}

bool FileSetPlan::WriteDicomDir() {
  return dicomDirWriter_->save() == kDcOk || Fail(kMsgCannotCreateDicomDirIn, {root_});
}

}  // namespace quillon
