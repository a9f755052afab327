#include "recording/disc_progress.h"

#include <mutex>

#include "recorders/progress.h"

namespace quillon::platform {
namespace {

struct Holder {
  std::mutex mutex;
  DiscProgressCallback callback;
};

Holder& holder() {
  static Holder single;
  return single;
}

}  // namespace

void SetDiscProgress(DiscProgressCallback callback) {
  const std::lock_guard lock(holder().mutex);
  holder().callback = std::move(callback);
}

DiscProgressCallback discProgressCallback() {
  const std::lock_guard lock(holder().mutex);
  return holder().callback;
}

}  // namespace quillon::platform
