// The drives that this process has open, for all its handles on them together.
//
// To open a drive costs a second and more, and lets it spin up. So a drive that was asked something
// stays open for a moment: the next question, or the job that it was asked for, finds it ready.
// Other programs wait meanwhile; they do not have to wait for long, because it is given up now and
// then even when the questions never end.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "burn_library.h"
#include "recorders/recorder.h"
#include "recorders/recorder_lock.h"

namespace quillon::platform {

// All operations take burnMutex for themselves; a question that is under way keeps it.
class OpenDrive {
 public:
  using Client = const void*;  // a handle, by its address

  // The one of the address; it stays until the process ends.
  static OpenDrive& at(const std::string& address);
  // Closes all, those that a client has when it gives them back. For a process that is about to
  // end: while its operations are stopped, none is opened again.
  static void closeAll();

  OpenDrive(const OpenDrive&) = delete;
  OpenDrive& operator=(const OpenDrive&) = delete;

  // Runs the question, a DiscResult(const GrabbedDrive&). E_IMAPI_RECORDER_LOCKED while another
  // client has the drive.
  template <typename Question>
  DiscResult ask(Client client, Question question) {
    std::unique_lock lock(burnMutex());
    DiscResult result = open(client, lock);
    if (result.failed()) return result;
    const Keeping keeping(*this);
    return question(grabbed_);
  }

  // For one client alone, in this process and all others. What other clients merely ask is waited
  // for. With force a disc that is mounted is unmounted.
  DiscResult take(Client client, bool force, std::u16string_view clientName);
  // The rest is for the client that has taken it.
  void giveBack();
  [[nodiscard]] const GrabbedDrive& grabbed() const { return grabbed_; }
  DiscResult openTray();

  [[nodiscard]] std::u16string owner() const { return lock_.owner(); }
  // Fills in what the drive tells of itself, or else what the kernel knows. Opens it the first
  // time.
  void describe(DriveIdentity& identity);

 private:
  friend class DriveCloser;
  using Clock = std::chrono::steady_clock;

  // What follows a question, also one that runs out of memory.
  struct Keeping {
    explicit Keeping(OpenDrive& drive) : drive_(drive) {}
    ~Keeping() {
      if (drive_.client_ == nullptr) drive_.keepForAMoment();
    }
    Keeping(const Keeping&) = delete;
    Keeping& operator=(const Keeping&) = delete;

    OpenDrive& drive_;
  };

  explicit OpenDrive(std::string address);

  DiscResult open(Client client, std::unique_lock<std::recursive_mutex>& lock);
  DiscResult lockFor(std::u16string_view clientName, std::unique_lock<std::recursive_mutex>& lock);
  DiscResult grabForQuestion();
  DiscResult grabAlone(bool force);
  void refresh();
  void keepForAMoment();
  void close();

  const std::string address_;
  RecorderLock lock_;
  GrabbedDrive grabbed_;
  Client client_ = nullptr;  // who has taken it
  bool isBeside_ = false;    // grabbed while the system reads the disc
  Clock::time_point openedAt_;
  Clock::time_point assessedAt_;
  Clock::time_point closesAt_;
  // What the drive has told of itself, and what the system called it then.
  std::unique_ptr<DriveIdentity> described_;
  std::u16string describedAs_;
};

}  // namespace quillon::platform
