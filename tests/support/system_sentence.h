// What differs between Windows and Wine: the system's own sentences for its codes, and gaps.
#pragma once

#include <string>

#include "platform/com.h"

namespace quillon::test {

bool runsUnderWine();

// onWindows, or what Wine says instead of it: nothing for a code that it has no sentence for.
std::string systemSentence(HRESULT code, const std::string& onWindows);

}  // namespace quillon::test
