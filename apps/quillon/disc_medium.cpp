#include "disc_medium.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "media_job.h"
#include "medium/medium_image.h"
#include "platform/imapi2_errors.h"
#include "recording/disc_reader.h"
#include "recording/disc_recorders.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostFailures = 10;

// A drive that has just taken a disc looks at it first.
constexpr int kMostQuestions = 30;
constexpr std::chrono::seconds kReadyWait{1};

class DiscBytes final : public quillon::MediumFile {
 public:
  DiscBytes(std::unique_ptr<platform::DiscReader> disc, std::vector<std::string>& failures)
      : disc_(std::move(disc)), failures_(failures) {}

  [[nodiscard]] std::uint64_t SizeBytes() const override { return disc_->sizeBytes(); }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) override {
    if (disc_->readAt(offset, bytes, count)) return true;
    if (disc_->failure().code == E_IMAPI_REQUEST_CANCELLED) awaitEnd();
    std::string sentence = narrow(disc_->failure().text);
    if (failures_.size() < kMostFailures && std::ranges::count(failures_, sentence) == 0) {
      failures_.push_back(std::move(sentence));
    }
    return false;
  }

 private:
  // What would be found from here on is not true of the disc.
  [[noreturn]] void awaitEnd() {
    disc_.reset();
    for (;;) ::pause();
  }

  std::unique_ptr<platform::DiscReader> disc_;
  std::vector<std::string>& failures_;
};

bool isBecomingReady(const platform::DiscResult& result) {
  return result.code == E_IMAPI_RECORDER_MEDIA_BECOMING_READY ||
         result.code == E_IMAPI_RECORDER_MEDIA_BUSY;
}

}  // namespace

Outcome DiscMedium::open(const std::string& recorder) {
  // Also a virtual one that the service would not list.
  platform::chooseDiscRecorder(recorder);
  std::unique_ptr<platform::DiscReader> disc;
  platform::DiscResult opened = platform::openDisc(recorder, disc);
  for (int asked = 1; isBecomingReady(opened) && asked < kMostQuestions; ++asked) {
    std::this_thread::sleep_for(kReadyWait);
    opened = platform::openDisc(recorder, disc);
  }
  if (opened.failed()) return narrow(opened.text);
  recorder_ = disc->recorder();
  media_ = disc->media();
  CBaseItem errors;
  source_ = OpenImage(std::make_unique<DiscBytes>(std::move(disc), failures_),
                      wide("of the disc in " + recorder_), errors);
  if (source_ != nullptr) return {};
  return failures_.empty() ? narrow(errors.ErrorMessage()) : failures_.front();
}

}  // namespace quillon::cli
