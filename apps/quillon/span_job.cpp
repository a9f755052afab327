#include "span_job.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "disc_wait.h"
#include "fileset/disc_room.h"
#include "job_audit.h"
#include "media_job.h"
#include "source_walk.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

// What an empty file set takes, and what the estimates of the first division may be wrong by.
constexpr std::uint64_t kBytesBesideObjects = std::uint64_t{1} << 20;
constexpr int kMostDivisions = 12;
// Windows shows no more of a disc's name.
constexpr std::size_t kVolumeNameChars = 16;

std::string numbered(const std::string& path, int number) {
  const fs::path whole(path);
  fs::path name = whole.stem();
  name += "-" + std::to_string(number);
  name += whole.extension();
  return (whole.parent_path() / name).string();
}

std::string volumeOf(std::string name, int number) {
  const std::string suffix = "_" + std::to_string(number);
  name.resize(std::min(name.size(), kVolumeNameChars - suffix.size()));
  return name + suffix;
}

}  // namespace

SpannedPublication::SpannedPublication(const CreateOptions& create, const WriteOptions& write,
                                       const SpanOptions& span, std::function<void()> keepRoot,
                                       std::function<void(const SpanResult&)> onPlan,
                                       JobAudit& audit)
    : create_(create),
      write_(write),
      span_(span),
      keepRoot_(std::move(keepRoot)),
      onPlan_(std::move(onPlan)),
      audit_(audit) {}

SpanResult SpannedPublication::run() {
  if (!askCapacity() || !makePlan()) return std::move(result_);
  if (onPlan_) onPlan_(result_);
  if (create_.isDryRun || !begin()) return std::move(result_);
  const int count = static_cast<int>(result_.plan.size());
  for (int number = 1; number <= count; ++number) {
    if (done_.contains(number)) continue;
    if (!publish(number)) {
      tellHowToGoOn();
      return std::move(result_);
    }
    done_.insert(number);
    if (const Outcome noted = state_->note(number); noted.failed()) {
      result_.remarks.push_back(noted.text());
    }
  }
  state_->end();
  return std::move(result_);
}

bool SpannedPublication::askCapacity() {
  MediaJob job;
  Delivery delivery(write_, job);
  // Numbered names are free or not, each for itself.
  if (isOnDisc()) {
    if (!passes(delivery.ask(create_.sources))) return false;
    write_.recorder = delivery.result().recorder;
    capacitySectors_ = delivery.discSectors();
  }
  if (span_.capacityBytes) {
    const std::uint64_t sectors = *span_.capacityBytes / kDiscSectorBytes;
    capacitySectors_ = isOnDisc() ? std::min(capacitySectors_, sectors) : sectors;
  }
  return true;
}

bool SpannedPublication::makePlan() {
  CreateOptions look = create_;
  look.isDryRun = true;
  look.tellsObjects = true;
  MediaJob job;
  result_.planned = createFileSet(look, job);
  result_.remarks = result_.planned.remarks;
  result_.planned.isDryRun = create_.isDryRun;
  if (!passes(result_.planned.outcome)) return false;
  std::uint64_t objectBytes = capacitySectors_ * kDiscSectorBytes;
  std::vector<SpanPart> parts(1);
  if (result_.planned.discSectors <= capacitySectors_) {
    for (std::uint32_t i = 0; i < result_.planned.plannedObjects.size(); ++i) {
      parts[0].push_back(i);
    }
    takeParts(parts);
    return true;
  }
  for (int tries = 0; tries < kMostDivisions; ++tries) {
    if (!divide(objectBytes, parts)) return false;
    takeParts(parts);
    std::uint64_t excessSectors = 0;
    if (!lookAtParts(excessSectors)) return false;
    if (excessSectors == 0) return true;
    const std::uint64_t less = excessSectors * kDiscSectorBytes + kBytesBesideObjects / 16;
    objectBytes -= std::min(less, objectBytes);
  }
  return passes("What goes on every medium leaves no room for the objects.");
}

bool SpannedPublication::divide(std::uint64_t objectBytes, std::vector<SpanPart>& parts) {
  if (objectBytes <= kBytesBesideObjects) {
    return passes("A medium of " + std::to_string(capacitySectors_ * kDiscSectorBytes) +
                  " bytes has no room for objects.");
  }
  return passes(divideIntoParts(result_.planned.seriesOfObjects, result_.planned.plannedObjects,
                                objectBytes - kBytesBesideObjects, parts));
}

void SpannedPublication::takeParts(const std::vector<SpanPart>& parts) {
  result_.plan.clear();
  const std::vector<SpanSeries>& series = result_.planned.seriesOfObjects;
  for (const SpanPart& part : parts) {
    SpanMediumPlan& medium = result_.plan.emplace_back();
    std::set<std::string> studies;
    for (const std::uint32_t position : part) {
      const SpanObject& object = result_.planned.plannedObjects[position];
      medium.files.insert(object.path);
      medium.bytes += object.sizeBytes;
      const SpanSeries& of = *std::prev(
          std::ranges::upper_bound(series, std::size_t{position}, {}, &SpanSeries::firstObject));
      if (of.studyUid.empty() || !studies.insert(of.studyUid).second) continue;
      medium.newest = std::max(medium.newest, of.studyDate);
      if (medium.oldest.empty() || of.studyDate < medium.oldest) medium.oldest = of.studyDate;
    }
    medium.studies = studies.size();
  }
}

