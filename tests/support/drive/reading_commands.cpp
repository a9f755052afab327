#include "command.h"

namespace emulated {
namespace {

Sense checkReadable(const Disc& disc, std::int64_t first, std::int64_t count) {
  const std::int64_t end = first + count;
  if (disc.media->isOverwritable) {
    if (!disc.isFormatted) return kUnreadableMedium;
    return first < 0 || end > disc.capacity ? kBadAddress : kGood;
  }
  for (std::int64_t sector = first; sector < end;) {
    const Track* const track = disc.trackAt(sector);
    if (track != nullptr) {
      sector = track->end();
      continue;
    }
    if (sector < 0 || sector >= disc.leadOutOf(disc.lastTrackSession())) return kBadAddress;
    // Run-out, pregaps, lead-outs and what a track lacks: there is something, but no data.
    return disc.isCd() ? kWrongTrackMode : kMediumError;
  }
  return kGood;
}

Sense readSectors(Drive& drive, Command& command, std::int64_t first, std::int64_t count) {
  command.note(std::to_string(first) + " +" + std::to_string(count));
  if (drive.isTakenAway(first + count)) return drive.noMedium();
  if (const Sense sense = checkReadable(*drive.disc, first, count); !sense.isGood()) return sense;
  std::int64_t reached = 0;
  const Sense fault = drive.faults.ofSectors("read", first, count, reached);
  if (!fault.isGood()) return fault;
  const auto bytes = static_cast<std::size_t>(count * kSectorBytes);
  if (command.isToDrive() || bytes > command.dataBytes()) return kBadCommandField;
  if (!drive.readSectors(first, command.data(), count)) return kMediumError;
  drive.faults.changeRead(first, count, command.data());
  command.answered(bytes);
  return kGood;
}

}  // namespace

Sense read10(Drive& drive, Command& command) {
  return readSectors(drive, command, command.address(2), command.number16(7));
}

Sense read12(Drive& drive, Command& command) {
  return readSectors(drive, command, command.address(2), command.address(6));
}

// The 2048 bytes of data alone.
Sense readCd(Drive& drive, Command& command) {
  constexpr std::uint8_t kUserData = 0x10;
  if (!drive.disc->isCd()) return kUnreadableMedium;
  if (command.byte(9) != kUserData || (command.byte(10) & 7) != 0) return kWrongTrackMode;
  return readSectors(drive, command, command.address(2), command.number24(6));
}

}  // namespace emulated
