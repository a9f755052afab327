// How a step of a job ended: done, or with the sentence that says why not.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace quillon::cli {

class [[nodiscard]] Outcome {
 public:
  Outcome() = default;  // done
  Outcome(std::string why) : why_(std::move(why)) {}
  Outcome(const char* why) : why_(why) {}

  [[nodiscard]] bool failed() const { return why_.has_value(); }
  // Empty when it is done.
  [[nodiscard]] std::string text() const { return why_.value_or(""); }

 private:
  std::optional<std::string> why_;
};

}  // namespace quillon::cli
