// Lets an allocation fail in a test program that links quillon_test_faults.
#pragma once

#include <set>
#include <string>

namespace quillon::test {

// While it lives, the n-th allocation (from 1) of this thread fails: once, or all after it as well.
class FailingNew {
 public:
  explicit FailingNew(long nth, bool isLasting = false);
  ~FailingNew();
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;

  [[nodiscard]] bool happened() const;
};

// Calls attempt(n) for n = 1, 2, ... with the n-th allocation failing, until none does any more.
// attempt answers what came of it (a sentence, or empty); answers all that came.
template <typename Attempt>
std::set<std::string> withEachAllocationFailing(Attempt attempt) {
  std::set<std::string> outcomes;
  constexpr long kEnough = 100'000;
  for (long n = 1; n < kEnough; ++n) {
    bool happened = false;
    outcomes.insert(attempt(n, happened));
    if (!happened) break;
  }
  return outcomes;
}

}  // namespace quillon::test
