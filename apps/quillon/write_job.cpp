#include "write_job.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>

#include "create_job.h"
#include "disc/imapi_version.h"
#include "disc_progress_scope.h"
#include "interrupt_guard.h"
#include "media_job.h"
#include "progress_bar.h"
#include "root_guard.h"
#include "source_walk.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

class WriteJob {
 public:
  WriteJob(const WriteOptions& options, MediaJob& job)
      : options_(options), job_(job), progress_(options.showsProgress) {}

  // What can be said before there is a file set.
  std::optional<std::string> check(const std::vector<std::string>& sources) {
    if (applySettings() && checkTarget(sources) && checkTestRun()) checkWipe(sources);
    return result_.error;
  }

  WriteResult run() {
    if (!check({}) && takeFileSet() && makeRoom()) {
      const InterruptGuard guard([this] { interrupted(); });
      deliver();
      progress_.clear();
      if (result_.isWritten && !staysWhenWritten()) wipe();
    }
    result_.isKept = rootEntry(result_.root) == RootEntry::NotEmpty;
    return std::move(result_);
  }

 private:
  bool fail(std::string sentence) {
    result_.error = std::move(sentence);
    return false;
  }

  // After a test run the set is still the only one.
  [[nodiscard]] bool staysWhenWritten() const {
    return options_.isKeeping || options_.isSimulating;
  }

  bool applySettings() {
    if (options_.root && !job_.setRoot(absoluteRoot(*options_.root))) return fail(job_.errorText());
    if (options_.root && options_.root->empty()) return fail("The root directory has no name.");
    result_.root = job_.root();
    result_.isSimulated = options_.isSimulating;
    result_.volume = options_.volume.value_or("Quillon");
    if (options_.volume && !job_.setVolume(*options_.volume)) {
      return fail("The volume name " + *options_.volume + " has more than 32 characters.");
    }
    job_.setRecording(options_.isSimulating, options_.hasFullErase, options_.isEjecting);
    if (!options_.target) return true;
    result_.target = absoluteRoot(*options_.target);
    return job_.setTarget(*result_.target) || fail(job_.errorText());
  }

  bool checkTarget(const std::vector<std::string>& sources) {
    if (!result_.target) return true;
    const std::string& target = *result_.target;
    const std::string temporary = temporaryJobDirectory();
    if (!temporary.empty() && liesWithin(target, temporary)) {
      return fail("The directory " + target + " lies in " + temporary +
                  ", which every job removes.");
    }
    if (liesWithin(target, result_.root)) {
      return fail("The directory " + target + " lies in the root directory " + result_.root + ".");
    }
    if (liesWithin(result_.root, target)) {
      return fail("The root directory " + result_.root + " lies in the directory " + target + ".");
    }
    const auto held = std::find_if(sources.begin(), sources.end(), [&](const std::string& source) {
      return liesWithin(absolutePath(source), target);
    });
    if (held != sources.end()) {
      return fail("The directory " + target + " holds the source " + *held + ".");
    }
    switch (rootEntry(target)) {
      case RootEntry::Missing:
      case RootEntry::Empty:
        return true;
      case RootEntry::NotDirectory:
        return fail("The target " + target + " is not a directory.");
      case RootEntry::Unreadable:
        return fail("The directory " + target + " cannot be read.");
      case RootEntry::NotEmpty:
        break;
    }
    return options_.isOverwriting ||
           fail("The directory " + target +
                " is not empty; --overwrite replaces what has the name of something in the file "
                "set.");
  }

  // The current service would write in earnest.
  bool checkTestRun() {
    auto generation = DiscMasteringGeneration::None;
    if (!options_.isSimulating || options_.target) return true;
    CTarnImapiVersion::Instance().Detect(generation);
    return generation != DiscMasteringGeneration::Current ||
           fail("The disc-mastering service cannot make a test run: it would write the disc.");
  }

  bool checkWipe(const std::vector<std::string>& sources) {
    if (staysWhenWritten()) return true;
    std::vector<std::string> absolute;
    absolute.reserve(sources.size());
    for (const std::string& source : sources) absolute.push_back(absolutePath(source));
    const auto reason = reasonNotToWipe(result_.root, absolute);
    return !reason || fail(*reason + " With --keep it is written and stays.");
  }

  // Also keeps a directory that holds something else from being written, and wiped.
  bool takeFileSet() {
    if (rootEntry(result_.root) != RootEntry::Missing && !job_.claimRoot()) {
      return fail(job_.errorText());
    }
    const RootState state = job_.rootState();
    if (state == RootState::Unfinished) return fail(job_.unfinishedText());
    if (state == RootState::UnfinishedCopies) {
      return fail("The file set in " + result_.root +
                  " is not complete: the job that made or removed it did not finish. quillon wipe "
                  "removes it.");
    }
    std::error_code error;
    return fs::is_regular_file(fs::path(result_.root) / "DICOMDIR", error) ||
           fail("There is no file set in " + result_.root + ": it holds no DICOMDIR.");
  }

  // Objects of an earlier set must not lie beside the new ones, so whole directories go.
  bool makeRoom() {
    if (!result_.target || rootEntry(*result_.target) != RootEntry::NotEmpty) return true;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(result_.root, error)) {
      const fs::path old = fs::path(*result_.target) / entry.path().filename();
      fs::remove_all(old, error);
      if (error) return fail("Cannot remove " + old.string() + ": " + error.message() + ".");
    }
    return !error || fail("The root directory " + result_.root + " cannot be read.");
  }

  void deliver() {
    const DiscProgressScope discProgress(progress_);
    progress_.begin(result_.target ? "Copying the file set" : "Preparing the disc", 0);
    isCopying_ = result_.target.has_value();
    result_.isWritten = job_.write();
    isCopying_ = false;
    if (result_.isWritten) return;
    fail(job_.errorText());
    if (const std::string file = job_.failedFile(); result_.target && !file.empty()) {
      result_.remarks.push_back(file);
    }
    result_.remarks.push_back(
        "The file set stays in " + result_.root + "; quillon write --root " + result_.root +
        " can be repeated" +
        (result_.target ? ", with --overwrite once the target holds part of it." : "."));
  }

  // Runs beside the job, in a process that is about to end.
  void interrupted() const {
    if (!isCopying_) return;
    std::error_code error;
    const bool isDone = fs::exists(fs::path(*result_.target) / "DICOMDIR", error);
    sayBelowProgress("The copy in " + *result_.target + " is " +
                     (isDone ? "perhaps not complete" : "not complete: it has no DICOMDIR") +
                     "; the file set stays in " + result_.root + ".");
  }

  void wipe() {
    std::string asideDirectory;
    job_.wipe(/*removesAll=*/false, asideDirectory);
    const RootEntry state = rootEntry(result_.root);
    if (state == RootEntry::Missing || state == RootEntry::Empty) return;
    fail("The file set is written, but the root directory " + result_.root + " cannot be wiped.");
  }

  const WriteOptions& options_;
  MediaJob& job_;
  ProgressBar progress_;
  WriteResult result_;
  std::atomic<bool> isCopying_ = false;
};

}  // namespace

std::optional<std::string> reasonNotToWrite(const WriteOptions& options,
                                            const std::vector<std::string>& sources) {
  MediaJob job;
  return WriteJob(options, job).check(sources);
}

WriteResult writeFileSet(const WriteOptions& options, MediaJob& job) {
  return WriteJob(options, job).run();
}

}  // namespace quillon::cli
