#include "set_sums.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <limits>
#include <new>
#include <system_error>

#include "fileset/set_sums.h"
#include "platform/sha256.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
// Beyond the delivery: much less than what a machine keeps of what it has read.
constexpr std::uint64_t kMostAheadBytes = std::uint64_t{64} << 20;
constexpr std::size_t kDigits = 64;
constexpr std::uint64_t kLongestName = 255;

}  // namespace

bool SetSums::isPossible() { return !Sha256().Finish().empty(); }

std::uint64_t SetSums::leastBytes(std::uint64_t files) {
  return files * (kDigits + SumLine("", "N").size());
}

std::uint64_t SetSums::mostBytes(std::uint64_t files) {
  return files * (kDigits + SumLine("", "").size() + kLongestName);
}

SetSums::~SetSums() {
  isStopped_ = true;
  follow(std::numeric_limits<std::uint64_t>::max());
  if (thread_.joinable()) thread_.join();
}

Outcome SetSums::begin() {
  if (Outcome listed = listSetFiles(root_, files_); listed.failed()) return listed;
  std::erase_if(files_,
                [](const SetFile& file) { return file.isDirectory || file.name == kSumsName; });
  for (const SetFile& file : files_) {
    textBytes_ += SumLine(std::string(kDigits, '0'), file.name).size();
  }
  start();
  return {};
}

// Signals are for the threads that know what to do about them.
void SetSums::start() {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {  // no thread: finish does it
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void SetSums::follow(std::uint64_t deliveredBytes) {
  {
    const std::lock_guard lock(mutex_);
    allowedBytes_ =
        deliveredBytes +
        std::min(kMostAheadBytes, std::numeric_limits<std::uint64_t>::max() - deliveredBytes);
  }
  moved_.notify_one();
}

bool SetSums::mayGoOn() {
  std::unique_lock lock(mutex_);
  moved_.wait(lock, [this] { return isStopped_ || doneBytes_ <= allowedBytes_; });
  return !isStopped_;
}

void SetSums::run() try {
  std::vector<char> piece(kPieceBytes);
  for (const SetFile& file : files_) {
    made_ = sumOf(file, piece, sums_.emplace_back());
    if (made_.failed() || isStopped_) return;
  }
} catch (const std::bad_alloc&) {
  made_ = "There is not enough memory for the sums of the files.";
}

Outcome SetSums::sumOf(const SetFile& file, std::vector<char>& piece, std::string& sum) {
  const std::string path = root_ + "/" + file.name;
  const SourceDescriptor source(path);
  if (source.number() < 0) return unreadable(path, errno);
  Sha256 bytes;
  std::uint64_t sizeBytes = 0;
  while (mayGoOn()) {
    const ssize_t got = ::read(source.number(), piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return unreadable(path, errno);
    if (got == 0) break;
    bytes.Update(piece.data(), static_cast<std::size_t>(got));
    sizeBytes += static_cast<std::uint64_t>(got);
    doneBytes_ += static_cast<std::uint64_t>(got);
  }
  if (isStopped_) return {};
  if (sizeBytes != file.sizeBytes || !isAsListed(source.number(), file)) {
    return "The file " + path + " has changed while its sum was computed.";
  }
  sum = bytes.Finish();
  return sum.empty() ? Outcome("The system has no SHA-256.") : Outcome();
}

Outcome SetSums::finish() {
  if (!isFinished_) finished_ = complete();
  isFinished_ = true;
  return finished_;
}

Outcome SetSums::complete() {
  follow(std::numeric_limits<std::uint64_t>::max());
  if (thread_.joinable()) {
    thread_.join();
  } else {
    run();
  }
  if (made_.failed()) return made_;
  for (const FileSum& one : sums()) text_ += SumLine(one.sha256, one.name);
  // A set that may only be read, or whose disk is full, is delivered with them all the same.
  if (::access(root_.c_str(), W_OK) != 0) return {};
  if (write(root_, /*isFlushed=*/false).failed()) {
    static_cast<void>(::unlink((root_ + "/" + kSumsName).c_str()));
  }
  return {};
}

// Under its own name from the start: nothing else may be left in a file set.
Outcome SetSums::write(const std::string& directory, bool isFlushed) const {
  const std::string path = directory + "/" + kSumsName;
  const auto failed = [&path](int error) {
    return "The file " + path + " cannot be written: " + std::strerror(error) + ".";
  };
  const int file =
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (file < 0) return failed(errno);
  bool isWritten = true;
  for (std::size_t done = 0; isWritten && done < text_.size();) {
    const ssize_t count = ::write(file, text_.data() + done, text_.size() - done);
    isWritten = count >= 0 || errno == EINTR;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  isWritten = isWritten && (!isFlushed || ::fsync(file) == 0);
  int error = errno;
  if (::close(file) != 0 && isWritten) {
    isWritten = false;
    error = errno;
  }
  if (!isWritten) return failed(error);
  if (!isFlushed) return {};
  const SourceDescriptor parent(directory);
  return parent.number() >= 0 && ::fsync(parent.number()) == 0 ? Outcome() : failed(errno);
}

std::vector<FileSum> SetSums::sums() const {
  std::vector<FileSum> all;
  all.reserve(files_.size());
  for (std::size_t i = 0; i < files_.size() && i < sums_.size(); ++i) {
    all.push_back({files_[i].name, sums_[i]});
  }
  std::ranges::sort(all, {}, &FileSum::name);
  return all;
}

}  // namespace quillon::cli
