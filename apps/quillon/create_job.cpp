#include "create_job.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <functional>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "disc_kinds.h"
#include "foundation/position_index.h"
#include "interrupt_guard.h"
#include "media_job.h"
#include "media_sources.h"
#include "medium_questions.h"
#include "platform/read_ahead.h"
#include "profiles/profile_check.h"
#include "progress_bar.h"
#include "root_guard.h"
#include "source_files.h"
#include "source_walk.h"
#include "staging.h"
#include "terminal_text.h"
#include "thrown.h"

namespace quillon::cli {

namespace {

constexpr const char* kCut = "the file ends before its pixel data does.";
constexpr const char* kNothingToAdd = "There is no DICOM file to add to the file set.";

// The files that are left out for what they are, and whether that ends the job.
enum class Ending { Never, OfNamed, Always };
struct Unfit {
  AddOutcome outcome;
  Ending ending;
  const char* reason;
};
// clang-format off
constexpr std::array kUnfit{
    Unfit{AddOutcome::NamesNoObject,      Ending::Never,   "it names no study, series or instance."},
    Unfit{AddOutcome::OtherDirectory,     Ending::Never,   "it is the directory of another file set."},
    Unfit{AddOutcome::NotDicom,           Ending::OfNamed, kNotDicom},
    Unfit{AddOutcome::IncompleteMetaInfo, Ending::Always,  "its file meta information is incomplete."},
    Unfit{AddOutcome::Deflated,           Ending::Always,  "its data set is deflated, and such files cannot be read."},
    Unfit{AddOutcome::PixelDataCut,       Ending::Always,  kCut},
};
// clang-format on

// What mkdir would have given a new directory.
mode_t usualDirectoryMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return mode_t{0777} & ~mask;
}

class CreateJob {
 public:
  CreateJob(const CreateOptions& options, MediaJob& job)
      : options_(options),
        selection_(selectionOf(options.selection)),
        job_(job),
        progress_(options.showsProgress) {}

  CreateResult run() {
    result_.isDryRun = options_.isDryRun;
    try {
      work();
    } catch (...) {
      passes(thrownOutcome());
      if (isCreating_) result_.remarks.push_back(whereFilesAre());
    }
    progress_.clear();
    remarkOnMissed();
    if (result_.outcome.failed()) forgetTotals();
    return std::move(result_);
  }

 private:
  // Steps answer whether the job goes on.
  bool passes(Outcome step) {
    result_.outcome = std::move(step);
    return !result_.outcome.failed();
  }
  bool fail(std::string sentence) { return passes(std::move(sentence)); }

  void work() {
    if (!applySettings() || !(options_.isDryRun ? lookAtRoot() : takeRoot())) return;
    Staging staging(stagingParent_, options_.mayLink);
    const InterruptGuard guard([this, &staging] { interrupted(staging); });
    if (collect(staging) && plan(staging) && !options_.isDryRun && layOut(staging)) create();
  }

  bool applySettings() {
    if (options_.root && !passes(job_.setRoot(absoluteRoot(*options_.root)))) return false;
    result_.root = job_.root();
    job_.setHierarchy(options_.hasHierarchy);
    if (!passes(applyOtherContent(options_.otherContent, options_.isStrict, job_))) return false;
    job_.setCharacterSet(options_.characterSet);
    job_.setRecords(options_.isInventing, options_.isForOnePatient);
    job_.setPlaceAmongMedia(options_.mediumNumber, options_.mediumCount);
    if (!applyPages()) return false;
    if (!passes(applyProfile())) return false;
    if (!options_.objectDirectory) return true;
    std::string name = *options_.objectDirectory;
    std::replace(name.begin(), name.end(), '/', '\\');
    return passes(job_.setObjectDirectory(name));
  }

  bool applyPages() {
    if (options_.hasPages) job_.setPages(*options_.hasPages);
    if (!passes(job_.askForPages())) return false;
    if (!options_.pageStylesheets) return true;
    job_.setPageStylesheets(absolutePath(*options_.pageStylesheets));
    return true;
  }

