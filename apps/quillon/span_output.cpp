#include "span_output.h"

#include "figures.h"
#include "json_output.h"
#include "result_output.h"

namespace quillon::cli {

namespace {

std::string datesText(const SpanMediumPlan& medium) {
  if (medium.newest.empty()) return {};
  if (medium.newest == medium.oldest) return ", of " + singleLine(medium.newest);
  return ", of " + singleLine(medium.newest) + " to " + singleLine(medium.oldest);
}

}  // namespace

std::string planTextOf(const SpanResult& planned) {
  std::string out = planned.planned.isDryRun ? "Dry run:   nothing is changed\n" : "";
  out += "Media:     " + std::to_string(planned.plan.size()) + "\n";
  for (std::size_t i = 0; i < planned.plan.size(); ++i) {
    const SpanMediumPlan& medium = planned.plan[i];
    out += "  " + std::to_string(i + 1) + ": " + countText(medium.studies, "study", "studies") +
           ", " + countText(medium.files.size(), "object", "objects") + ", " +
           sizeText(medium.bytes) + datesText(medium) + "\n";
  }
  return out + passedOverText(planned.planned);
}

std::string plainText(const SpanResult& result) {
  std::string out;
  for (const SpannedMedium& medium : result.media) {
    if (medium.published.outcome.failed()) continue;
    if (result.plan.size() > 1) {
      out += "Medium " + std::to_string(medium.number) + " of " +
             std::to_string(result.plan.size()) + "\n";
    }
    out += plainText(medium.published.created) + plainText(medium.published.written);
  }
  return out;
}

std::string jsonMembers(const SpanResult& result) {
  std::string out = jsonMembers(result.planned) + "\"plan\":[";
  const char* separator = "";
  for (const SpanMediumPlan& medium : result.plan) {
    out += separator;
    out += "{" + jsonMember("studies", std::to_string(medium.studies)) +
           jsonMember("objects", std::to_string(medium.files.size())) +
           "\"bytes\":" + std::to_string(medium.bytes) + "}";
    separator = ",";
  }
  out += "],\"media\":[";
  separator = "";
  for (const SpannedMedium& medium : result.media) {
    std::string one = jsonObject(jsonMember("number", std::to_string(medium.number)) +
                                     jsonMembers(medium.published.created) +
                                     jsonMembers(medium.published.written),
                                 medium.published.outcome);
    one.pop_back();  // the line end
    out += separator + one;
    separator = ",";
  }
  return out + "],";
}

}  // namespace quillon::cli
