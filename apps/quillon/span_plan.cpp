#include "span_plan.h"

#include <algorithm>
#include <functional>

#include "figures.h"
#include "fileset/disc_room.h"

namespace quillon::cli {

namespace {

// A UDF file entry, and the object's part of directories and records.
constexpr std::uint64_t kBytesBeside = 2 * kDiscSectorBytes;

struct Study {
  std::string uid;
  std::string date;
  std::vector<std::size_t> series;
  std::uint64_t bytes = 0;
};

class Division {
 public:
  Division(const std::vector<SpanSeries>& series, const std::vector<SpanObject>& objects,
           std::uint64_t capacityBytes)
      : series_(series), objects_(objects), capacityBytes_(capacityBytes) {}

  Outcome make(std::vector<SpanPart>& parts) {
    for (const Study& study : studies()) {
      if (Outcome placed = place(study); placed.failed()) return placed;
    }
    for (SpanPart& part : parts_) std::ranges::sort(part);
    parts = std::move(parts_);
    return {};
  }

 private:
  [[nodiscard]] std::vector<Study> studies() const;
  [[nodiscard]] std::uint64_t bytesOf(const SpanSeries& series) const;
  [[nodiscard]] bool hasRoom(std::size_t part, std::uint64_t bytes) const {
    return used_[part] + bytes <= capacityBytes_;
  }
  void begin() {
    parts_.emplace_back();
    used_.push_back(0);
  }
  void put(std::size_t part, const SpanSeries& series);
  void put(std::size_t part, std::size_t object);
  Outcome place(const Study& study);
  Outcome placeObjects(const SpanSeries& series);

  const std::vector<SpanSeries>& series_;
  const std::vector<SpanObject>& objects_;
  const std::uint64_t capacityBytes_;
  std::vector<SpanPart> parts_;
  std::vector<std::uint64_t> used_;
};

// Objects of no study come last.
std::vector<Study> Division::studies() const {
  std::vector<Study> studies;
  for (std::size_t i = 0; i < series_.size(); ++i) {
    const SpanSeries& one = series_[i];
    auto study = std::ranges::find(studies, one.studyUid, &Study::uid);
    if (study == studies.end()) {
      studies.push_back({one.studyUid, one.studyDate, {}, 0});
      study = std::prev(studies.end());
    }
    study->series.push_back(i);
    study->bytes += bytesOf(one);
  }
  std::ranges::stable_sort(studies, std::greater{}, &Study::date);
  return studies;
}

std::uint64_t Division::bytesOf(const SpanSeries& series) const {
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < series.objects; ++i) {
    bytes += spanBytesOf(objects_[series.firstObject + i]);
  }
  return bytes;
}

void Division::put(std::size_t part, std::size_t object) {
  parts_[part].push_back(static_cast<std::uint32_t>(object));
  used_[part] += spanBytesOf(objects_[object]);
}

void Division::put(std::size_t part, const SpanSeries& series) {
  for (std::size_t i = 0; i < series.objects; ++i) put(part, series.firstObject + i);
}

Outcome Division::place(const Study& study) {
  if (study.bytes <= capacityBytes_) {
    std::size_t part = 0;
    while (part < parts_.size() && !hasRoom(part, study.bytes)) ++part;
    if (part == parts_.size()) begin();
    for (const std::size_t one : study.series) put(part, series_[one]);
    return {};
  }
  if (parts_.empty()) begin();
  for (const std::size_t one : study.series) {
    const std::uint64_t bytes = bytesOf(series_[one]);
    if (bytes > capacityBytes_) {
      if (Outcome placed = placeObjects(series_[one]); placed.failed()) return placed;
      continue;
    }
    if (!hasRoom(parts_.size() - 1, bytes)) begin();
    put(parts_.size() - 1, series_[one]);
  }
  return {};
}

Outcome Division::placeObjects(const SpanSeries& series) {
  for (std::size_t i = 0; i < series.objects; ++i) {
    const SpanObject& object = objects_[series.firstObject + i];
    const std::uint64_t bytes = spanBytesOf(object);
    if (bytes > capacityBytes_) {
      return "The file " + object.path + " has " + sizeText(object.sizeBytes) +
             ", more than one medium holds.";
    }
    if (!hasRoom(parts_.size() - 1, bytes)) begin();
    put(parts_.size() - 1, series.firstObject + i);
  }
  return {};
}

}  // namespace

std::uint64_t spanBytesOf(const SpanObject& object) {
  const std::uint64_t sectors = (object.sizeBytes + kDiscSectorBytes - 1) / kDiscSectorBytes;
  return sectors * kDiscSectorBytes + kBytesBeside;
}

Outcome divideIntoParts(const std::vector<SpanSeries>& series,
                        const std::vector<SpanObject>& objects, std::uint64_t capacityBytes,
                        std::vector<SpanPart>& parts) {
  return Division(series, objects, capacityBytes).make(parts);
}

}  // namespace quillon::cli