bool SpannedPublication::lookAtParts(std::uint64_t& excessSectors) {
  excessSectors = 0;
  for (int number = 1; number <= static_cast<int>(result_.plan.size()); ++number) {
    CreateOptions look = createOptionsOf(number);
    look.isDryRun = true;
    MediaJob job;
    const CreateResult one = createFileSet(look, job);
    if (!passes(one.outcome)) return false;
    if (one.discSectors > capacitySectors_) {
      excessSectors = std::max(excessSectors, one.discSectors - capacitySectors_);
    }
  }
  return true;
}

CreateOptions SpannedPublication::createOptionsOf(int number) const {
  CreateOptions options = create_;
  options.part = &result_.plan[static_cast<std::size_t>(number - 1)].files;
  options.mediumNumber = static_cast<unsigned>(number);
  options.mediumCount = static_cast<unsigned>(result_.plan.size());
  if (span_.hasContentOnFirstOnly && number > 1)
    options.otherContent = {.isTaken = false, .named = {}};
  return options;
}

WriteOptions SpannedPublication::writeOptionsOf(int number) const {
  WriteOptions options = write_;
  if (result_.plan.size() == 1) return options;
  if (options.target) options.target = numbered(*options.target, number);
  if (options.image) options.image = numbered(*options.image, number);
  if (options.zip) options.zip = numbered(*options.zip, number);
  if (!options.target && !options.zip) {
    options.volume = volumeOf(options.volume.value_or("Quillon"), number);
  }
  return options;
}

bool SpannedPublication::begin() {
  state_.emplace(planText());
  const bool isUnderWay = state_->read(done_);
  if (!span_.isResuming) done_.clear();
  std::erase_if(done_, [this](int number) { return !isThere(number); });
  if (!isOnDisc() && !askPlaces()) return false;
  if (!span_.isResuming) {
    if (result_.plan.size() == 1) return true;
    if (const Outcome begun = state_->begin(); begun.failed()) {
      result_.remarks.push_back(begun.text() + " It cannot be gone on with after an interruption.");
    }
    return true;
  }
  return isUnderWay ||
         passes("There is no interrupted job that would put the same files on the same media.");
}

// What is in the way of a later medium is told before the first one is made.
bool SpannedPublication::askPlaces() {
  for (int number = 1; number <= static_cast<int>(result_.plan.size()); ++number) {
    if (done_.contains(number)) continue;
    const WriteOptions write = writeOptionsOf(number);
    MediaJob job;
    if (!passes(Delivery(write, job).ask(create_.sources))) return false;
  }
  return true;
}

// Whatever is not the same would make other media of the rest.
std::string SpannedPublication::planText() const {
  std::string text;
  for (std::size_t i = 0; i < result_.plan.size(); ++i) {
    const std::unordered_set<std::string>& files = result_.plan[i].files;
    std::vector<std::string> paths(files.begin(), files.end());
    std::ranges::sort(paths);
    for (const std::string& path : paths) {
      text += std::to_string(i + 1) + " " + absolutePath(path) + "\n";
    }
  }
  const auto place = [&](const std::optional<std::string>& path) {
    text += (path ? absolutePath(*path) : "") + "\n";
  };
  place(write_.target);
  place(write_.image);
  place(write_.zip);
  return text + write_.volume.value_or("") + "\n" + std::to_string(result_.planned.bytes);
}

// Nobody can look at a disc that is out of its drive.
bool SpannedPublication::isThere(int number) const {
  const WriteOptions options = writeOptionsOf(number);
  std::error_code error;
  if (options.target) return fs::exists(fs::path(*options.target) / "DICOMDIR", error);
  if (options.image) return fs::exists(*options.image, error);
  return !options.zip || fs::exists(*options.zip, error);
}

bool SpannedPublication::publish(int number) {
  const WriteOptions write = writeOptionsOf(number);
  const bool isFirst = result_.media.empty() && !span_.isResuming;
  if (!result_.media.empty()) audit_.beginAnother();
  if (isOnDisc() && !isFirst) {
    platform::DiscRecorderStatus disc;
    const std::string what = discOf(number, static_cast<int>(result_.plan.size()));
    if (!passes(awaitDisc(write.recorder, what, write.discWait, disc))) return false;
  }
  SpannedMedium& medium = result_.media.emplace_back();
  medium.number = number;
  medium.published = publishFileSet(createOptionsOf(number), write, keepRoot_, audit_);
  for (const auto* remarks :
       {&medium.published.created.remarks, &medium.published.written.remarks}) {
    // What is true of an object has been told with the plan.
    std::ranges::copy_if(
        *remarks, std::back_inserter(result_.remarks), [this](const std::string& remark) {
          return std::ranges::find(result_.remarks, remark) == result_.remarks.end();
        });
  }
  return passes(medium.published.outcome);
}

void SpannedPublication::tellHowToGoOn() {
  if (result_.plan.size() == 1) return;
  result_.remarks.push_back(std::to_string(done_.size()) + " of " +
                            std::to_string(result_.plan.size()) + " media " +
                            (done_.size() == 1 ? "is" : "are") +
                            " done; the same command with --resume makes the others.");
}

}  // namespace quillon::cli
