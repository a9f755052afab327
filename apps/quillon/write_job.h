// One delivery of a finished file set: to the disc in a recorder, to a directory or into one file.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fileset/disc_room.h"
#include "medium_output.h"
#include "outcome.h"
#include "progress_bar.h"
#include "recording/disc_recorders.h"
#include "set_sums.h"

namespace quillon::cli {

class DiscProgressScope;
class MediaJob;

struct WriteOptions {
  std::optional<std::string> root;
  std::optional<std::string> target;  // a directory instead of a disc
  std::optional<std::string> image;   // a file instead of either, as the next; "-": standard output
  std::optional<std::string> zip;
  bool isCompressing = false;               // of a ZIP file
  std::optional<std::string> passwordFile;  // of a ZIP file
  std::string recorder;                     // empty: the first that writes
  std::optional<std::string> volume;
  bool isOverwriting = false;
  bool isSimulating = false;
  bool hasFullErase = false;
  bool isEjecting = true;
  bool isKeeping = false;
  // SHA256SUMS beside the label; without a value where that is current practice and can be done.
  std::optional<bool> hasSums;
  bool isReadBack = true;              // and compared before the set is wiped
  int discs = 1;                       // that are written, one after the other
  std::chrono::seconds discWait{600};  // for each but the first
  // Everything is looked at and nothing changed.
  bool isDryRun = false;
  bool showsProgress = true;
  // Called with the root while the set is in it: before it is delivered, and before it is wiped.
  // May be empty, as the next, which is called beside the job when a signal ends it.
  std::function<void(const std::string& root)> lookAtSet;
  std::function<void()> whenInterrupted;

  [[nodiscard]] bool isStreaming() const { return image == "-" || zip == "-"; }
};

// What there is of a file set that is only looked at.
struct FoundSet {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
  std::string label;
  std::uint64_t discSectors = 0;  // that a disc needs, at the most
};

struct WriteResult {
  std::string root;
  std::optional<std::string> target;
  std::optional<std::string> imageFile;  // of the one file that is written
  std::optional<std::string> zip;
  std::string volume;
  std::string recorder;  // empty for a directory or file, and while none has been asked
  bool isVirtual = false;
  std::string image;  // the contents of a virtual disc that was written, wherever it now is
  bool isSimulated = false;
  bool isDryRun = false;
  std::optional<FoundSet> found;  // of a dry run that did not fail
  bool isWritten = false;
  // Files that were read back and are as in the set; none where that is not asked for or possible.
  std::optional<std::size_t> verifiedFiles;
  int discs = 1;              // that were asked for
  int writtenDiscs = 0;       // and, where that was asked for, are as in the set
  bool isKept = false;        // the file set is still in its root
  std::vector<FileSum> sums;  // of what was written; none where they are not asked for
  Outcome outcome;
  std::vector<std::string> remarks;
};

class Delivery {
 public:
  // The job may be the one that creates the file set. keepRoot is called beside it when the process
  // is about to be ended by a signal and the user is told that the file set stays; it may be empty.
  Delivery(const WriteOptions& options, MediaJob& job, std::function<void()> keepRoot = {});

  // Whether there can be such a delivery of files from these sources, as far as that is known
  // before there is a file set. Asks the recorder, once, which is then the one of this process.
  Outcome ask(const std::vector<std::string>& sources);
  // After that: what it is that will be written, a kind of disc, "image", "directory" or "zip".
  [[nodiscard]] std::string mediumKind() const;
  // The same once it is known how much it is.
  Outcome askSize(const DiscRoom& room);

  // Without `ask` before, that and the size are asked about here. The file set stays when it
  // could not be written, when that is wanted and after a test run; otherwise it is wiped at the
  // end. In a dry run it is looked at only.
  WriteResult run();
  [[nodiscard]] bool isOnDisc() const { return !file_ && !result_.target; }
  // Of the disc that was asked about.
  [[nodiscard]] std::uint64_t discSectors() const { return recorder_.usableSectors; }
  // What is known of it so far.
  [[nodiscard]] const WriteResult& result() const { return result_; }

 private:
  // Steps answer whether the job goes on.
  bool passes(Outcome step) {
    result_.outcome = std::move(step);
    return !result_.outcome.failed();
  }
  bool fail(std::string sentence) { return passes(std::move(sentence)); }
  void work();
  [[nodiscard]] bool staysWhenWritten() const;
  [[nodiscard]] bool checkSettings(const std::vector<std::string>& sources);
  [[nodiscard]] bool applySettings();
  void applyFile();
  [[nodiscard]] bool checkTarget(const std::vector<std::string>& sources);
  [[nodiscard]] bool checkTestRun();
  [[nodiscard]] bool checkWipe(const std::vector<std::string>& sources);
  [[nodiscard]] bool askMedium();
  [[nodiscard]] bool askRecorder();
  [[nodiscard]] bool takeFileSet();
  [[nodiscard]] bool checkState();
  [[nodiscard]] bool chooseSums();
  [[nodiscard]] bool beginSums();
  Outcome finishSums();
  [[nodiscard]] DiscRoom withSums(const DiscRoom& room) const;
  [[nodiscard]] bool makeRoom();
  void lookAtSet();
  void deliver();
  // One disc, directory or file. Whether the set is there.
  [[nodiscard]] bool deliverOne();
  // Waits for the disc of that number, from 2.
  [[nodiscard]] bool awaitDisc(int number);
  Outcome writeOut();
  Outcome writeDisc();
  // Whether what was written is what should be, and the set can go.
  [[nodiscard]] bool readBack();
  Outcome compare(const std::string& what, const std::string& path);
  [[nodiscard]] const char* activity() const;
  void tellFailure();
  void findImage();
  void interrupted(const DiscProgressScope& discProgress);
  [[nodiscard]] std::string whatIsCopied() const;
  void wipe();

  const WriteOptions& options_;
  MediaJob& job_;
  std::function<void()> keepRoot_;
  ProgressBar progress_;
  WriteResult result_;
  std::optional<MediumOutput> file_;
  bool hasSums_ = false;
  std::optional<SetSums> sums_;
  platform::DiscRecorderStatus recorder_;
  bool isAsked_ = false;
  std::atomic<bool> isDelivering_ = false;
  std::atomic<bool> isReadingBack_ = false;
  std::atomic<bool> isAwaitingDisc_ = false;
  std::atomic<int> writtenDiscs_ = 0;
};

}  // namespace quillon::cli
