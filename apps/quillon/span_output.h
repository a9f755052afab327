// What a publication on several media prints.
#pragma once

#include <string>

#include "json_output.h"
#include "span_job.h"

namespace quillon::cli {

// Which medium will hold what, with what was passed over.
std::string planTextOf(const SpanResult& planned);
// The media that were made.
std::string plainText(const SpanResult& result);
// Adds its members to a JSON object.
void addMembers(Json& object, const SpanResult& result);

}  // namespace quillon::cli
