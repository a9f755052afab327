#include "publish_job.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>
#include <vector>

#include "job_audit.h"
#include "media_job.h"
#include "thrown.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

// A file set that stays after all must not share its bytes with the sources: what is done to one
// would reach the other. False when there is no room for copies, say.
bool giveOwnBytes(const std::string& root) {
  std::error_code error;
  for (fs::recursive_directory_iterator it(root, error), end; !error && it != end;
       it.increment(error)) {
    if (!it->is_regular_file(error) || it->hard_link_count(error) < 2) continue;
    fs::path copy = it->path();
    copy += ".own";
    fs::copy_file(it->path(), copy, error);
    if (!error) fs::rename(copy, it->path(), error);
    if (error) {
      std::error_code ignored;
      fs::remove(copy, ignored);
    }
  }
  return !error;
}

}  // namespace

Published publishFileSet(CreateOptions create, const WriteOptions& write,
                         std::function<void()> keepRoot, JobAudit& audit) {
  Published published;
  MediaJob job;
  Delivery delivery(write, job, std::move(keepRoot));
  std::vector<std::string> sources = create.sources;
  std::ranges::move(contentSources(create.otherContent), std::back_inserter(sources));
  Outcome asked = guarded([&] { return delivery.ask(sources); });
  audit.note(delivery.result());
  if (asked.failed()) {
    published.created.outcome = std::move(asked);
    published.created.isDryRun = create.isDryRun;
    published.created.root = delivery.result().root;
  } else {
    create.mediumKind = delivery.mediumKind();
    bool isTooLarge = false;
    create.askSize = [&](const DiscRoom& room) {
      Outcome fit = delivery.askSize(room);
      isTooLarge = fit.failed() && delivery.isOnDisc();
      return fit;
    };
    published.created = createFileSet(create, job);
    if (isTooLarge && create.part == nullptr) {
      published.created.remarks.emplace_back("With --span it goes onto several discs.");
    }
  }
  audit.note(published.created);
  audit.note(delivery.result());
  if (published.created.outcome.failed() || create.isDryRun) {
    published.written = delivery.result();
    published.written.outcome = {};
  } else {
    published.written = delivery.run();
    if (create.mayLink && published.written.isKept && !giveOwnBytes(published.written.root)) {
      published.written.remarks.emplace_back(
          "Files of the file set still share their bytes with the sources.");
    }
  }
  audit.note(published.written);
  published.outcome =
      published.created.outcome.failed() ? published.created.outcome : published.written.outcome;
  audit.conclude(published.outcome, published.written.remarks);
  return published;
}

}  // namespace quillon::cli
