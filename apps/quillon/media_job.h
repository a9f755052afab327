// The media object with 8-bit text in the file-system code page, as a command-line program has it.
// One job is one object: it keeps its root directory to itself until the file set is delivered.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/com_values.h"
#include "outcome.h"
#include "server/media_object/media_rw.h"

namespace quillon::cli {

struct AddRules {
  std::optional<std::string> patientKey;  // none: files fall under the patient that they name
  bool refusesCutFiles = false;
  bool refusesMissingKeys = false;
  const ObjectSelection* selection = nullptr;  // null: of all
};

struct Added {
  AddOutcome outcome = AddOutcome::Refused;
  std::string firstFile;           // of AlreadyAdded: the file that holds the object
  bool isPixelDataCut = false;     // the file ends before its pixel data does
  std::vector<DcTag> missingKeys;  // of KeysMissing
};

// What fails fails with the object's sentence unless something else is said.
class MediaJob {
 public:
  MediaJob();

  Outcome setRoot(std::string_view path);
  Outcome setObjectDirectory(std::string_view path);
  void setHierarchy(bool enabled) { builder().useHierarchyForDicomObjects = enabled; }
  // refusesGaps: of configured content that cannot be had.
  void setOtherContent(bool enabled, bool refusesGaps) {
    builder().includeOtherContent = enabled;
    builder().refusesContentGaps = refusesGaps;
  }
  // In the place of the configured content, unless there are none.
  void setOtherContents(std::vector<NamedContent> contents) {
    builder().otherContents = std::move(contents);
  }
  // Of the configured content.
  Outcome setOtherContentDirectory(std::string_view name);
  // In the place of the one that files declare; empty: theirs.
  void setCharacterSet(const std::string& term) { builder().characterSet = term; }
  void setRecords(bool inventsMissingKeys, bool isForOnePatient) {
    builder().inventsMissingKeys = inventsMissingKeys;
    builder().isForOnePatient = isForOnePatient;
  }

  // As the registry says, else on.
  [[nodiscard]] bool hasCurrentPractice() { return builder().currentPractice; }

  // Which of several media this is, from 1.
  void setPlaceAmongMedia(unsigned number, unsigned count) {
    builder().mediumNumber = number;
    builder().mediumCount = count;
  }
  void setPages(bool enabled) { builder().portableData = enabled; }
  void setPageStylesheets(std::string_view directory);
  // Whether those that are wanted can be made on this machine.
  Outcome askForPages();
  // What the root holds will be gone when the plan is carried out.
  void setEmptiesRoot(bool isEmptied) { builder().emptiesRoot = isEmptied; }
  // Files that are added after that are held to them; only with the records of today.
  void setProfiles(std::vector<const Profile*> profiles, bool refusesViolations) {
    builder().profiles = std::move(profiles);
    builder().refusesProfileViolations = refusesViolations;
  }
  [[nodiscard]] std::span<const ProfileReport> profileReports() {
    return builder().ProfileReports();
  }

  [[nodiscard]] std::string root();
  [[nodiscard]] std::string label();
  // The object's last sentence.
  [[nodiscard]] std::string errorText();

  // Takes the root directory for this job, which makes it when it is missing. Fails when another
  // has it.
  Outcome claimRoot() { return outcomeOf(builder().ClaimRoot()); }
  // Of the root directory; of an unfinished one errorText tells.
  [[nodiscard]] RootState rootState() { return builder().GetRootState(); }
  // Empties the root directory, but for an entry of this name.
  Outcome clearRoot(std::string_view leaveOut);

  // Whether the object takes files by this path.
  Outcome takesPath(std::string_view path);
  // Adds a file that a file set can take. AddOutcome::Refused: errorText tells why.
  Added addFile(std::string_view path, const AddRules& rules);

  // The objects will come as copies: handOver gives one for each planned file.
  void setCopies(bool needRoom);
  // When it fails, the file set cannot be created, and nothing has been changed.
  Outcome plan() { return outcomeOf(builder().PlanFileSet({}, {})); }
  // The same for a look at it alone: nothing is changed then either, and the root is not taken.
  Outcome preview() { return outcomeOf(builder().PreviewFileSet({}, {})); }
  [[nodiscard]] const PlannedFileSet& planned() { return builder().Planned(); }
  Outcome handOver(std::size_t index, std::string_view copy);
  Outcome createPlanned() { return outcomeOf(builder().CreatePlannedFileSet()); }

  // Told how far a creation or a copy to a directory is; empty for nobody.
  void setProgress(
      std::function<void(std::uint64_t doneBytes, std::uint64_t totalBytes)> progress) {
    builder().progress = std::move(progress);
  }

  // Fails for a name that is too long.
  Outcome setVolume(const std::string& name);
  // The set goes to this directory instead of a disc.
  Outcome setTarget(std::string_view path);
  void setRecording(bool simulate, bool fullErase, bool eject);
  // Whether discs are written with UDF, and never for a test alone.
  [[nodiscard]] bool hasCurrentDiscService() { return builder().HasCurrentDiscService(); }
  // Leaves the file set in its place, whatever happens.
  Outcome write();
  // After a failure: the file that could not be read or written and the system's reason, if there
  // is one.
  [[nodiscard]] std::string failedFile();

  // About the disc in the first recorder of the process. Nothing when there is no answer: errorText
  // tells why. It also tells why a disc is not recordable.
  [[nodiscard]] std::optional<bool> holdsRewritableData();
  [[nodiscard]] bool isRecordable();

  // The header of a DICOM file through the stylesheet at a path or URL, or in a form without one.
  Outcome loadHeader(std::string_view file, std::string_view stylesheet, std::string& text);
  Outcome loadHeader(std::string_view file, HeaderForm form, std::string& text);

  // Removes the root directory and the temporary directory of earlier jobs. What is left of a
  // creation that did not end is set aside (asideDirectory) unless removesAll.
  void wipe(bool removesAll, std::string& asideDirectory);

 private:
  // Initialises COM on the thread, as the host of an object does.
  [[nodiscard]] CDicomDirProcessor& builder() { return object_.Builder(); }
  Outcome outcomeOf(bool isDone) { return isDone ? Outcome() : Outcome(errorText()); }

  ComLibrary com_;  // outlives the object
  CQuillonMediaRW object_;
};

// Which patient a file belongs to when the user does not say, from the patient name and the patient
// ID in it: files with the same key are one patient's.
Text patientKey(TextView name, TextView id);

// A text of the object's in the program's code page.
Text wide(std::string_view text);
std::string narrow(TextView text);
// A path on a medium, with slashes, as people write it.
std::string mediumPath(TextView path);

// What the label of a finished file set says; empty when it has none.
std::string labelOfFileSet(const std::string& root);

// The platform's temporary directory, with its separator; empty when there is none.
std::string temporaryDirectory();
// What the media object removes when it is wiped, beside the root.
std::string temporaryJobDirectory();

}  // namespace quillon::cli