  Outcome applyProfile() {
    const ProfileChoice& choice = options_.profile;
    result_.profile.name = choice.isAuto() || choice.isNone()
                               ? choice.name
                               : std::string(choice.profiles.front()->name);
    if (choice.isNone()) return {};
    if (!job_.hasCurrentPractice()) {
      return "--profile needs the records of today, which CurrentPractice 0 switches off.";
    }
    std::vector<const Profile*> profiles = choice.profiles;
    if (!options_.mediumKind.empty()) {
      std::erase_if(profiles, [this](const Profile* profile) {
        return !TakesMedium(*profile, options_.mediumKind);
      });
    }
    if (choice.isAuto()) {
      if (profiles.empty() && options_.isStrict) {
        return "A file set on " + mediumText() + " meets none of the profiles.";
      }
      job_.setProfiles(std::move(profiles), options_.isStrict);
      return {};
    }
    const Profile& profile = *choice.profiles.front();
    if (profiles.empty()) noteMedium(profile);
    if (profiles.empty() && options_.isStrict) {
      return "The file set does not meet " + std::string(profile.name) + ": " +
             MediumRule(profile) + "; it is " + mediumText() + ".";
    }
    job_.setProfiles(choice.profiles, options_.isStrict);
    return {};
  }

  void noteMedium(const Profile& profile) {
    ++result_.profile.count;
    result_.profile.faults.push_back({{}, MediumRule(profile), mediumText()});
  }

  [[nodiscard]] std::string mediumText() const {
    const std::string& kind = options_.mediumKind;
    return kind == "image"       ? "an image of a disc"
           : kind == "directory" ? "a directory"
           : kind == "zip"       ? "a ZIP file"
                                 : "a " + discName(kind);
  }

  // Also of a plan that was refused for it.
  void tellOfProfiles() {
    for (const ProfileReport& report : job_.profileReports()) {
      if (options_.profile.isAuto()) {
        if (report.count == 0) result_.profile.met.emplace_back(report.profile->name);
        continue;
      }
      result_.profile.count += report.count;
      for (const ProfileViolation& one : report.violations) {
        const Text& source = one.source.Get();
        result_.profile.faults.push_back({source.empty() ? "" : files_.nameOf(narrow(source)),
                                          narrow(one.rule), narrow(one.found)});
      }
    }
    for (std::string& remark : remarksOn(result_.profile)) {
      result_.remarks.push_back(std::move(remark));
    }
  }

  // What takeRoot would refuse, but for a root that another job has.
  bool lookAtRoot() {
    // Only what has a name that the system does not take is staged, by another name.
    stagingParent_ = temporaryDirectory();
    const RootEntry now = rootEntry(result_.root);
    switch (now) {
      case RootEntry::NotDirectory:
      case RootEntry::Unreadable:
        return failAtRoot(now);
      case RootEntry::NotEmpty:
        return mayReplace();
      case RootEntry::Missing:
      case RootEntry::Empty:
        break;
    }
    return passes(mayFill(result_.root));
  }

  bool failAtRoot(RootEntry entry) {
    return fail(entry == RootEntry::NotDirectory
                    ? "The root " + result_.root + " is not a directory."
                    : "The root directory " + result_.root + " cannot be read.");
  }

  // From here to the end of the delivery the root is this job's, and what is found in it stays so.
  bool takeRoot() {
    stagingParent_ = Staging::parentFor(result_.root);
    std::vector<std::string> removed;
    Staging::removeAbandoned(stagingParent_, removed);
    const RootEntry before = rootEntry(result_.root);
    if (before == RootEntry::NotDirectory) return failAtRoot(before);
    if (!passes(job_.claimRoot())) return false;
    if (before == RootEntry::Missing) {
      // Patients' images are nobody else's while they are worked on.
      isRootMade_ = ::chmod(result_.root.c_str(), 0700) == 0;
    }
    const RootEntry now = rootEntry(result_.root);
    if (now == RootEntry::Unreadable) return failAtRoot(now);
    return now == RootEntry::Empty || mayReplace();
  }

  bool mayReplace() {
    if (job_.rootState() == RootState::Unfinished) {
      result_.remarks.push_back("quillon wipe --root " + result_.root +
                                " sets them aside; with --force it removes them.");
      return fail(job_.errorText());
    }
    if (!options_.isReplacing) {
      return fail("The root directory " + result_.root +
                  " is not empty; --replace wipes it before the file set is created.");
    }
    std::vector<std::string> sources;
    for (const std::string& source : options_.sources) sources.push_back(absolutePath(source));
    std::ranges::move(contentSources(options_.otherContent), std::back_inserter(sources));
    isWiping_ = passes(mayWipe(result_.root, sources));
    return isWiping_;
  }

