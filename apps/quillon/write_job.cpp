#include "write_job.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <thread>
#include <utility>

#include "create_job.h"
#include "disc_kinds.h"
#include "disc_medium.h"
#include "disc_progress_scope.h"
#include "disc_wait.h"
#include "image_output.h"
#include "interrupt_guard.h"
#include "media_job.h"
#include "medium_questions.h"
#include "read_back.h"
#include "recording/disc_interruption.h"
#include "recording/virtual_discs.h"
#include "root_guard.h"
#include "set_sums.h"
#include "source_walk.h"
#include "terminal_text.h"
#include "thrown.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds kPatienceWithFiles{30};

// A drive that has just taken a disc looks at it first.
constexpr int kMostQuestions = 30;
constexpr std::chrono::seconds kReadyWait{1};

// Whoever has named none may not need one.
std::string withoutRecorder(const platform::DiscResult& answer, const std::string& named) {
  std::string sentence = narrow(answer.text);
  if (!named.empty() || answer.code != HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) return sentence;
  return sentence + " None is needed with --to DIRECTORY, --iso FILE or --zip FILE.";
}

bool readsDiscBack(const WriteOptions& options) {
  return options.isReadBack && !options.isSimulating && !options.target && !options.image &&
         !options.zip;
}

// The recorder is free again when it comes back.
Outcome checkDisc(ReadBack& reading, const std::string& what, const std::string& recorder,
                  std::vector<std::string>& remarks) {
  DiscMedium disc;
  if (const Outcome opened = disc.open(recorder); opened.failed()) {
    return what + " cannot be read back: " + opened.text();
  }
  Outcome compared = reading.check(disc.source(), remarks);
  remarks.insert(remarks.end(), disc.failures().begin(), disc.failures().end());
  return compared;
}

Outcome ejectWritten(WriteResult& result) {
  std::string image;
  bool hadDisc = false;
  const platform::DiscResult ejected = platform::ejectDisc(result.recorder, image, hadDisc);
  if (!image.empty()) result.image = image;
  if (!ejected.failed()) return {};
  result.remarks.push_back("The disc in " + result.recorder +
                           " is written all the same; the file set stays in " + result.root + ".");
  return narrow(ejected.text);
}

// Names and inodes of what lies in a directory.
std::vector<std::pair<std::string, ino_t>> entriesOf(const std::string& directory) {
  std::vector<std::pair<std::string, ino_t>> entries;
  std::error_code error;
  for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error)) {
    struct stat status {};
    if (::lstat(it->path().c_str(), &status) == 0) {
      entries.emplace_back(it->path().filename().string(), status.st_ino);
    }
  }
  return entries;
}

}  // namespace

Delivery::Delivery(const WriteOptions& options, MediaJob& job, std::function<void()> keepRoot)
    : options_(options),
      job_(job),
      keepRoot_(std::move(keepRoot)),
      progress_(options.showsProgress) {}

Outcome Delivery::ask(const std::vector<std::string>& sources) {
  isAsked_ = true;
  static_cast<void>(checkSettings(sources) && askMedium());
  return result_.outcome;
}

Outcome Delivery::askSize(const DiscRoom& ofSet) {
  const DiscRoom room = withSums(ofSet);
  if (file_) return file_->askRoom(room);
  if (!result_.target) {
    return mayFit(recorder_, room.LeastSectors(job_.hasCurrentDiscService()));
  }
  // What is in the way gives back room that is not known here.
  const RootEntry target = rootEntry(*result_.target);
  if (target != RootEntry::Missing && target != RootEntry::Empty) return {};
  return mayHold(*result_.target, room.Bytes());
}

std::string Delivery::mediumKind() const {
  return result_.zip ? "zip" : file_ ? "image" : result_.target ? "directory" : recorder_.media;
}

WriteResult Delivery::run() {
  bool isThrown = false;
  try {
    work();
  } catch (...) {
    isThrown = true;
    passes(thrownOutcome());
    progress_.clear();
  }
  result_.writtenDiscs = writtenDiscs_;
  result_.isKept = rootEntry(result_.root) == RootEntry::NotEmpty;
  if (isThrown && isDelivering_.exchange(false)) {
    tellFailure();
  } else if (isThrown && result_.isKept) {
    result_.remarks.push_back("The file set stays in " + result_.root + ".");
  }
  return std::move(result_);
}

