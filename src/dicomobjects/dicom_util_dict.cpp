#include <algorithm>
#include <atomic>
#include <string>
#include <unordered_map>
#include <utility>

#include "dicom/dict.h"
#include "dicomobjects/dicom_util.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxUidTextChars = 127;

// Held for a look-up only. Not a mutex: the compiler for Windows comes without them, and apartments
// that ask at the same moment are rare.
class SpinLock {
 public:
  explicit SpinLock(std::atomic_flag& flag) : flag_(flag) {
    while (flag_.test_and_set(std::memory_order_acquire)) {
    }
  }
  ~SpinLock() { flag_.clear(std::memory_order_release); }
  SpinLock(const SpinLock&) = delete;
  SpinLock& operator=(const SpinLock&) = delete;

 private:
  std::atomic_flag& flag_;
};

}  // namespace

const char* CDicomUtilDict::UidText(DcUid id) {
  static std::atomic_flag inUse;
  // The texts keep their place while the map grows, so the pointers given out stay good.
  static std::unordered_map<DcUid, std::string> known;

  const SpinLock lock(inUse);
  if (const auto found = known.find(id); found != known.end()) return found->second.c_str();
  std::string uid;
  if (theDictionary().getUid(id, &uid) != kDcOk || uid.empty()) return nullptr;
  uid.resize(std::min(uid.size(), kMaxUidTextChars));
  return known.emplace(id, std::move(uid)).first->second.c_str();
}

}  // namespace quillon
