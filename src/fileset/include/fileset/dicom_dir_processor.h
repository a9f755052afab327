// CDicomDirProcessor: the file set builder. Holds the job's settings, files each added DICOM file
// into the patient list, and lays out the file set with its DICOMDIR, other content and label.
// Every operation answers true on success; a failure leaves one sentence.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "fileset/model/patient_list.h"
#include "fileset/planned_file_set.h"
#include "fileset/profile_report.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

class FileSetPlan;
class ObjectAdding;
class ProfileWatch;
class RootClaim;
struct ObjectSelection;

// What became of a file that was to be added.
enum class AddOutcome {
  Added,
  AlreadyAdded,        // another file holds the same object
  NamesNoObject,       // no study, series or instance
  OtherDirectory,      // a DICOMDIR
  NotDicom,            // no "DICM" behind a preamble
  IncompleteMetaInfo,  // no directory record can refer to it
  Deflated,            // its elements cannot be read
  PixelDataCut,        // the file ends before its pixel data does
  KeysMissing,         // its directory records would lack required keys
  NotSelected,         // the selection leaves it out
  Refused,             // the error message tells why
};

struct AddedFile {
  AddOutcome outcome = AddOutcome::Refused;
  Text firstFile;                  // of AlreadyAdded: the file that holds the object
  bool isPixelDataCut = false;     // the file ends before its pixel data does
  std::vector<DcTag> missingKeys;  // of KeysMissing
};

// How a host adds files that a file set can take for certain.
struct FitnessRules {
  // The unique patient ID of a file, from its patient name and patient ID.
  std::function<Text(TextView name, TextView id)> patientKey;
  bool refusesCutFiles = false;
  // With currentPractice: refuses a file without a value for every required key of its records.
  bool refusesMissingKeys = false;
  // Leaves out objects before anything else is asked of them; null: none. One that belongs to no
  // study is left out by every selection.
  const ObjectSelection* selection = nullptr;
};

// How far the file set in a root directory has come.
enum class RootState {
  Free,              // holds neither a file set nor what is left of one
  Finished,          // a DICOMDIR, and no creation is under way
  Unfinished,        // objects of a creation that did not end, perhaps the only copies
  UnfinishedCopies,  // the same, but their sources stayed
};

// A directory of non-DICOM content, and the one below the root that it is copied to; "." is the
// root itself.
struct NamedContent {
  Text source;
  Text directory;
};

// How a file set is made.
struct FileSetOptions {
  bool useHierarchyForDicomObjects = false;
  bool includeOtherContent = true;
  // They take the place of the configured content, unless there are none.
  std::vector<NamedContent> otherContents;
  // Configured content that cannot be had ends the plan, instead of being left out.
  bool refusesContentGaps = false;
  // Where the description of the medium is at odds with what the field does today, follow the
  // field: dates that are none are left out of the label, and empty files of the other content are
  // copied; texts are read by their character set, and records name it; an object has the record
  // type of its SOP class, with the elements of the object as keys; studies, series and objects
  // stand in order; the set's UID is unique. By default as the registry says, else off.
  bool currentPractice = false;
  // The set gets README.TXT, INDEX.HTM and pages for a browser. By default as the registry says,
  // else off.
  bool portableData = false;
  // The directory of the stylesheets that make them; empty: those that ship.
  Text pageStylesheets;
  // What the root holds will be gone when the plan is carried out.
  bool emptiesRoot = false;
  // The rest goes with currentPractice. Stands for the Specific Character Set (0008,0005) of every
  // file, where files declare a wrong one; empty: none does.
  std::string characterSet;
  // Required keys that an object has no value for get one that is made up.
  bool inventsMissingKeys = false;
  // The application profiles that the set is held to, set before the first file is added. Records
  // have the keys of all of them; ProfileReports tells what does not meet them. Of several one is
  // to be met.
  std::vector<const Profile*> profiles;
  bool refusesProfileViolations = false;
  // A set with more than one patient is refused.
  bool isForOnePatient = false;
  // Of several media that hold what would not fit one: which this is, from 1, and how many there
  // are. The label tells, unless it is one of one.
  unsigned mediumNumber = 1;
  unsigned mediumCount = 1;
  // The objects are handed over as copies (see HandOver), so that their loss is none, and need room
  // on the root's file system.
  bool sourcesStay = false;
  bool needsRoomForCopies = false;
};