  // The exit status of a job that keeps going does not tell of them.
  void remarkOnMissed() {
    const auto missed = std::ranges::count_if(result_.passedOver, &PassedOver::isMissed);
    if (missed == 0) return;
    result_.remarks.push_back(missed == 1
                                  ? "A file that was to be added is not in the file set."
                                  : std::to_string(missed) +
                                        " files that were to be added are not in the file set.");
  }

  // Answers whether the job goes on.
  bool leaveOut(const std::string& path, const std::string& reason, bool endsJob) {
    if (endsJob && !options_.isKeepingGoing) {
      const bool isSentence = !reason.empty() && reason.front() >= 'A' && reason.front() <= 'Z';
      return fail(isSentence ? reason : "Cannot add " + path + ": " + reason);
    }
    result_.passedOver.push_back({path, reason, endsJob});
    return true;
  }

  // What a file that cannot be read at all ends the job with is the object's sentence; the system's
  // reason stands beside it.
  bool leaveOutUnreadable(const std::string& path, const std::string& reason, bool endsJob) {
    if (endsJob && !options_.isKeepingGoing) {
      result_.remarks.push_back(path + ": " + reason);
      return fail("Cannot read the DICOM information from " + path + ".");
    }
    return leaveOut(path, reason, endsJob);
  }

  bool collect(Staging& staging) {
    MediaSources media(options_.isViaDicomDir);
    const std::vector<std::string> plain = media.takeFrom(options_.sources);
    SourceList list = walkSources(plain, {options_.intoSubdirectories, result_.root});
    std::vector<std::string> stored;
    const std::size_t walked = list.files.size();
    if (!passes(media.list(staging, list, stored))) return false;
    if (options_.part != nullptr) list.problems.clear();
    for (const SourceProblem& problem : list.problems) {
      const bool goesOn = problem.isMissing
                              ? leaveOutUnreadable(problem.path, problem.reason, problem.endsJob)
                              : leaveOut(problem.path, problem.reason, problem.endsJob);
      if (!goesOn) return false;
    }
    files_.take(std::move(list.files));
    for (std::size_t i = 0; i < stored.size(); ++i) {
      if (!stored[i].empty()) files_.noteStored(walked + i, stored[i]);
    }
    progress_.begin("Reading", files_.size(), ProgressUnit::Files);
    ReadAhead ahead(files_.size(),
                    [this](std::size_t i) { return wide(absolutePath(files_[i].path)); });
    for (std::size_t i = 0; i < files_.size(); ++i) {
      const ReadAhead::Turn turn(ahead, i);
      if (!add(i, staging)) return false;
      progress_.advance(i + 1);
    }
    if (files_.hasAdded()) return true;
    return fail(result_.notSelected == 0 ? std::string(kNothingToAdd)
                                         : "The selection leaves out all of the DICOM files: " +
                                               std::to_string(result_.notSelected) + ".");
  }

  [[nodiscard]] bool isMoved(const SourceFile& file) const {
    return options_.isMoving && !file.isLink;
  }

  // Fails when the system takes no such path, so that the file can be added as a copy only.
  Outcome canBeMoved(const std::string& path) {
    // The system takes a backslash for a separator of directories.
    if (path.find('\\') != std::string::npos) return "a path with a backslash cannot be moved.";
    return job_.takesPath(path);
  }

  bool add(std::size_t i, Staging& staging) {
    const SourceFile& file = files_[i];
    if (options_.part != nullptr && !options_.part->contains(file.path)) return true;
    std::string path = absolutePath(file.path);
    bool isRenamed = false;
    if (const std::string* stored = files_.storedAt(i); stored != nullptr) {
      path = *stored;
      isRenamed = true;
    } else if (const Outcome named = canBeMoved(path); named.failed()) {
      if (isMoved(file)) return leaveOut(file.path, named.text(), true);
      const Outcome renamed = staging.nameIn(absolutePath(file.path), path);
      if (renamed.failed()) return fail("Cannot add " + file.path + ": " + renamed.text());
      isRenamed = true;
    }
    const Added added =
        job_.addFile(path, {options_.patientKey, options_.isStrict,
                            options_.isStrict && !options_.isInventing, &selection_});
    switch (added.outcome) {
      case AddOutcome::Added:
        if (added.isPixelDataCut) result_.remarks.push_back(file.path + ": " + kCut);
        files_.noteAdded(i, path, isRenamed);
        return true;
      case AddOutcome::AlreadyAdded:
        return leaveOutSecond(file, added.firstFile);
      case AddOutcome::NotSelected:
        ++result_.notSelected;
        return true;
      case AddOutcome::Refused:
        if (const Outcome read = canBeRead(path); read.failed()) {
          return leaveOutUnreadable(file.path, read.text(), true);
        }
        return leaveOut(file.path, replaced(job_.errorText(), path, file.path), true);
      case AddOutcome::KeysMissing:
        return leaveOut(file.path,
                        "it has no " + keyNames(added.missingKeys) + ", which a DICOMDIR requires.",
                        true);
      default:
        break;
    }
    const auto unfit = std::ranges::find(kUnfit, added.outcome, &Unfit::outcome);
    return leaveOut(
        file.path, unfit->reason,
        unfit->ending == Ending::Always || (unfit->ending == Ending::OfNamed && file.isNamed));
  }

