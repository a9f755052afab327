#include "span_output.h"

#include <nlohmann/json.hpp>

#include "figures.h"
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

void addMembers(Json& object, const SpanResult& result) {
  addMembers(object, result.planned);
  Json& plan = object["plan"] = Json::array();
  for (const SpanMediumPlan& medium : result.plan) {
    Json& one = plan.emplace_back();
    one["studies"] = medium.studies;
    one["objects"] = medium.files.size();
    one["bytes"] = medium.bytes;
  }
  Json& media = object["media"] = Json::array();
  for (const SpannedMedium& medium : result.media) {
    Json& one = media.emplace_back(emptyObject());
    one["number"] = medium.number;
    addMembers(one, medium.published.created);
    addMembers(one, medium.published.written);
    addError(one, medium.published.outcome);
  }
}

}  // namespace quillon::cli
