// Recording. A track is open from its first WRITE to CLOSE TRACK; a session at once knows from the
// cue sheet (CD) or the reservation (DVD) where it ends.
#include <algorithm>
#include <string>

#include "command.h"

namespace emulated {
namespace {

constexpr std::uint8_t kAtOnce = 2;
constexpr std::uint8_t kLeadOut = 0xAA;

struct Cue {
  std::uint8_t track;
  std::uint8_t index;
  std::uint8_t form;
  std::int64_t address;
};

std::vector<Cue> cuesOf(const Bytes& sheet) {
  constexpr std::size_t kCueBytes = 8;
  std::vector<Cue> cues;
  for (std::size_t at = 0; at + kCueBytes <= sheet.size(); at += kCueBytes) {
    const std::int64_t frames = (sheet[at + 5] * 60 + sheet[at + 6]) * 75 + sheet[at + 7];
    cues.push_back(Cue{.track = sheet[at + 1],
                       .index = sheet[at + 2],
                       .form = sheet[at + 3],
                       .address = frames - kPregapSectors});
  }
  return cues;
}

bool recordsAtOnce(const Drive& drive) {
  const Family family = drive.disc->media->family;
  return (family == Family::Cd || family == Family::DvdMinus) &&
         drive.writeParameters().writeType == kAtOnce;
}

int sessionToWrite(const Disc& disc) {
  return disc.isSessionOpen ? disc.lastTrackSession() : disc.lastTrackSession() + 1;
}

void beginTracksOfCueSheet(Disc& disc, const std::vector<Cue>& cues) {
  const int session = sessionToWrite(disc);
  std::vector<Track> tracks;
  for (const Cue& cue : cues) {
    const bool isLeadOut = cue.track == kLeadOut;
    if (cue.track == 0 || (!isLeadOut && cue.index != 1)) continue;
    if (!tracks.empty()) tracks.back().reserved = cue.address - tracks.back().start;
    if (!isLeadOut) tracks.push_back(Track{.session = session, .start = cue.address});
  }
  disc.tracks.insert(disc.tracks.end(), tracks.begin(), tracks.end());
  disc.isSessionOpen = true;
}

Sense placeByCueSheet(Drive& drive, std::int64_t first, std::int64_t count) {
  const std::vector<Cue> cues = cuesOf(bytesOfHex(drive.state.text("cue sheet")));
  if (cues.size() < 3) return kBadSequence;
  const std::int64_t next = drive.state.number("next of cue sheet", cues[1].address);
  if (first != next) return kBadWriteAddress;
  if (first + count > cues.back().address) return kBadAddress;
  if (!drive.state.has("next of cue sheet")) beginTracksOfCueSheet(*drive.disc, cues);
  return kGood;
}

Sense placeInReservation(Drive& drive, std::int64_t first, std::int64_t count) {
  Disc& disc = *drive.disc;
  const std::int64_t reserved = drive.state.number("reservation");
  if (reserved == 0) return kBadSequence;
  const Track* const track = disc.openTrack();
  if (first != (track == nullptr ? disc.nextWritable() : track->end())) return kBadWriteAddress;
  const std::int64_t start = track == nullptr ? first : track->start;
  if (first + count > start + reserved) return kBadAddress;
  if (track != nullptr) return kGood;
  disc.tracks.push_back(
      Track{.session = sessionToWrite(disc), .start = first, .reserved = reserved});
  disc.isSessionOpen = true;
  return kGood;
}

Sense placeInOpenTrack(Drive& drive, std::int64_t first, std::int64_t count) {
  Disc& disc = *drive.disc;
  const bool isIncremental = disc.media->family == Family::DvdMinus;
  if (disc.isCd() && !drive.writeParameters().isData) return kWrongTrackMode;
  if (isIncremental && disc.isAtOnceOnly) return kWrongTrackMode;
  if (isIncremental && drive.writeParameters().writeType != 0) return kBadSequence;
  if (first != disc.nextWritable()) return kBadWriteAddress;
  const Track* const track = disc.openTrack();
  const std::int64_t limit =
      track != nullptr && track->reserved > 0 ? track->start + track->reserved : disc.capacity;
  if (first + count > std::min(limit, disc.capacity)) return kBadAddress;
  if (track != nullptr) return kGood;
  disc.tracks.push_back(Track{.session = sessionToWrite(disc), .start = first});
  disc.isSessionOpen = true;
  return kGood;
}

// Whether the sectors may be written there now. Begins a track where that takes one.
Sense place(Drive& drive, std::int64_t first, std::int64_t count) {
  const Disc& disc = *drive.disc;
  if (!disc.media->isWritable || disc.isFinal) return kUnwritableMedium;
  if (disc.media->isOverwritable) {
    if (!disc.isFormatted) return kUnwritableMedium;
    return first < 0 || first + count > disc.capacity ? kBadAddress : kGood;
  }
  if (disc.isDamaged()) return kIncompleteTrack;
  const WriteParameters parameters = drive.writeParameters();
  const bool canTest = disc.isCd() || disc.media->family == Family::DvdMinus;
  if (parameters.isTest && canTest) drive.beginSimulation();
  if (!recordsAtOnce(drive)) return placeInOpenTrack(drive, first, count);
  return disc.isCd() ? placeByCueSheet(drive, first, count)
                     : placeInReservation(drive, first, count);
}

void countAsWritten(Drive& drive, std::int64_t end) {
  Disc& disc = *drive.disc;
  drive.state.setYes("unsynchronized", true);
  if (disc.media->isOverwritable) return;
  drive.state.setYes("writing", true);
  if (drive.state.has("cue sheet")) drive.state.set("next of cue sheet", end);
  for (Track& track : disc.tracks) {
    if (track.session != disc.lastTrackSession() || track.state != TrackState::Open) continue;
    const std::int64_t most = track.reserved > 0 ? track.reserved : disc.capacity;
    track.sectors = std::clamp<std::int64_t>(end - track.start, 0, most);
  }
}

Sense writeSectors(Drive& drive, Command& command, std::int64_t first, std::int64_t count) {
  command.note(std::to_string(first) + " +" + std::to_string(count));
  if (!command.isToDrive() ||
      command.dataBytes() < static_cast<std::size_t>(count * kSectorBytes)) {
    return kBadCommandField;
  }
  if (count == 0) return kGood;
  if (drive.isTakenAway(first + count)) return drive.noMedium();
  if (const Sense sense = place(drive, first, count); !sense.isGood()) return sense;
  std::int64_t reached = first + count;
  const Sense fault = drive.faults.ofSectors("write", first, count, reached);
  // What lies before the first track's start is the drive's own.
  const std::int64_t skipped = std::clamp<std::int64_t>(-first, 0, reached - first);
  const std::uint8_t* const data = command.data() + skipped * kSectorBytes;
  if (!drive.writeSectors(first + skipped, data, reached - first - skipped)) {
    return Sense{0x03, 0x0C, 0x00};
  }
  countAsWritten(drive, reached);
  return fault;
}

void closeSession(Drive& drive, bool isLast) {
  Disc& disc = *drive.disc;
  for (Track& track : disc.tracks) track.state = TrackState::Closed;
  disc.isSessionOpen = false;
  disc.isFinal = isLast;
  drive.endSimulation();
  endWriting(drive);
}

void closeLastTrack(Drive& drive) {
  Disc& disc = *drive.disc;
  Track& last = disc.tracks.back();
  last.state = TrackState::Closed;
  last.sectors = std::max(disc.wholeBlocks(last.sectors), last.reserved);
  if (disc.isCd()) last.runOut = 2;
  drive.state.remove("writing");
}

Sense closeTrack(Drive& drive, std::int64_t number) {
  constexpr std::int64_t kInvisible = 0xFF;
  Disc& disc = *drive.disc;
  const auto count = static_cast<std::int64_t>(disc.tracks.size());
  if (number != kInvisible && (number < 1 || number > count)) return kBadCommandField;
  if (count == 0 || recordsAtOnce(drive)) return kBadSequence;
  const bool isClosed = disc.tracks.back().state == TrackState::Closed;
  if (!isClosed && (number == kInvisible || number == count)) closeLastTrack(drive);
  return kGood;
}

Sense closeOverwritable(Disc& disc) {
  if (disc.media->profile != 0x1A) return kGood;
  // The rest is formatted when the host asks for it.
  if (disc.background == BackgroundFormat::Running) disc.background = BackgroundFormat::Started;
  return kGood;
}

}  // namespace

bool finishAtOnce(Drive& drive) {
  Disc& disc = *drive.disc;
  if (disc.media->isOverwritable || !recordsAtOnce(drive) || !disc.isSessionOpen) return false;
  Track& last = disc.tracks.back();
  if (last.reserved == 0 || disc.wholeBlocks(last.sectors) < last.reserved) return false;
  last.sectors = last.reserved;
  closeSession(drive, !drive.writeParameters().isMultiSession);
  return true;
}

Sense sendOpc(Drive& drive, Command&) {
  return drive.disc->media->isWritable ? kGood : kIncompatibleMedium;
}

Sense sendCueSheet(Drive& drive, Command& command) {
  const Disc& disc = *drive.disc;
  if (!disc.isCd() || !disc.media->isWritable || disc.isFinal) return kUnwritableMedium;
  if (!recordsAtOnce(drive) || disc.isSessionOpen) return kBadSequence;
  const Bytes sheet = command.sent();
  if (static_cast<std::int64_t>(sheet.size()) != command.number24(6)) return kBadCommandField;
  const std::vector<Cue> cues = cuesOf(sheet);
  if (cues.size() < 3 || cues.front().track != 0 || cues.back().track != kLeadOut) {
    return kBadParameter;
  }
  constexpr std::uint8_t kDataOf2048 = 0x10;
  for (std::size_t i = 1; i < cues.size(); ++i) {
    const bool isBehind = i == 1 || cues[i].address > cues[i - 1].address;
    const bool isData = cues[i].track == kLeadOut || (cues[i].form & 0x3F) == kDataOf2048;
    if (!isBehind || !isData) return kBadParameter;
  }
  // The pregap of the first track begins where the last session's lead-in ends.
  if (cues[1].address != disc.nextWritable() - kPregapSectors) return kBadParameter;
  if (cues.back().address > disc.capacity) return kBadParameter;
  command.note("lead-out " + std::to_string(cues.back().address));
  drive.state.set("cue sheet", hexOf(sheet));
  drive.state.remove("next of cue sheet");
  return kGood;
}

Sense reserveTrack(Drive& drive, Command& command) {
  Disc& disc = *drive.disc;
  const std::int64_t sectors = command.address(5);
  command.note(std::to_string(sectors));
  if (disc.media->isOverwritable || !disc.media->isWritable || disc.isFinal) {
    return kUnwritableMedium;
  }
  if (disc.openTrack() != nullptr || disc.isDamaged() || disc.isCd()) return kBadSequence;
  if (recordsAtOnce(drive) && !disc.isBlank()) return kBadSequence;
  const std::int64_t reserved = disc.wholeBlocks(sectors);
  const std::int64_t start = disc.nextWritable();
  if (sectors <= 0 || start + reserved > disc.capacity) return kBadCommandField;
  if (recordsAtOnce(drive)) {
    drive.state.set("reservation", reserved);
    return kGood;
  }
  disc.tracks.push_back(
      Track{.session = sessionToWrite(disc), .start = start, .reserved = reserved});
  disc.isSessionOpen = true;
  return kGood;
}

Sense write10(Drive& drive, Command& command) {
  return writeSectors(drive, command, command.address(2), command.number16(7));
}

Sense write12(Drive& drive, Command& command) {
  return writeSectors(drive, command, command.address(2), command.address(6));
}

Sense synchronizeCache(Drive& drive, Command&) {
  const Disc& disc = *drive.disc;
  drive.state.remove("unsynchronized");
  if (finishAtOnce(drive)) return kGood;
  // The laser goes off: that ends a track at once.
  if (disc.isCd() && !recordsAtOnce(drive) && disc.openTrack() != nullptr) closeLastTrack(drive);
  return kGood;
}

Sense closeTrackSession(Drive& drive, Command& command) {
  Disc& disc = *drive.disc;
  const int function = command.byte(2) & 7;
  const std::int64_t number = command.number16(4);
  command.note("function " + std::to_string(function) + " track " + std::to_string(number));
  if (!disc.media->isWritable) return kUnwritableMedium;
  if (drive.state.isYes("unsynchronized")) return kBadSequence;
  if (disc.media->isOverwritable) return closeOverwritable(disc);
  if (disc.isFinal) return kGood;
  if (function == 1) return closeTrack(drive, number);
  const bool isPlus = disc.media->family == Family::DvdPlus || disc.media->family == Family::Bd;
  if (function != 2 && !(isPlus && (function == 5 || function == 6))) return kBadCommandField;
  if (disc.openTrack() != nullptr) return kIncompleteTrack;
  if (disc.tracks.empty()) return kBadSequence;
  closeSession(drive, isPlus ? function != 2 : !drive.writeParameters().isMultiSession);
  return kGood;
}

}  // namespace emulated
