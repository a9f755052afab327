#include "create_job.h"

#include <atomic>
#include <cstdio>
#include <unordered_map>
#include <unordered_set>

#include "file_check.h"
#include "fileset/dicom_dir_processor.h"
#include "foundation/text.h"
#include "interrupt_guard.h"
#include "label_dates.h"
#include "media_job.h"
#include "patient_key.h"
#include "platform/services.h"
#include "progress_bar.h"
#include "root_guard.h"
#include "source_walk.h"
#include "staging.h"

namespace quillon::cli {

namespace {

// File names in the file set have five digits behind their letters, and a sixth is more than a file
// ID may hold.
constexpr std::size_t kMaxObjects = 99'999;
constexpr std::size_t kMaxFileIdPartLength = 8;

struct Candidate {
  SourceFile file;
  ObjectFields fields;
  std::string key;
  std::uint64_t sizeBytes = 0;
};

class CreateJob {
 public:
  explicit CreateJob(const CreateOptions& options)
      : options_(options), progress_(options.showsProgress) {}

  CreateResult run() {
    if (applySettings() && checkRoot() && collect() && checkLabel()) {
      Staging staging(stagingParent_, options_.mayLink);
      const InterruptGuard guard([this, &staging] { interrupted(staging); });
      if ((!mustWipeFirst() || wipeRoot()) && addAll(staging) && (mustWipeFirst() || wipeRoot())) {
        create();
      }
    }
    progress_.clear();
    return std::move(result_);
  }

 private:
  bool fail(std::string sentence) {
    result_.error = std::move(sentence);
    return false;
  }

  bool applySettings() {
    if (options_.root) {
      if (!job_.setRoot(absoluteRoot(*options_.root))) return fail(job_.errorText());
    }
    result_.root = job_.root();
    job_.setHierarchy(options_.hasHierarchy);
    job_.setOtherContent(options_.hasOtherContent);
    return !options_.objectDirectory || applyObjectDirectory(*options_.objectDirectory);
  }

  // The builder takes levels of 12 characters, of which the directory records hold only 8: that
  // must not come out when the first file has been moved.
  bool applyObjectDirectory(std::string name) {
    for (char& c : name) {
      if (c == '/') c = '\\';
    }
    std::size_t length = 0;
    for (const char c : name) {
      length = c == '\\' ? 0 : length + 1;
      if (length > kMaxFileIdPartLength) {
        return fail("The object directory " + name + " has a level of more than " +
                    std::to_string(kMaxFileIdPartLength) + " characters.");
      }
    }
    const std::string before = job_.errorText();
    if (!job_.setObjectDirectory(name)) {
      const std::string after = job_.errorText();
      return fail(after != before ? after : "The object directory " + name + " is invalid.");
    }
    CDicomDirProcessor rules;
    if (!rules.ValidateFileId(WidenText(name, FileSystemCodePage()))) {
      return fail(NarrowText(rules.ErrorMessage(), FileSystemCodePage()));
    }
    return true;
  }

  bool checkRoot() {
    stagingParent_ = Staging::parentFor(result_.root);
    switch (rootState(result_.root)) {
      case RootState::Missing:
      case RootState::Empty:
        return true;
      case RootState::NotDirectory:
        return fail("The root " + result_.root + " is not a directory.");
      case RootState::Unreadable:
        return fail("The root directory " + result_.root + " cannot be read.");
      case RootState::NotEmpty:
        break;
    }
    if (holdsUnfinishedFileSet(result_.root)) {
      return fail("The root directory " + result_.root +
                  " holds objects without a DICOMDIR, perhaps the only copies of files that were "
                  "moved there. Take them to a safe place, or remove them with quillon wipe.");
    }
    if (!options_.isReplacing) {
      return fail("The root directory " + result_.root +
                  " is not empty; --replace wipes it before the file set is created.");
    }
    std::vector<std::string> sources;
    for (const std::string& source : options_.sources) sources.push_back(absolutePath(source));
    if (auto reason = reasonNotToWipe(result_.root, sources)) return fail(*reason);
    isWiping_ = true;
    return true;
  }