class CDicomDirProcessor : public CBaseItem, public FileSetOptions {
 public:
  // Switches the toolkit's value checking off for the process: values of files are taken as they
  // are.
  CDicomDirProcessor();
  ~CDicomDirProcessor() override;

  // Adding. The file is read once; it is moved when the file set is created. A file without a
  // Study, Series or SOP Instance UID is passed over, one that is in the list already changes
  // nothing: both are successes.
  [[nodiscard]] bool AddFile(TextView fileName);
  // Adds the files of a directory (the current one when empty) and, with allowAddHierarchyTree, of
  // those below it, in the platform's order. The first file that cannot be added ends it; those
  // before it stay.
  [[nodiscard]] bool AddDirectory(TextView directory, bool createAfterwards);
  // Empty arguments mean the settings. Takes the root directory for this job, plans the file set
  // and carries the plan out: moves every added file below root\object directory, writes DICOMDIR,
  // copies the other content and writes the label. What can be known to fail fails before anything
  // is moved. What is left of a creation that did not end is set aside beside the root first. The
  // patient list is empty after a success and after a failure that concerns an object or anything
  // behind them, but for one to read a report, presentation state or key object document; other
  // failures keep it. What was moved stays moved. The root stays this job's until its file set is
  // written or wiped.
  [[nodiscard]] bool CreateDicomFileSet(TextView rootDirectory, TextView objectDirectory);

  // The same in steps, for a host that does something in between. AddFitFile adds only what a
  // creation takes: false, with the outcome, for what AddFile would pass over or a plan refuse
  // (true for AlreadyAdded, NamesNoObject and NotSelected).
  [[nodiscard]] bool AddFitFile(TextView fileName, const FitnessRules& rules, AddedFile& told);
  // After a failure in copying or moving: the file concerned and the platform's reason. False when
  // there is none.
  [[nodiscard]] bool GetFailedFile(Text& path, Text& reason) const;
  // Whether a file can be added by this path.
  [[nodiscard]] bool TakesPath(TextView path) {
    return files_.ValidatePath(path) || FailAs(files_);
  }
  // Takes the root directory, which is made when missing; false when another job has it.
  [[nodiscard]] bool ClaimRoot();
  // Of the root directory; of an unfinished one the sentence is left.
  [[nodiscard]] RootState GetRootState();
  // Empties the root directory, which this job has, but for an entry of the name leaveOut. Refused
  // for what is left of a creation that did not end and may be the only copies.
  [[nodiscard]] bool ClearRoot(TextView leaveOut);
  // Makes the plan. Refused as by CreateDicomFileSet, but for what is found in the sources.
  [[nodiscard]] bool PlanFileSet(TextView rootDirectory, TextView objectDirectory);
  // The same plan for a look at it alone, with no hold on the root directory, which may be missing:
  // nothing is changed. A creation plans anew.
  [[nodiscard]] bool PreviewFileSet(TextView rootDirectory, TextView objectDirectory);
  // After one of the two.
  [[nodiscard]] const PlannedFileSet& Planned() const;
  // After a plan, one that was refused for them too: how far each of the profiles is met.
  [[nodiscard]] std::span<const ProfileReport> ProfileReports() const;
  // A copy that the host made of a planned file is moved in its place. False when the file has
  // changed since it was added.
  [[nodiscard]] bool HandOver(std::size_t index, TextView copy);
  // Looks at the sources and carries the plan out.
  [[nodiscard]] bool CreatePlannedFileSet();

  // True for 1 to 103 characters of A-Z 0-9 _ \ /, at most 8 levels of at most 12 characters.
  [[nodiscard]] bool ValidateFileId(TextView fileId);
  // The configured source of the other content; empty when the value is.
  [[nodiscard]] bool GetOtherContentSourceDir(Text& directory);
  // Composes the label, keeps it as the IHE label and writes it to LABEL.TXT in the root (UTF-16
  // little endian without a mark, a line feed at the end).
  [[nodiscard]] bool WriteLabel(CPatientList* patients, TextView rootDirectory);
  // Delivers the file set: to directCopyDirectory (its missing levels are made, files of the same
  // name replaced) with performDirectCopy, else to the disc in the first recorder. An empty source
  // directory means the root directory. With clearAfterWrite the source is deleted afterwards,
  // WHETHER OR NOT it was delivered. Refused with nothing deleted: a source that another job has or
  // whose creation did not end, a target that is the source or lies in it, or that holds the source
  // in a place where the copy would go. DICOMDIR is copied last: a copy that broke off has none.
  [[nodiscard]] bool WriteMedia(TextView sourceDirectory, bool simulate, bool fullErase, bool eject,
                                bool clearAfterWrite);
  // False, with a sentence, where the platform is too old to record.
  [[nodiscard]] bool CheckOperatingSystem();
  // Whether discs are written through the current disc-mastering service: with UDF, and never for a
  // test alone.
  [[nodiscard]] static bool HasCurrentDiscService();
  // Of the objects added and the other content; 0 when false.
  [[nodiscard]] bool GetTotalSize(std::uint64_t& sizeBytes);
  [[nodiscard]] bool GetTotalFileCount(std::uint32_t& count);
  // Empties the patient list and removes the root directory and what recording left in the
  // temporary directory. Failures to remove are not told. A root that another job has stays; what
  // is left of a creation that did not end is set aside (asideDirectory) unless `removesAll`.
  void Wipe();
  void Wipe(bool removesAll, Text& asideDirectory);
  // Forgets everything added so far; the next add makes a new list.
  void DiscardPatientList();

