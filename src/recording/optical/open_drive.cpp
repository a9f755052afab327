#include "open_drive.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <map>
#include <thread>

#include "drive_device.h"
#include "drive_facts.h"
#include "libburn.h"
#include "recorders/disc_operations.h"
#include "recorders/recorder_store.h"
#include "win32/environment.h"
#include "win32/utf8.h"

namespace quillon::platform {

using namespace std::chrono_literals;

namespace {

constexpr auto kKept = 2s;         // after the last question
constexpr auto kLongestKept = 5s;  // after the first one
// A question of another program may have to wait for a drive that spins up.
constexpr auto kPatience = 15s;
constexpr auto kOthersTime = 1s;  // of a program that merely looks
constexpr auto kPause = 50ms;
constexpr auto kTrayTime = 2s;
// What a drive without a disc, or with one that was not ready, once told is believed for so long.
constexpr auto kEmptyFor = 200ms;

// Beside the virtual recorders, so that all clients of one user meet there. Users exclude each
// other by the device itself.
std::string lockPathOf(const std::string& address) {
  const std::string store = recorderStoreDirectory();
  makeDirectories(store);
  std::string name = address;
  std::replace(name.begin(), name.end(), '/', '-');
  return store + "/" + name + ".lock";
}

// After an ejection: whether the disc is out. A drive may take a moment to notice; one that does
// not tell is believed to have done it.
bool hasLetGo(const std::string& address) {
  const Descriptor drive(::open(address.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  const auto end = std::chrono::steady_clock::now() + kTrayTime;
  if (!drive.isOpen()) return false;
  for (;;) {
    const int status = ::ioctl(drive.get(), CDROM_DRIVE_STATUS, CDSL_CURRENT);
    if (status == CDS_TRAY_OPEN || status == CDS_NO_DISC || status <= CDS_NO_INFO) return true;
    if (std::chrono::steady_clock::now() >= end) return status == CDS_DRIVE_NOT_READY;
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace

// Closes drives when their time is over, and all of them when the process ends.
class DriveCloser {
 public:
  static DriveCloser& instance() {
    // The mutex is made before, so that it outlives the closer.
    static_cast<void>(burnMutex());
    static DriveCloser single;
    return single;
  }
  DriveCloser() = default;
  DriveCloser(const DriveCloser&) = delete;
  DriveCloser& operator=(const DriveCloser&) = delete;
  ~DriveCloser() {
    if (thread_.joinable() && process_ != ::getpid()) {  // of a process that has forked
      thread_.detach();
      return;
    }
    {
      const std::lock_guard lock(burnMutex());
      isEnding_ = true;
      changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
    closeIdle();
  }

  OpenDrive& at(const std::string& address) {
    const std::lock_guard lock(burnMutex());
    std::unique_ptr<OpenDrive>& drive = (*drives_)[address];
    if (drive == nullptr) drive.reset(new OpenDrive(address));
    return *drive;
  }
  // Answers whether all of them were idle.
  bool closeIdle() {
    const std::lock_guard lock(burnMutex());
    bool areIdle = true;
    for (const auto& [address, drive] : *drives_) {
      if (drive->client_ == nullptr) {
        drive->close();
      } else {
        areIdle = false;
      }
    }
    return areIdle;
  }
  // A drive has got a time at which it closes. Without a thread that watches it, it closes now.
  void watch(OpenDrive& drive) {
    try {
      if (!thread_.joinable()) start();
      changed_.notify_all();
    } catch (const std::exception&) {
      drive.close();
    }
  }

 private:
  // The thread has no part in the program's signals.
  void start() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
      thread_ = std::thread([this] { run(); });
    } catch (...) {
      ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
      throw;
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    process_ = ::getpid();
  }

  void run() {
    std::unique_lock lock(burnMutex());
    while (!isEnding_) {
      auto next = OpenDrive::Clock::time_point::max();
      for (const auto& [address, drive] : *drives_) {
        if (drive->client_ != nullptr || !drive->grabbed_.isGrabbed()) continue;
        if (drive->closesAt_ <= OpenDrive::Clock::now()) {
          drive->close();
        } else {
          next = std::min(next, drive->closesAt_);
        }
      }
      if (next == OpenDrive::Clock::time_point::max()) {
        changed_.wait(lock);
      } else {
        changed_.wait_until(lock, next);
      }
    }
  }

  // Not freed: handles of a host may outlive this object.
  std::map<std::string, std::unique_ptr<OpenDrive>>* drives_ =
      new std::map<std::string, std::unique_ptr<OpenDrive>>;
  std::condition_variable_any changed_;
  std::thread thread_;
  pid_t process_ = 0;
  bool isEnding_ = false;
};

OpenDrive::OpenDrive(std::string address)
    : address_(std::move(address)), lock_(lockPathOf(address_)) {}

OpenDrive& OpenDrive::at(const std::string& address) { return DriveCloser::instance().at(address); }

void OpenDrive::closeAll() {
  const Clock::time_point end = Clock::now() + kPatience;
  while (!DriveCloser::instance().closeIdle() && Clock::now() < end) {
    std::this_thread::sleep_for(kPause);
  }
}

// Waits with the mutex free: other drives have nothing to do with it.
DiscResult OpenDrive::lockFor(std::u16string_view clientName,
                              std::unique_lock<std::recursive_mutex>& lock) {
  const Clock::time_point end = Clock::now() + kPatience;
  for (;;) {
    if (areOperationsStopped()) return E_IMAPI_REQUEST_CANCELLED;
    if (client_ != nullptr) return E_IMAPI_RECORDER_LOCKED;
    if (grabbed_.isGrabbed()) return lock_.rename(clientName);
    // A process lives long: its user may have cleared the place meanwhile.
    lock_ = RecorderLock(lockPathOf(address_));
    DiscResult result = lock_.acquire(clientName);
    if (result.code != E_IMAPI_RECORDER_LOCKED || !lock_.owner().empty() || Clock::now() >= end) {
      return result;
    }
    lock.unlock();
    std::this_thread::sleep_for(kPause);
    lock.lock();
  }
}

DiscResult OpenDrive::open(Client client, std::unique_lock<std::recursive_mutex>& lock) {
  if (client_ == client) {
    return grabbed_.isGrabbed() ? DiscResult() : grabAlone(/*force=*/true);
  }
  DiscResult result = lockFor(u"", lock);
  if (result.failed()) return result;
  if (grabbed_.isGrabbed()) {
    refresh();
    return S_OK;
  }
  result = grabForQuestion();
  if (result.failed()) lock_.release();
  return result;
}

DiscResult OpenDrive::grabForQuestion() {
  DiscResult result = checkDevice(address_);
  if (result.failed()) return result;
  isBeside_ = isDeviceBusy(address_);
  if (isBeside_ && mountPointsOf(address_).empty()) return E_IMAPI_RECORDER_LOCKED;
  result = grabbed_.grab(address_, isBeside_ ? GrabMode::BesideTheSystem : GrabMode::Alone);
  openedAt_ = assessedAt_ = Clock::now();
  return result;
}

DiscResult OpenDrive::grabAlone(bool force) {
  DiscResult result = checkDevice(address_);
  if (result.failed()) return result;
  isBeside_ = false;
  if (force) result = unmountDisc(address_);
  if (!result.failed()) {
    // Others open a drive for a moment, to look what has been put into it.
    const Clock::time_point end = Clock::now() + kOthersTime;
    while (isDeviceBusy(address_)) {
      if (Clock::now() >= end) return E_IMAPI_RECORDER_LOCKED;
      std::this_thread::sleep_for(kPause);
    }
    result = grabbed_.grab(address_, GrabMode::Alone);
  }
  openedAt_ = assessedAt_ = Clock::now();
  return result;
}

// Nobody can change the disc in a drive that is open, but somebody may put one in.
void OpenDrive::refresh() {
  const burn_disc_status status = burn_disc_get_status(grabbed_.drive());
  if (status != BURN_DISC_EMPTY && status != BURN_DISC_UNREADY) return;
  if (Clock::now() - assessedAt_ < kEmptyFor) return;
  burn_drive_re_assess(grabbed_.drive(), 0);
  forgetBurnMessages();
  assessedAt_ = Clock::now();
}

void OpenDrive::keepForAMoment() {
  const Clock::time_point now = Clock::now();
  closesAt_ = std::min(now + kKept, openedAt_ + kLongestKept);
  if (closesAt_ <= now) {
    close();
  } else {
    DriveCloser::instance().watch(*this);
  }
}

void OpenDrive::close() {
  if (!grabbed_.isGrabbed()) return;
  grabbed_.release(isBeside_ ? Release::LeaveLocked : Release::Unlock);
  lock_.release();
}

DiscResult OpenDrive::take(Client client, bool force, std::u16string_view clientName) {
  std::unique_lock lock(burnMutex());
  DiscResult result = lockFor(clientName, lock);
  if (result.failed()) return result;
  if (grabbed_.isGrabbed() && isBeside_) grabbed_.release(Release::LeaveLocked);
  if (grabbed_.isGrabbed()) {
    refresh();
  } else {
    result = grabAlone(force);
  }
  if (result.failed()) {
    lock_.release();
  } else {
    client_ = client;
  }
  return result;
}

void OpenDrive::giveBack() {
  const std::lock_guard lock(burnMutex());
  client_ = nullptr;
  openedAt_ = Clock::now();
  if (grabbed_.isGrabbed() && !lock_.rename(u"").failed()) {
    keepForAMoment();
  } else {
    grabbed_.release(Release::Unlock);
    lock_.release();
  }
}

// The drive stays this client's, with whatever comes into it.
DiscResult OpenDrive::openTray() {
  const std::lock_guard lock(burnMutex());
  forgetBurnMessages();
  grabbed_.release(Release::OpenTray);
  DiscResult failure = burnFailure(E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, address_);
  if (failure.text.empty()) {
    failure.text = u"The drive \"" + wideFromNative(address_) + u"\" does not open.";
  }
  return hasLetGo(address_) ? DiscResult() : failure;
}

void OpenDrive::describe(DriveIdentity& identity) {
  const std::u16string name =
      identity.vendor + u"\n" + identity.product + u"\n" + identity.revision;
  std::unique_lock lock(burnMutex());
  if (described_ == nullptr || describedAs_ != name) {
    lock.unlock();
    const DiscResult result = ask(&identity, [&](const GrabbedDrive& grabbed) {
      auto described = std::make_unique<DriveIdentity>(identity);
      readDrive(grabbed, *described);
      described_ = std::move(described);
      describedAs_ = name;
      return DiscResult();
    });
    if (result.failed()) return readKernelFacts(address_, identity);
    lock.lock();
  }
  std::vector<std::u16string> volumePaths = std::move(identity.volumePaths);
  identity = *described_;
  identity.volumePaths = std::move(volumePaths);
}

}  // namespace quillon::platform