void Delivery::work() {
  const bool isReady = isAsked_ ? takeFileSet()
                                : checkSettings({}) && takeFileSet() && askMedium() &&
                                      passes(askSize(roomOfDirectory(result_.root, kSumsName)));
  if (isReady && options_.isDryRun) {
    lookAtSet();
  } else if (isReady && makeRoom() && beginSums()) {
    deliver();
  }
}

// After a test run the set is still the only one.
bool Delivery::staysWhenWritten() const { return options_.isKeeping || options_.isSimulating; }

bool Delivery::checkSettings(const std::vector<std::string>& sources) {
  return applySettings() && chooseSums() && checkTarget(sources) && checkTestRun() &&
         checkWipe(sources);
}

bool Delivery::applySettings() {
  if (options_.root && !passes(job_.setRoot(absoluteRoot(*options_.root)))) return false;
  result_.root = job_.root();
  result_.isSimulated = options_.isSimulating;
  result_.isDryRun = options_.isDryRun;
  result_.discs = options_.discs;
  result_.volume = options_.volume.value_or("Quillon");
  if (options_.volume && !passes(job_.setVolume(*options_.volume))) return false;
  // A disc that is read back is ejected after that.
  job_.setRecording(options_.isSimulating, options_.hasFullErase,
                    options_.isEjecting && !readsDiscBack(options_));
  applyFile();
  if (!options_.target) return true;
  result_.target = absoluteRoot(*options_.target);
  return passes(job_.setTarget(*result_.target));
}

void Delivery::applyFile() {
  if (!options_.image && !options_.zip) return;
  MediumOutputOptions file;
  file.kind = options_.zip ? MediumOutputOptions::Kind::Zip : MediumOutputOptions::Kind::Image;
  const std::string& path = options_.zip ? *options_.zip : *options_.image;
  file.path = path == "-" ? path : absolutePath(path);
  file.isReplacing = options_.isOverwriting;
  file.isCompressing = options_.isCompressing;
  file.passwordFile = options_.passwordFile;
  (options_.zip ? result_.zip : result_.imageFile) = file.path;
  file_.emplace(std::move(file));
}

