#include "write_job.h"

#include <algorithm>
#include <filesystem>

#include "create_job.h"
#include "disc/imapi_version.h"
#include "disc_progress_scope.h"
#include "media_job.h"
#include "progress_bar.h"
#include "root_guard.h"
#include "source_walk.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

class WriteJob {
 public:
  explicit WriteJob(const WriteOptions& options)
      : options_(options), progress_(options.showsProgress) {}

  // What can be said before there is a file set.
  std::optional<std::string> check(const std::vector<std::string>& sources) {
    if (applySettings() && checkTarget(sources) && checkTestRun()) checkWipe(sources);
    return result_.error;
  }

  WriteResult run() {
    if (!check({}) && checkFileSet() && makeRoom()) {
      deliver();
      progress_.clear();
      if (result_.isWritten && !staysWhenWritten()) wipe();
    }
    result_.isKept = rootState(result_.root) == RootState::NotEmpty;
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
    switch (rootState(target)) {
      case RootState::Missing:
      case RootState::Empty:
        return true;
      case RootState::NotDirectory:
        return fail("The target " + target + " is not a directory.");
      case RootState::Unreadable:
        return fail("The directory " + target + " cannot be read.");
      case RootState::NotEmpty:
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
  bool checkFileSet() {
    std::error_code error;
    return fs::is_regular_file(fs::path(result_.root) / "DICOMDIR", error) ||
           fail("There is no file set in " + result_.root + ": it holds no DICOMDIR.");
  }

  // Objects of an earlier set must not lie beside the new ones, so whole directories go.
  bool makeRoom() {
    if (!result_.target || rootState(*result_.target) != RootState::NotEmpty) return true;
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
    result_.isWritten = job_.write();
    if (result_.isWritten) return;
    fail(job_.errorText());
    result_.remarks.push_back(
        "The file set stays in " + result_.root + "; quillon write can be repeated" +
        (result_.target ? ", with --overwrite once the target holds part of it." : "."));
  }

  void wipe() {
    job_.wipe();
    const RootState state = rootState(result_.root);
    if (state == RootState::Missing || state == RootState::Empty) return;
    fail("The file set is written, but the root directory " + result_.root + " cannot be wiped.");
  }

  const WriteOptions& options_;
  ProgressBar progress_;
  MediaJob job_;
  WriteResult result_;
};

}  // namespace

std::optional<std::string> reasonNotToWrite(const WriteOptions& options,
                                            const std::vector<std::string>& sources) {
  return WriteJob(options).check(sources);
}

WriteResult writeFileSet(const WriteOptions& options) { return WriteJob(options).run(); }

}  // namespace quillon::cli
