#include "recorders/disc_operations.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "recorders/catalogue.h"
#include "recording/disc_interruption.h"
#include "recording/disc_recorders.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

struct Operations {
  std::atomic<bool> areStopped = false;
  std::mutex mutex;
  std::condition_variable ended;
  int underWay = 0;
  std::string told;
  DiscWork last;
};

// Never destroyed: the process may end while a drive still works.
Operations& operations() {
  static auto* const single = new Operations;
  return *single;
}

}  // namespace

bool areOperationsStopped() { return operations().areStopped; }

DiscOperation::DiscOperation() {
  const std::lock_guard lock(operations().mutex);
  ++operations().underWay;
}

DiscOperation::~DiscOperation() {
  const std::lock_guard lock(operations().mutex);
  --operations().underWay;
  operations().ended.notify_all();
}

void DiscOperation::tell(std::string_view sentence) {
  const std::lock_guard lock(operations().mutex);
  std::string& told = operations().told;
  told.append(told.empty() ? "" : " ").append(sentence);
}

void noteWork(const DiscResult& result) {
  const std::lock_guard lock(operations().mutex);
  operations().last.failure = result.failed() ? nativeFromWide(result.text) : std::string();
}

void noteWrite(const DiscResult& result) {
  noteWork(result);
  const std::lock_guard lock(operations().mutex);
  operations().last.isWritten = !result.failed();
}

void noteEjected(const std::string& imageLeftAt) {
  const std::lock_guard lock(operations().mutex);
  operations().last.ejectedTo = imageLeftAt;
}

DiscWork lastDiscWork() {
  const std::lock_guard lock(operations().mutex);
  return operations().last;
}

std::string StopDiscOperations() {
  Operations& all = operations();
  std::unique_lock lock(all.mutex);
  all.areStopped = true;
  all.ended.wait(lock, [&] { return all.underWay == 0; });
  lock.unlock();
  releaseOpticalDrives();
  lock.lock();
  return all.told;
}

}  // namespace quillon::platform
