// What a publication on several media prints.
#pragma once

#include <string>

#include "span_job.h"

namespace quillon::cli {

// Which medium will hold what, with what was passed over.
std::string planTextOf(const SpanResult& planned);
// The media that were made.
std::string plainText(const SpanResult& result);
// Members of a JSON object, each with a comma behind it.
std::string jsonMembers(const SpanResult& result);

}  // namespace quillon::cli