  bool leaveOutSecond(const SourceFile& file, const std::string& firstFile) {
    const std::string& path = files_.nameOf(firstFile);
    if (absolutePath(path) == absolutePath(file.path)) return true;
    return leaveOut(file.path, "it holds the same object as " + path + ".", false);
  }

  bool plan(Staging& staging) {
    job_.setEmptiesRoot(isWiping_);
    if (!options_.isMoving) job_.setCopies(!options_.isDryRun && staging.needsRoom());
    const Outcome made = options_.isDryRun ? job_.preview() : job_.plan();
    tellOfProfiles();
    if (made.failed()) return fail(files_.inUsersWords(made.text()));
    const PlannedFileSet& planned = job_.planned();
    if (options_.part != nullptr && planned.objects.size() != options_.part->size()) {
      return fail("The sources have changed since it was planned what goes on which medium.");
    }
    if (options_.tellsObjects) tellOfObjects(planned);
    for (const Text& id : planned.patientIds) result_.patientIds.push_back(narrow(id));
    for (const Text& uid : planned.studyUids) result_.studyUids.push_back(narrow(uid));
    if (options_.askSize && !passes(options_.askSize(planned.room))) return false;
    if (options_.isDryRun) tellOfDryRun(planned);
    result_.patients = planned.patients;
    result_.studies = planned.studies;
    result_.series = planned.series;
    result_.objects = planned.objects.size();
    result_.bytes = planned.bytes;
    for (const MissingKey& one : planned.incomplete) {
      result_.incomplete.push_back({files_.nameOf(narrow(one.source)), one.tag, one.isMadeUp});
    }
    for (std::string& remark : remarksOn(result_.incomplete)) {
      result_.remarks.push_back(std::move(remark));
    }
    for (std::string& remark : remarksOn(planned.repeatedPatients)) {
      result_.remarks.push_back(std::move(remark));
    }
    if (!planned.contentGap.empty()) {
      result_.remarks.push_back(narrow(planned.contentGap) + " The medium goes without it.");
    }
    for (const Text& remark : planned.pageRemarks) {
      result_.remarks.push_back(files_.inUsersWords(narrow(remark)));
    }
    for (const Text& line : planned.labelRemarks) {
      result_.remarks.push_back("The label leaves out \"" + narrow(line) + "\": it is not a date.");
    }
    return true;
  }

  void tellOfObjects(const PlannedFileSet& planned) {
    const std::vector<PlannedSeries>& series = planned.seriesOfObjects;
    for (std::size_t i = 0; i < series.size(); ++i) {
      const std::size_t end =
          i + 1 < series.size() ? series[i + 1].firstObject : planned.objects.size();
      result_.seriesOfObjects.push_back({narrow(series[i].studyUid), narrow(series[i].studyDate),
                                         series[i].firstObject, end - series[i].firstObject});
    }
    for (const PlannedObject& object : planned.objects) {
      result_.plannedObjects.push_back(
          {files_.nameOf(narrow(object.source.Get())), object.sizeBytes});
    }
  }

  void tellOfDryRun(const PlannedFileSet& planned) {
    result_.label = narrow(planned.label);
    result_.discSectors = planned.room.MostSectors();
    const auto free = freeBytesAt(result_.root);
    if (!free || *free >= planned.bytesOnDisk || options_.isMoving || options_.mayLink) return;
    // Whether they share their blocks with the sources is found out by trying.
    result_.remarks.push_back("The file system of " + result_.root + " has " + roomText(*free) +
                              " free, and copies of the files take " +
                              neededText(planned.bytesOnDisk) +
                              " where they cannot share that with them.");
  }