bool Delivery::checkTarget(const std::vector<std::string>& sources) {
  if (file_) return passes(file_->check(result_.root, sources));
  if (!result_.target) return true;
  const std::string& target = *result_.target;
  const std::string temporary = temporaryJobDirectory();
  if (!temporary.empty() && liesWithin(target, temporary)) {
    return fail("The directory " + target + " lies in " + temporary + ", which every job removes.");
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
bool Delivery::checkTestRun() {
  if (!options_.isSimulating || options_.target) return true;
  return !job_.hasCurrentDiscService() ||
         fail("The disc-mastering service cannot make a test run: it would write the disc.");
}

bool Delivery::checkWipe(const std::vector<std::string>& sources) {
  if (staysWhenWritten()) return true;
  std::vector<std::string> absolute;
  absolute.reserve(sources.size());
  for (const std::string& source : sources) absolute.push_back(absolutePath(source));
  const Outcome wiped = mayWipe(result_.root, absolute);
  return !wiped.failed() || fail(wiped.text() + " With --keep it is written and stays.");
}

bool Delivery::askMedium() {
  if (file_) return true;
  return result_.target ? passes(mayFill(*result_.target)) : askRecorder();
}

// Once, because a drive takes its time to answer. The job has no other recorder then. Chosen before
// it is asked: so a virtual one is found that the service would not list.
bool Delivery::askRecorder() {
  platform::chooseDiscRecorder(options_.recorder);
  progress_.begin("Waiting for the disc", 0, ProgressUnit::Bytes);
  for (int asked = 1;; ++asked) {
    const platform::DiscResult answer =
        platform::describeDiscRecorder(options_.recorder, recorder_);
    if (answer.failed()) return fail(withoutRecorder(answer, options_.recorder));
    if (!recorder_.isBecomingReady || asked == kMostQuestions) break;
    progress_.advance(0);
    std::this_thread::sleep_for(kReadyWait);
  }
  progress_.clear();
  platform::chooseDiscRecorder(recorder_.name);
  result_.recorder = recorder_.name;
  result_.isVirtual = recorder_.isVirtual;
  if (!passes(mayRecord(recorder_))) return false;
  if (options_.isDryRun && recorder_.freeSectors < recorder_.usableSectors) {
    result_.remarks.push_back("The " + discName(recorder_.media) + " in " + recorder_.name +
                              " holds data, which would be erased.");
  }
  return true;
}

// Also keeps a directory that holds something else from being written, and wiped.
bool Delivery::takeFileSet() {
  const bool isTaken = !options_.isDryRun && rootEntry(result_.root) != RootEntry::Missing;
  return (!isTaken || passes(job_.claimRoot())) && checkState();
}

bool Delivery::checkState() {
  const RootState state = job_.rootState();
  if (state == RootState::Unfinished) return fail(job_.errorText());
  if (state == RootState::UnfinishedCopies) {
    return fail("The file set in " + result_.root +
                " is not complete: the job that made or removed it did not finish. quillon wipe "
                "removes it.");
  }
  std::error_code error;
  return fs::is_regular_file(fs::path(result_.root) / "DICOMDIR", error) ||
         fail("There is no file set in " + result_.root + ": it holds no DICOMDIR.");
}

// A test run writes nothing that anybody would check.
bool Delivery::chooseSums() {
  hasSums_ = options_.hasSums.value_or(job_.hasCurrentPractice()) && !options_.isSimulating;
  if (!hasSums_ || SetSums::isPossible()) return true;
  hasSums_ = false;
  const char* const kWhy = "The system cannot compute SHA-256: its libcrypto is missing.";
  if (options_.hasSums) return fail(kWhy);
  result_.remarks.push_back(std::string(kWhy) + " What is written has no SHA256SUMS.");
  return true;
}

DiscRoom Delivery::withSums(const DiscRoom& room) const {
  DiscRoom all = room;
  if (hasSums_) {
    all.AddFile(SetSums::leastBytes(room.Files()), SetSums::mostBytes(room.Files()));
  }
  return all;
}

// Those of another delivery may be those of other files by now.
bool Delivery::beginSums() {
  if (options_.isSimulating) return true;
  if (!hasSums_) {
    std::error_code error;
    fs::remove(fs::path(result_.root) / kSumsName, error);
    return true;
  }
  return passes(sums_.emplace(result_.root).begin());
}

// The delivery is done but for them.
Outcome Delivery::finishSums() {
  if (!sums_) return {};
  if (Outcome made = sums_->finish(); made.failed()) return made;
  result_.sums = sums_->sums();
  return result_.target ? sums_->write(*result_.target, /*isFlushed=*/true) : Outcome();
}

// Objects of an earlier set must not lie beside the new ones, so whole directories go.
bool Delivery::makeRoom() {
  if (!result_.target || rootEntry(*result_.target) != RootEntry::NotEmpty) return true;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(result_.root, error)) {
    const fs::path old = fs::path(*result_.target) / entry.path().filename();
    fs::remove_all(old, error);
    if (error) return fail("Cannot remove " + old.string() + ": " + error.message() + ".");
  }
  // Those of an earlier set would be wrong now.
  fs::remove(fs::path(*result_.target) / kSumsName, error);
  return !error || fail("The root directory " + result_.root + " cannot be read.");
}

void Delivery::lookAtSet() {
  const DiscRoom room = roomOfDirectory(result_.root);
  result_.found =
      FoundSet{room.Files(), room.Bytes(), labelOfFileSet(result_.root), room.MostSectors()};
}

void Delivery::deliver() {
  const DiscProgressScope discProgress(progress_);
  if (options_.lookAtSet) options_.lookAtSet(result_.root);
  const InterruptGuard guard(
      [this, &discProgress] {
        interrupted(discProgress);
        if (options_.whenInterrupted) options_.whenInterrupted();
      },
      result_.target || file_ ? kPatienceWithFiles : std::chrono::seconds(kPatienceWithDrive));
  for (int number = 1; number <= options_.discs; ++number) {
    if ((number > 1 && !awaitDisc(number)) || !deliverOne()) {
      if (number > 1) {
        result_.isWritten = false;  // not as often as it should be
        result_.remarks.push_back(std::to_string(number - 1) + " of " +
                                  std::to_string(options_.discs) + " discs " +
                                  (number == 2 ? "is" : "are") + " written.");
      }
      return;
    }
    writtenDiscs_ = number;
  }
  if (options_.lookAtSet) options_.lookAtSet(result_.root);
  if (!staysWhenWritten()) wipe();
}

bool Delivery::deliverOne() {
  progress_.begin(activity(), 0, ProgressUnit::Bytes);
  isDelivering_ = true;
  const Outcome written = writeOut();
  isDelivering_ = false;
  progress_.clear();
  result_.isWritten = passes(written);
  if (!result_.isWritten) {
    tellFailure();
    return false;
  }
  if (!result_.isSimulated) findImage();
  if (file_ && !file_->remark().empty()) result_.remarks.push_back(file_->remark());
  return readBack();
}

bool Delivery::awaitDisc(int number) {
  isAwaitingDisc_ = true;
  const Outcome there =
      cli::awaitDisc(recorder_.name, discOf(number, options_.discs), options_.discWait, recorder_);
  isAwaitingDisc_ = false;
  return passes(there);
}

// Of a file that was done before it took its name. A disc that is not what was written stays in its
// drive, to be looked at.
bool Delivery::readBack() {
  const bool isDisc = readsDiscBack(options_);
  if (!isDisc && (!options_.isReadBack || !result_.target)) return true;
  isReadingBack_ = true;
  const Outcome compared = isDisc ? compare("The disc in " + recorder_.name, "")
                                  : compare("The copy in " + *result_.target, *result_.target);
  isReadingBack_ = false;
  progress_.clear();
  if (!compared.failed()) {
    return !isDisc || !options_.isEjecting || passes(ejectWritten(result_));
  }
  result_.remarks.push_back((isDisc
                                 ? "The disc stays in " + recorder_.name + ", and the file set in "
                                 : "The file set stays in ") +
                            result_.root + ".");
  return passes(compared);
}

// An empty path is that of the disc.
Outcome Delivery::compare(const std::string& what, const std::string& path) {
  bool hasTotal = false;
  ReadBack reading(result_.root, what, [&](std::uint64_t done, std::uint64_t total) {
    if (!std::exchange(hasTotal, true)) {
      progress_.begin("Reading back", total, ProgressUnit::Bytes);
    }
    progress_.advance(done);
  });
  Outcome compared = path.empty()
                         ? checkDisc(reading, what, recorder_.name, result_.remarks)
                         : reading.check(path, file_ ? file_->password() : "", result_.remarks);
  if (!compared.failed()) result_.verifiedFiles = reading.files();
  return compared;
}

const char* Delivery::activity() const {
  if (file_) return file_->isZip() ? "Packing the file set" : "Writing the image";
  return result_.target ? "Copying the file set" : "Preparing the disc";
}

Outcome Delivery::writeOut() {
  bool hasTotal = false;
  const auto advance = [&](std::uint64_t done, std::uint64_t total) {
    if (!std::exchange(hasTotal, true)) {
      progress_.begin(file_ ? activity() : "Copying the file set", total, ProgressUnit::Bytes);
    }
    progress_.advance(done);
    if (sums_) sums_->follow(done);
  };
  Outcome written;
  if (file_) {
    OutputFile::Check check;
    if (options_.isReadBack && !options_.isStreaming()) {
      check = [this](const std::string& path) {
        return compare("The file " + file_->options().path, path);
      };
    }
    SetSums* const sums = sums_ ? &*sums_ : nullptr;
    written = file_->write(result_.root, result_.volume, sums, advance, check);
  } else {
    job_.setProgress(advance);
    written = result_.target ? job_.write() : writeDisc();
    job_.setProgress({});
  }
  if (!written.failed()) return finishSums();
  // What went wrong with them is more than that they cannot be read.
  return sums_ && sums_->failure().failed() ? sums_->failure() : written;
}

// The legacy service is handed the files beforehand; the current one makes the image while it
// writes.
Outcome Delivery::writeDisc() {
  std::optional<platform::LateFileScope> late;
  if (sums_ && !job_.hasCurrentDiscService()) {
    if (Outcome made = sums_->finish(); made.failed()) return made;
  } else if (sums_) {
    sums_->follow(std::numeric_limits<std::uint64_t>::max());
    late.emplace(lateFileOf(*sums_, result_.root));
  }
  return job_.write();
}

void Delivery::tellFailure() {
  if (const std::string file = job_.failedFile(); result_.target && !file.empty()) {
    result_.remarks.push_back(file);
  }
  const bool isDisc = !result_.target && !file_;
  const platform::DiscWork work = platform::lastDiscWork();
  if (isDisc && !work.failure.empty()) result_.remarks.push_back(work.failure);
  if (isDisc && work.isWritten) {
    result_.remarks.push_back("The disc in " + recorder_.name +
                              " is written all the same; the file set stays in " + result_.root +
                              ".");
    return;
  }
  result_.remarks.push_back(
      "The file set stays in " + result_.root + "; quillon write --root " + result_.root +
      " can be repeated" +
      (result_.target ? ", with --overwrite once the target holds part of it." : "."));
}

void Delivery::findImage() {
  if (!recorder_.isVirtual) return;
  result_.image = platform::lastDiscWork().ejectedTo;
  platform::VirtualRecorderStatus status;
  if (result_.image.empty() && !platform::virtualRecorderStatus(recorder_.name, status).failed()) {
    result_.image = status.image;
  }
}

// Runs beside the job, in a process that is about to end.
void Delivery::interrupted(const DiscProgressScope& discProgress) {
  if (!isDelivering_ && !isReadingBack_ && !isAwaitingDisc_) return;
  if (keepRoot_) keepRoot_();
  // Nothing else holds the drive then.
  if (isReadingBack_ && !result_.target) static_cast<void>(platform::StopDiscOperations());
  std::string told = isAwaitingDisc_ ? std::to_string(writtenDiscs_) + " of " +
                                           std::to_string(options_.discs) + " discs are written"
                     : isReadingBack_ ? "What was written was not compared to its end"
                     : file_          ? file_->abandon()
                     : result_.target ? whatIsCopied()
                                      : endDiscWork(discProgress);
  if (told.ends_with('.')) told.pop_back();
  sayBelowProgress(told + "; the file set stays in " + result_.root + ".");
}

std::string Delivery::whatIsCopied() const {
  std::size_t copied = 0;
  std::size_t all = 0;
  std::error_code error;
  for (fs::recursive_directory_iterator it(result_.root, error), end; !error && it != end;
       it.increment(error)) {
    std::error_code missing;
    if (!it->is_regular_file(missing)) continue;
    ++all;
    const fs::path copy = fs::path(*result_.target) / it->path().lexically_relative(result_.root);
    if (fs::file_size(copy, missing) == it->file_size(missing) && !missing) ++copied;
  }
  const std::string counts = std::to_string(copied) + " of " + std::to_string(all) + " files";
  if (copied == all) return "The copy in " + *result_.target + " has all " + counts;
  return "The copy in " + *result_.target + " is not complete: " + counts +
         " are there, and no DICOMDIR";
}

void Delivery::wipe() {
  std::string asideDirectory;
  const auto before = entriesOf(result_.root);
  job_.wipe(/*removesAll=*/false, asideDirectory);
  // The root is anybody's from then on: another job may have filled it already.
  const auto after = entriesOf(result_.root);
  const auto isLeft = [&](const auto& entry) { return std::ranges::count(after, entry) != 0; };
  if (rootEntry(result_.root) != RootEntry::Unreadable && std::ranges::none_of(before, isLeft)) {
    return;
  }
  fail("The file set is written, but the root directory " + result_.root + " cannot be wiped.");
}

}  // namespace quillon::cli
