// How far a job on several media has come, for the one that goes on with it: a file of the user's,
// which names the plan by its sum alone.
//
//   $XDG_STATE_HOME/quillon/spans/SUM   the numbers of the media that are done, one a line
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "outcome.h"

namespace quillon::cli {

class SpanState {
 public:
  // plan: all that tells this job from others.
  explicit SpanState(std::string_view plan);

  // Whether there is such a job that has not ended; done gets its media.
  [[nodiscard]] bool read(std::set<int>& done) const;
  // Nothing is done yet. Fails where the state cannot be kept.
  Outcome begin() const;
  Outcome note(int medium) const;
  void end() const;

 private:
  std::string path_;  // empty where there is no place for it
};

}  // namespace quillon::cli