  // The old file set goes away only when everything for the new one is there, after a power cut
  // too.
  bool layOut(Staging& staging) {
    if (!copySources(staging)) return false;
    if (!isWiping_) return true;
    const Outcome flushed = staging.flush();
    if (flushed.failed()) {
      return fail("Cannot replace the file set in " + result_.root + ": " + flushed.text());
    }
    return !job_.clearRoot(staging.name()).failed() ||
           fail("The root directory " + result_.root + " cannot be wiped.");
  }

  bool copySources(Staging& staging) {
    const std::vector<PlannedObject>& objects = job_.planned().objects;
    progress_.begin("Copying", result_.bytes, ProgressUnit::Bytes);
    staging.setProgress([this](std::uint64_t bytes) { progress_.advance(copiedBytes_ + bytes); });
    for (std::size_t i = 0; i < objects.size(); ++i) {
      const std::string source = narrow(objects[i].source.Get());
      const SourceFile& file = *files_.find(source);
      if (!isMoved(file)) {
        std::string copy;
        // Nothing that follows can be copied either when the disk is full.
        const bool isCopy = staging.holds(source) && files_.isStored(source);
        const Outcome copied = isCopy ? Outcome() : staging.copyIn(source, copy);
        if (isCopy) copy = source;
        if (copied.failed()) return fail("Cannot add " + file.path + ": " + copied.text());
        const Outcome taken = job_.handOver(i, copy);
        if (taken.failed()) return fail(replaced(taken.text(), source, file.path));
      }
      progress_.advance(copiedBytes_ += objects[i].sizeBytes);
    }
    return true;
  }

  void create() {
    progress_.begin("Creating the file set", result_.bytes, ProgressUnit::Bytes);
    job_.setProgress([this](std::uint64_t done, std::uint64_t) { progress_.advance(done); });
    isCreating_ = true;
    const Outcome created = job_.createPlanned();
    isCreating_ = false;
    job_.setProgress({});
    if (!created.failed()) {
      if (isRootMade_) ::chmod(result_.root.c_str(), usualDirectoryMode());
      result_.label = job_.label();
      if (result_.label.empty()) result_.remarks.push_back(job_.errorText());
      return;
    }
    fail(files_.inUsersWords(created.text()));
    if (const std::string file = job_.failedFile(); !file.empty()) result_.remarks.push_back(file);
    if (rootEntry(result_.root) == RootEntry::NotEmpty) result_.remarks.push_back(whereFilesAre());
  }

  void forgetTotals() {
    result_.patients = result_.studies = result_.series = result_.objects = 0;
    result_.bytes = 0;
  }

  [[nodiscard]] std::string whereFilesAre() const {
    if (options_.isMoving) {
      return "Every file is whole: those that were moved already are in " + result_.root +
             ", where UNFINISHED.TXT names them, the others in their places.";
    }
    return "The file set in " + result_.root + " is not complete; the sources are as they were.";
  }

  // Runs beside the job, in a process that is about to end.
  void interrupted(Staging& staging) const {
    staging.remove();
    if (isRootMade_) ::rmdir(result_.root.c_str());
    if (isCreating_) sayBelowProgress(whereFilesAre());
    if (options_.whenInterrupted) options_.whenInterrupted();
  }

  const CreateOptions& options_;
  const ObjectSelection selection_;
  MediaJob& job_;
  ProgressBar progress_;
  CreateResult result_;
  std::string stagingParent_;
  bool isRootMade_ = false;
  bool isWiping_ = false;
  std::atomic<bool> isCreating_ = false;
  std::uint64_t copiedBytes_ = 0;
  SourceFiles files_;
};

}  // namespace

std::string absoluteRoot(std::string_view root) {
  namespace fs = std::filesystem;
  fs::path path = absolutePath(root);
  // What is above a link's target is not what is above the link, so only what ".." leads out of is
  // looked up; the rest keeps the names that the user gave.
  const auto leadsUp = [](const fs::path& whole) {
    return std::find(whole.begin(), whole.end(), "..") != whole.end();
  };
  while (leadsUp(path)) {
    fs::path upper;
    auto part = path.begin();
    for (; *part != ".."; ++part) upper /= *part;
    std::error_code error;
    fs::path above = fs::weakly_canonical(upper / *part, error);
    if (error) break;  // the making of the root will say what is wrong with it
    for (++part; part != path.end(); ++part) above /= *part;
    path = above;
  }
  std::string name = path.lexically_normal().string();
  while (name.size() > 1 && name.ends_with('/')) name.pop_back();
  return name;
}

CreateResult createFileSet(const CreateOptions& options, MediaJob& job) {
  return CreateJob(options, job).run();
}

}  // namespace quillon::cli
