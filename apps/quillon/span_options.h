// The options of a publication on several media.
#pragma once

#include <CLI/CLI.hpp>

#include "span_job.h"

namespace quillon::cli {

void addSpanOptions(CLI::App& command, SpanOptions& span);
// To be called when they are known; throws, as CLI11 does, for options that miss another.
void checkSpanOptions(SpanOptions& span, const WriteOptions& write);

}  // namespace quillon::cli
