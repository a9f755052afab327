// The wait for the next disc: whoever changes discs has no other way to say that it is done.
#pragma once

#include <chrono>
#include <string>

#include "outcome.h"
#include "recording/disc_recorders.h"

namespace quillon::cli {

// "disc 2 of 3".
std::string discOf(int number, int count);

// Waits until the recorder has a disc that can be written; asks for it, as discOf calls it, when
// there is none. Fails when nobody has put one in by then.
Outcome awaitDisc(const std::string& recorder, const std::string& disc, std::chrono::seconds wait,
                  platform::DiscRecorderStatus& status);

}  // namespace quillon::cli