  // Copies that the wipe would take with the old file set are made after it, all others before: the
  // old one goes away only when everything for the new one is there.
  [[nodiscard]] bool mustWipeFirst() const {
    return isWiping_ && (liesWithin(stagingParent_, result_.root) ||
                         liesWithin(stagingParent_, temporaryJobDirectory()));
  }

  bool wipeRoot() {
    if (!isWiping_ || isWiped_) return true;
    // Another object, because a wipe also forgets the files that were added.
    MediaJob wiper;
    if (!wiper.setRoot(result_.root)) return fail(wiper.errorText());
    wiper.wipe();
    isWiped_ = true;
    const RootState state = rootState(result_.root);
    if (state == RootState::Missing || state == RootState::Empty) return true;
    return fail("The root directory " + result_.root + " cannot be wiped.");
  }

  // Answers whether the job goes on.
  bool leaveOut(const std::string& path, const std::string& reason, bool endsJob) {
    if (endsJob && !options_.isKeepingGoing) {
      const bool isSentence = !reason.empty() && reason.front() >= 'A' && reason.front() <= 'Z';
      return fail(isSentence ? reason : "Cannot add " + path + ": " + reason);
    }
    result_.passedOver.push_back({path, reason});
    return true;
  }

  bool collect() {
    SourceList list = walkSources(options_.sources, {options_.intoSubdirectories, result_.root});
    for (const SourceProblem& problem : list.problems) {
      if (!leaveOut(problem.path, problem.reason, problem.endsJob)) return false;
    }
    progress_.begin("Reading", list.files.size());
    candidates_.reserve(list.files.size());
    for (std::size_t i = 0; i < list.files.size(); ++i) {
      if (!check(std::move(list.files[i]))) return false;
      progress_.advance(i + 1);
    }
    if (candidates_.empty()) return fail("There is no DICOM file to add to the file set.");
    if (candidates_.size() > kMaxObjects) {
      return fail("The file set would hold " + std::to_string(candidates_.size()) +
                  " objects; it can hold at most " + std::to_string(kMaxObjects) + ".");
    }
    return true;
  }

  [[nodiscard]] bool isMoved(const SourceFile& file) const {
    return options_.isMoving && !file.isLink;
  }

  bool check(SourceFile file) {
    FileCheck checked = checkFile(file, isMoved(file));
    switch (checked.verdict) {
      case Verdict::Accept:
        break;
      case Verdict::PassOver:
        return leaveOut(file.path, checked.reason, false);
      case Verdict::NotDicom:
        return leaveOut(file.path, checked.reason, file.isNamed);
      case Verdict::Refuse:
        return leaveOut(file.path, checked.reason, true);
    }
    std::string key = options_.patientKey ? *options_.patientKey : patientKey(checked.fields);
    if (!isNewObject(file, checked.fields, key)) return true;
    candidates_.push_back(
        {std::move(file), std::move(checked.fields), std::move(key), checked.sizeBytes});
    return true;
  }

  // The media object keeps the first of several files with the same object.
  bool isNewObject(const SourceFile& file, const ObjectFields& fields, const std::string& key) {
    const std::string identity =
        key + "\n" + fields.studyUid + "\n" + fields.seriesUid + "\n" + fields.instanceUid;
    const auto [place, isNew] = firstWithObject_.try_emplace(identity, file.path);
    if (isNew) return true;
    const bool isSameFile = absolutePath(place->second) == absolutePath(file.path);
    if (!isSameFile) {
      leaveOut(file.path, "it holds the same object as " + place->second + ".", false);
    }
    return false;
  }

