// The sums of a file set's files, for whoever gets it: sha256sum -c checks them. They are made
// beside the delivery, of the bytes that it has just read, so that nothing is read from the disk
// twice.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "outcome.h"
#include "set_files.h"

namespace quillon::cli {

inline constexpr const char* kSumsName = "SHA256SUMS";

struct FileSum {
  std::string name;
  std::string sha256;
};

class SetSums {
 public:
  // Whether the system can compute them.
  static bool isPossible();
  // What the file will have at the least and at the most, of a set of so many files.
  static std::uint64_t leastBytes(std::uint64_t files);
  static std::uint64_t mostBytes(std::uint64_t files);

  explicit SetSums(std::string root) : root_(std::move(root)) {}
  ~SetSums();
  SetSums(const SetSums&) = delete;
  SetSums& operator=(const SetSums&) = delete;

  // Looks which files there are, all but one of that name, and begins with their sums.
  Outcome begin();
  // Of the finished text: known before there is one.
  [[nodiscard]] std::uint64_t textBytes() const { return textBytes_; }
  // So far has the delivery come; the sums do not go far beyond it.
  void follow(std::uint64_t deliveredBytes);
  // Waits for the last sum, and writes the text to the file of that name in the root where that can
  // be done.
  // To be asked again, it answers the same.
  Outcome finish();
  // Why finish failed, once it did.
  [[nodiscard]] const Outcome& failure() const { return finished_; }
  // Of what was finished: a line for each file, and each file.
  [[nodiscard]] const std::string& text() const { return text_; }
  [[nodiscard]] std::vector<FileSum> sums() const;
  // Writes the text into a directory, in the place of an older one; where isFlushed, it is on the
  // disk when that succeeds.
  [[nodiscard]] Outcome write(const std::string& directory, bool isFlushed) const;

 private:
  void start();
  void run();
  Outcome sumOf(const SetFile& file, std::vector<char>& piece, std::string& sum);
  [[nodiscard]] bool mayGoOn();
  Outcome complete();

  const std::string root_;
  std::vector<SetFile> files_;
  std::uint64_t textBytes_ = 0;
  std::vector<std::string> sums_;  // one for each file, by the thread
  Outcome made_;
  std::thread thread_;
  std::mutex mutex_;  // of the next two
  std::condition_variable moved_;
  std::uint64_t allowedBytes_ = 0;
  std::atomic<bool> isStopped_ = false;
  std::uint64_t doneBytes_ = 0;  // of the thread alone
  bool isFinished_ = false;
  Outcome finished_;
  std::string text_;
};

}  // namespace quillon::cli
