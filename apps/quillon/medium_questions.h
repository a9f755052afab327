// What is asked of a recorder or a directory before the work begins: whether it will take a file
// set. Each answers one sentence why not, or nothing; what they cannot find out is for the delivery
// to tell.
#pragma once

#include <optional>
#include <string>

#include "fileset/disc_room.h"
#include "recording/disc_recorders.h"

namespace quillon::cli {

// Whether there is a disc in it that can be written now, or after it was erased.
std::optional<std::string> reasonNotToRecord(const platform::DiscRecorderStatus& recorder);
// Whether that disc has room for an image of so many sectors.
std::optional<std::string> reasonNotToFit(const platform::DiscRecorderStatus& recorder,
                                          std::uint64_t neededSectors);

// Of an absolute path whose last levels may be missing: whether this user can make and fill it.
std::optional<std::string> reasonNotToFill(const std::string& directory);
// Whether its file system has so much room.
std::optional<std::string> reasonNotToHold(const std::string& directory, std::uint64_t neededBytes);
// What this user may still write there; nothing where the file system does not tell.
std::optional<std::uint64_t> freeBytesAt(const std::string& directory);

// Of all that lies in a directory that is to be written to a disc.
DiscRoom roomOfDirectory(const std::string& directory);

}  // namespace quillon::cli
