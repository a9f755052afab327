// Linux only: ending the disc operations of the process in their middle, for a program that the
// user or the system ends.
#pragma once

#include <string>

namespace quillon::platform {

// Makes every write and erase of the process end as soon as its recorder allows, and later ones
// fail at once, with E_IMAPI_REQUEST_CANCELLED. To be called on another thread than theirs. Comes
// back when none is under way any more, and no drive is kept from other programs or locked. That
// can take minutes: a drive finishes what it has begun, and a disc is closed where that saves it.
//
// Answers one sentence for each disc that was being written or erased about what it is now; empty
// where none was.
std::string StopDiscOperations();

}  // namespace quillon::platform