  // The label shows dates of a single patient and study, and a date that is none ends the creation
  // after everything has been moved.
  bool checkLabel() {
    LabelDates dates;
    for (const Candidate& one : candidates_) {
      dates.add(one.key, one.fields);
    }
    if (auto reason = dates.problem()) return fail(*reason);
    return true;
  }

  bool addAll(Staging& staging) {
    progress_.begin(options_.isMoving ? "Adding" : "Copying", candidates_.size());
    for (std::size_t i = 0; i < candidates_.size(); ++i) {
      if (!addOne(candidates_[i], staging)) return false;
      progress_.advance(i + 1);
    }
    result_.patients = patients_.size();
    result_.studies = studies_.size();
    result_.series = series_.size();
    if (result_.objects > 0) return true;
    return fail("There is no DICOM file to add to the file set.");
  }

  bool addOne(const Candidate& one, Staging& staging) {
    std::string handedOver = absolutePath(one.file.path);
    if (!isMoved(one.file)) {
      const std::string source = handedOver;
      std::string reason;
      if (!staging.copyIn(source, handedOver, reason)) {
        // Nothing that follows can be copied either when the disk is full.
        return fail("Cannot add " + one.file.path + ": " + reason);
      }
    }
    if (lastKey_ != one.key) {
      job_.setPatientKey(one.key);
      lastKey_ = one.key;
    }
    if (!job_.addFile(handedOver)) {
      std::string sentence = job_.errorText();
      for (std::size_t at = sentence.find(handedOver); at != std::string::npos;
           at = sentence.find(handedOver, at + one.file.path.size())) {
        sentence.replace(at, handedOver.size(), one.file.path);
      }
      return leaveOut(one.file.path, sentence, true);
    }
    count(one);
    return true;
  }

  void count(const Candidate& one) {
    patients_.insert(one.key);
    const std::string study = one.key + "\n" + one.fields.studyUid;
    studies_.insert(study);
    series_.insert(study + "\n" + one.fields.seriesUid);
    ++result_.objects;
    result_.bytes += one.sizeBytes;
  }

  void create() {
    progress_.begin("Creating the file set", 0);
    isCreating_ = true;
    const bool isCreated = job_.createFileSet();
    isCreating_ = false;
    if (isCreated) {
      result_.label = job_.label();
      if (result_.label.empty()) result_.remarks.push_back(job_.errorText());
      return;
    }
    fail(job_.errorText());
    if (rootState(result_.root) == RootState::NotEmpty) {
      result_.remarks.push_back(whereFilesAre());
    }
    result_.patients = result_.studies = result_.series = result_.objects = 0;
    result_.bytes = 0;
  }

  [[nodiscard]] std::string whereFilesAre() const {
    if (options_.isMoving) {
      return "Every file is whole: those that were moved already are in " + result_.root +
             ", the others in their places.";
    }
    return "The file set in " + result_.root + " is not complete; the sources are as they were.";
  }

  // Runs beside the job, in a process that is about to end.
  void interrupted(Staging& staging) const {
    staging.remove();
    if (isCreating_) std::fprintf(stderr, "\nquillon: %s\n", whereFilesAre().c_str());
  }

  const CreateOptions& options_;
  ProgressBar progress_;
  MediaJob job_;
  CreateResult result_;
  std::string stagingParent_;
  bool isWiping_ = false;
  bool isWiped_ = false;
  std::atomic<bool> isCreating_ = false;
  std::vector<Candidate> candidates_;
  std::unordered_map<std::string, std::string> firstWithObject_;
  std::unordered_set<std::string> patients_;
  std::unordered_set<std::string> studies_;
  std::unordered_set<std::string> series_;
  std::optional<std::string> lastKey_;
};

}  // namespace

std::string absoluteRoot(std::string_view root) {
  std::string path = absolutePath(root);
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

CreateResult createFileSet(const CreateOptions& options) { return CreateJob(options).run(); }

}  // namespace quillon::cli