  // Settings. The setters of texts refuse (false) what the media object's documentation says.
  [[nodiscard]] bool SetVolumeName(TextView name);
  [[nodiscard]] bool SetDicomRootDirectory(TextView path);
  [[nodiscard]] bool SetDicomObjectDirectory(TextView path);
  [[nodiscard]] bool SetOtherContentDirectory(TextView path);
  [[nodiscard]] bool SetDirectCopyDirectory(TextView path);
  [[nodiscard]] bool SetUniquePatientId(TextView id);
  [[nodiscard]] const Text& VolumeName() const { return volumeName_; }
  [[nodiscard]] const Text& DicomRootDirectory() const { return rootDirectory_; }
  [[nodiscard]] const Text& DicomObjectDirectory() const { return objectDirectory_; }
  [[nodiscard]] const Text& OtherContentDirectory() const { return otherContentDirectory_; }
  [[nodiscard]] const Text& DirectCopyDirectory() const { return directCopyDirectory_; }
  [[nodiscard]] const Text& UniquePatientId() const { return uniquePatientId_; }
  [[nodiscard]] const Text& IheLabel() const { return iheLabel_; }
  void ClearIheLabel() { iheLabel_.clear(); }

  bool allowAddHierarchyTree = true;
  bool clearAfterWrite = true;
  // A root that was written stays this job's until it is wiped or this object goes: for one who
  // compares the medium with it, or writes it again.
  bool holdsRootWhenWritten = false;
  // With currentPractice: a set that is delivered has SHA256SUMS beside its label. Off for one who
  // makes it himself.
  bool makesSums = true;
  bool performFullErase = false;
  bool simulateCreation = false;
  bool ejectMediumAfterCreation = true;
  bool performDirectCopy = false;
  // Told how far a creation, or a delivery to a directory, is with the bytes of all its files:
  // often while it copies, on the thread that does. It must not throw.
  std::function<void(std::uint64_t doneBytes, std::uint64_t totalBytes)> progress;
  // In the registry.
  [[nodiscard]] bool HasPracticeSetting() const { return hasPracticeSetting_; }

 private:
  [[nodiscard]] CPatientList& ListForAdding();
  [[nodiscard]] ObjectAdding AddingTo(CPatientList& list, TextView patientId);
  // With what the profiles found in them.
  void ForgetPatients();
  [[nodiscard]] bool HasPatients();
  [[nodiscard]] bool SetPath(Text& setting, TextView path);
  [[nodiscard]] bool SetPathInRoot(Text& setting, TextView path);
  [[nodiscard]] std::unique_ptr<FileSetPlan> BeginPlan(TextView rootDirectory,
                                                       TextView objectDirectory);
  [[nodiscard]] bool FinishPlan(std::unique_ptr<FileSetPlan> plan);
  void RemoveRoot(bool removesAll, Text& asideDirectory);
  void RemoveTemporaryFiles();

  std::unique_ptr<CPatientList> patients_;
  std::unique_ptr<ProfileWatch> watch_;  // where a profile is asked for
  CFileUtil files_;
  std::unique_ptr<RootClaim> claim_;
  std::unique_ptr<FileSetPlan> plan_;
  bool isPreview_ = false;  // of the plan: its root directory is not held
  Text rootDirectory_;
  Text objectDirectory_;
  Text iheLabel_;
  Text uniquePatientId_;
  Text volumeName_;
  Text otherContentDirectory_;
  Text directCopyDirectory_;
  bool hasPracticeSetting_ = false;
};

}  // namespace quillon
