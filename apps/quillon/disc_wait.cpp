#include "disc_wait.h"

#include <thread>
#include <utility>

#include "media_job.h"
#include "medium_questions.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace {

constexpr std::chrono::seconds kBetweenQuestions{1};

}  // namespace

std::string discOf(int number, int count) {
  return "disc " + std::to_string(number) + " of " + std::to_string(count);
}

Outcome awaitDisc(const std::string& recorder, const std::string& disc, std::chrono::seconds wait,
                  platform::DiscRecorderStatus& status) {
  const std::string discIntoRecorder = disc + " into " + recorder;
  const auto deadline = std::chrono::steady_clock::now() + wait;
  std::string why;
  std::string told;
  for (bool hasAsked = false;; hasAsked = true) {
    platform::DiscRecorderStatus now;
    const platform::DiscResult answer = platform::describeDiscRecorder(recorder, now);
    const bool isThere = !answer.failed() && now.hasDisc;
    const Outcome fit = isThere ? mayRecord(now) : Outcome("");
    if (!fit.failed()) {
      status = std::move(now);
      return {};
    }
    if (!hasAsked) say("Put " + discIntoRecorder + ".");
    // Whoever puts a disc in has the recorder for a moment.
    if (isThere && fit.text() == why && why != told) {
      say(why);
      told = why;
    }
    why = fit.text();
    if (std::chrono::steady_clock::now() >= deadline) {
      return "Nobody put " + discIntoRecorder + " within " + std::to_string(wait.count()) +
             " seconds.";
    }
    std::this_thread::sleep_for(kBetweenQuestions);
  }
}

}  // namespace quillon::cli
