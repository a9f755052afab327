// What is asked of a recorder or a directory before the work begins: whether it will take a file
// set. What they cannot find out is for the delivery to tell.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "fileset/disc_room.h"
#include "outcome.h"
#include "recording/disc_recorders.h"

namespace quillon::cli {

// Whether there is a disc in it that can be written now, or after it was erased.
Outcome mayRecord(const platform::DiscRecorderStatus& recorder);
// Whether that disc has room for an image of so many sectors.
Outcome mayFit(const platform::DiscRecorderStatus& recorder, std::uint64_t neededSectors);

// Of an absolute path whose last levels may be missing: whether this user can make and fill it.
Outcome mayFill(const std::string& directory);
// Whether its file system has so much room.
Outcome mayHold(const std::string& directory, std::uint64_t neededBytes);
// What this user may still write there; nothing where the file system does not tell.
std::optional<std::uint64_t> freeBytesAt(const std::string& directory);

// Of all that lies in a directory that is to be written to a disc, but for what has this name.
DiscRoom roomOfDirectory(const std::string& directory, std::string_view leftOut = {});

}  // namespace quillon::cli
