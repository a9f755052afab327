// How the objects of a file set that does not fit one medium lie on several.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "outcome.h"

namespace quillon::cli {

// The objects of one series, which stand one after the other.
struct SpanSeries {
  std::string studyUid;
  std::string studyDate;  // YYYYMMDD; empty: not known
  std::size_t firstObject = 0;
  std::size_t objects = 0;
};

struct SpanObject {
  std::string path;  // of its file, as the user calls it
  std::uint64_t sizeBytes = 0;
};

// Positions of the objects of one medium, ascending.
using SpanPart = std::vector<std::uint32_t>;

// The newest study first, each whole on the first medium with room for it. What is larger than a
// medium is divided, a study by series and a series by objects, and goes on from the last medium.
// capacityBytes: what the objects of one medium may take. Fails for an object that is larger.
Outcome divideIntoParts(const std::vector<SpanSeries>& series,
                        const std::vector<SpanObject>& objects, std::uint64_t capacityBytes,
                        std::vector<SpanPart>& parts);

// What an object takes of that: whole sectors, and what file systems and DICOMDIR say of it.
std::uint64_t spanBytesOf(const SpanObject& object);

}  // namespace quillon::cli
