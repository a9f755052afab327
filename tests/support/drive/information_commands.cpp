// What a drive tells of its disc.
#include <algorithm>
#include <optional>

#include "command.h"

namespace emulated {
namespace {

constexpr std::uint8_t kDataTrack = 4;  // control bits
constexpr std::uint8_t kLeadOutTrack = 0xAA;

// The track that the next write goes to, as the host numbers it: an open one, or the one to come.
struct NextTrack {
  int number;
  int session;
};
NextTrack nextTrackOf(const Disc& disc) {
  const int count = static_cast<int>(disc.tracks.size());
  const bool isOpen = count > 0 && disc.tracks.back().state != TrackState::Closed;
  return NextTrack{.number = isOpen ? count : count + 1,
                   .session = disc.isSessionOpen ? std::max(1, disc.lastTrackSession())
                                                 : disc.lastTrackSession() + 1};
}

std::uint8_t discStatusOf(const Disc& disc) {
  constexpr std::uint8_t kEmpty = 0;
  constexpr std::uint8_t kIncomplete = 1;
  constexpr std::uint8_t kComplete = 2;
  if (disc.media->isOverwritable) return disc.isFormatted ? kComplete : kEmpty;
  if (disc.isFinal) return kComplete;
  return disc.isBlank() ? kEmpty : kIncomplete;
}

std::uint8_t lastSessionStateOf(const Disc& disc) {
  constexpr std::uint8_t kEmpty = 0;
  constexpr std::uint8_t kIncomplete = 1;
  constexpr std::uint8_t kComplete = 3;
  if (disc.isFinal || (disc.media->isOverwritable && disc.isFormatted)) return kComplete;
  return disc.isSessionOpen ? kIncomplete : kEmpty;
}

int firstTrackOf(const Disc& disc, int session) {
  for (std::size_t i = 0; i < disc.tracks.size(); ++i) {
    if (disc.tracks[i].session == session) return static_cast<int>(i) + 1;
  }
  return static_cast<int>(disc.tracks.size()) + 1;
}

void append(Bytes& bytes, std::initializer_list<std::int64_t> values) {
  for (const std::int64_t value : values) bytes.push_back(static_cast<std::uint8_t>(value));
}

Bytes addressOf(std::int64_t sector, bool isMsf) {
  Bytes bytes(4);
  if (isMsf) {
    putMsf(bytes, 1, sector);
  } else {
    put32(bytes, 0, sector);
  }
  return bytes;
}

// Tracks of the sessions that have a lead-in, where a table of contents stands.
std::vector<const Track*> listedTracks(const Disc& disc) {
  std::vector<const Track*> listed;
  for (const Track& track : disc.tracks) {
    if (track.session <= disc.closedSessions()) listed.push_back(&track);
  }
  return listed;
}

Bytes tableOfContents(const Disc& disc, int firstTrack, bool isMsf) {
  const std::vector<const Track*> tracks = listedTracks(disc);
  const std::size_t count = disc.media->isOverwritable ? 1 : tracks.size();
  Bytes answer(4);
  answer[2] = 1;
  answer[3] = static_cast<std::uint8_t>(count);
  const auto add = [&](std::int64_t number, std::int64_t start) {
    append(answer, {0, 0x10 | kDataTrack, number, 0});
    const Bytes address = addressOf(start, isMsf);
    answer.insert(answer.end(), address.begin(), address.end());
  };
  for (std::size_t i = 0; i < count; ++i) {
    if (static_cast<int>(i) + 1 < firstTrack) continue;
    add(static_cast<std::int64_t>(i) + 1, tracks.empty() ? 0 : tracks[i]->start);
  }
  add(kLeadOutTrack, disc.readableSectors());
  return answer;
}

Bytes sessionInformation(const Disc& disc, bool isMsf) {
  const int last = std::max(1, disc.closedSessions());
  const int track = disc.media->isOverwritable ? 1 : firstTrackOf(disc, last);
  const bool isListed = static_cast<std::size_t>(track) <= disc.tracks.size();
  const std::int64_t start = isListed ? disc.tracks[static_cast<std::size_t>(track) - 1].start : 0;
  Bytes answer(4);
  answer[2] = 1;
  answer[3] = static_cast<std::uint8_t>(last);
  append(answer, {0, 0x10 | kDataTrack, track, 0});
  const Bytes address = addressOf(start, isMsf);
  answer.insert(answer.end(), address.begin(), address.end());
  return answer;
}

// Each session's points A0 (first track), A1 (last track), A2 (lead-out) and its tracks.
Bytes fullTableOfContents(const Disc& disc) {
  Bytes answer(4);
  answer[2] = 1;
  answer[3] = static_cast<std::uint8_t>(disc.closedSessions());
  const auto add = [&](int session, std::int64_t point, const Bytes& value) {
    append(answer, {session, 0x10 | kDataTrack, 0, point, 0, 0, 0, 0});
    answer.insert(answer.end(), value.begin(), value.begin() + 3);
  };
  for (int session = 1; session <= disc.closedSessions(); ++session) {
    const int first = firstTrackOf(disc, session);
    const int next = firstTrackOf(disc, session + 1);
    add(session, 0xA0, {static_cast<std::uint8_t>(first), 0, 0});
    add(session, 0xA1, {static_cast<std::uint8_t>(next - 1), 0, 0});
    Bytes msf(3);
    putMsf(msf, 0, disc.leadOutOf(session));
    add(session, 0xA2, msf);
    for (int track = first; track < next; ++track) {
      putMsf(msf, 0, disc.tracks[static_cast<std::size_t>(track) - 1].start);
      add(session, track, msf);
    }
  }
  return answer;
}

// What is moulded into a recordable CD.
Bytes atip(const Disc& disc) {
  constexpr std::int64_t kLeadIn = -11634;
  Bytes answer(28);
  answer[4] = 0xC0;
  answer[6] = static_cast<std::uint8_t>(0x80 | (disc.media->isErasable ? 0x40 : 0));
  putMsf(answer, 8, kLeadIn);
  putMsf(answer, 12, disc.capacity);
  return answer;
}

struct TrackRow {
  Track track;
  NextTrack number;
  bool isBlank;
  bool canBeWritten;
};

std::optional<TrackRow> trackRow(const Disc& disc, std::int64_t number) {
  constexpr std::int64_t kInvisible = 0xFF;
  const NextTrack next = nextTrackOf(disc);
  if (disc.media->isOverwritable || !disc.media->isWritable) {
    if (number != 1) return std::nullopt;
    Track whole = disc.tracks.empty() ? Track{.sectors = disc.capacity} : disc.tracks.front();
    return TrackRow{whole, {1, 1}, disc.media->isOverwritable && !disc.isFormatted, false};
  }
  const bool isFree = !disc.isFinal;
  const std::int64_t wanted = number == kInvisible ? next.number : number;
  if (wanted < 1 || wanted > (isFree ? next.number : static_cast<int>(disc.tracks.size()))) {
    return std::nullopt;
  }
  if (wanted == next.number && static_cast<std::size_t>(wanted) > disc.tracks.size()) {
    return TrackRow{Track{.start = disc.nextWritable()}, next, true, true};
  }
  const Track& track = disc.tracks[static_cast<std::size_t>(wanted) - 1];
  return TrackRow{track,
                  {static_cast<int>(wanted), track.session},
                  track.sectors == 0,
                  track.state == TrackState::Open};
}

std::int64_t numberOfTrackAt(const Disc& disc, std::int64_t sector) {
  for (std::size_t i = 0; i < disc.tracks.size(); ++i) {
    const Track& track = disc.tracks[i];
    if (sector >= track.start && sector < track.end()) return static_cast<std::int64_t>(i) + 1;
  }
  return nextTrackOf(disc).number;
}

}  // namespace

Sense readDiscInformation(Drive& drive, Command& command) {
  const Disc& disc = *drive.disc;
  const NextTrack next = nextTrackOf(disc);
  const bool isFinal = disc.isFinal || !disc.media->isWritable || disc.media->isOverwritable;
  const int sessions = isFinal ? std::max(1, disc.lastTrackSession()) : next.session;
  const int lastTrack =
      isFinal ? std::max<int>(1, static_cast<int>(disc.tracks.size())) : next.number;
  Bytes answer(34);
  put16(answer, 0, 32);
  answer[2] =
      static_cast<std::uint8_t>((disc.media->isErasable || disc.media->isOverwritable) << 4 |
                                lastSessionStateOf(disc) << 2 | discStatusOf(disc));
  answer[3] = 1;
  answer[4] = static_cast<std::uint8_t>(sessions);
  answer[5] =
      static_cast<std::uint8_t>(isFinal && disc.tracks.empty() ? 1 : firstTrackOf(disc, sessions));
  answer[6] = static_cast<std::uint8_t>(lastTrack);
  answer[7] = static_cast<std::uint8_t>(0x20 | static_cast<int>(disc.background));
  std::fill(answer.begin() + 16, answer.begin() + 24, std::uint8_t{0xFF});
  if (!isFinal && disc.isCd()) {
    constexpr std::int64_t kLeadInSectors = 4500;
    const std::int64_t leadIn =
        disc.isBlank() ? -11634 : disc.nextWritable() - kPregapSectors - kLeadInSectors;
    answer[16] = answer[20] = 0;
    putMsf(answer, 17, leadIn);
    putMsf(answer, 21, disc.capacity);
  } else if (!isFinal) {
    put32(answer, 16, disc.isBlank() ? 0 : disc.nextWritable());
    put32(answer, 20, disc.capacity);
  }
  command.answer(answer, command.number16(7));
  return kGood;
}

Sense readTrackInformation(Drive& drive, Command& command) {
  const Disc& disc = *drive.disc;
  const std::uint8_t kind = command.byte(1) & 3;
  std::int64_t number = command.address(2);
  command.note((kind == 1 ? "track " : "address ") + std::to_string(number));
  if (kind > 1) return kBadCommandField;
  if (kind == 0) number = numberOfTrackAt(disc, number);
  const std::optional<TrackRow> row = trackRow(disc, number);
  if (!row) return kBadCommandField;
  const Track& track = row->track;
  const std::int64_t limit = track.reserved > 0 ? track.start + track.reserved : disc.capacity;
  const bool isDamaged = track.state == TrackState::Damaged;
  const bool isDone = !row->canBeWritten;
  Bytes answer(36);
  put16(answer, 0, 34);
  answer[2] = static_cast<std::uint8_t>(row->number.number);
  answer[3] = static_cast<std::uint8_t>(row->number.session);
  answer[5] = static_cast<std::uint8_t>((isDamaged ? 0x20 : 0) | kDataTrack);
  const bool isIncremental = disc.media->family == Family::DvdMinus && !disc.isAtOnceOnly;
  answer[6] = static_cast<std::uint8_t>(
      (track.reserved > 0 ? 0x80 : 0) | (row->isBlank ? 0x40 : 0) | (isIncremental ? 0x20 : 0) |
      (isIncremental && disc.media->isOverwritable ? 0x10 : 0) | 1);
  answer[7] = static_cast<std::uint8_t>((row->canBeWritten ? 1 : 0) | (track.sectors > 0 ? 2 : 0));
  put32(answer, 8, track.start);
  if (row->canBeWritten) {
    put32(answer, 12, track.end());
    put32(answer, 16, std::max<std::int64_t>(0, limit - track.end()));
  }
  put32(answer, 20, isIncremental ? 16 : 0);
  put32(answer, 24,
        isDone ? track.sectors + track.runOut : std::max<std::int64_t>(0, limit - track.start));
  if (track.sectors > 0) put32(answer, 28, track.end() - 1);
  command.answer(answer, command.number16(7));
  return kGood;
}

Sense readToc(Drive& drive, Command& command) {
  const Disc& disc = *drive.disc;
  const int format = command.byte(2) & 0x0F;
  const bool isMsf = (command.byte(1) & 2) != 0;
  command.note("format " + std::to_string(format));
  Bytes answer;
  if (format == 4 && disc.isCd() && disc.media->isWritable && drive.isBurner()) {
    answer = atip(disc);
  } else if (disc.readableSectors() == 0) {
    return kBadCommandField;
  } else if (format == 0) {
    const int firstTrack = command.byte(6);
    const auto count = static_cast<int>(std::max<std::size_t>(1, listedTracks(disc).size()));
    if (firstTrack > count && firstTrack != kLeadOutTrack) return kBadCommandField;
    answer = tableOfContents(disc, firstTrack, isMsf);
  } else if (format == 1) {
    answer = sessionInformation(disc, isMsf);
  } else if (format == 2 && disc.isCd()) {
    answer = fullTableOfContents(disc);
  } else {
    return kBadCommandField;
  }
  put16(answer, 0, static_cast<std::int64_t>(answer.size()) - 2);
  command.answer(answer, command.number16(7));
  return kGood;
}

Sense readCapacity(Drive& drive, Command& command) {
  Bytes answer;
  append32(answer, std::max<std::int64_t>(0, drive.disc->readableSectors() - 1));
  append32(answer, kSectorBytes);
  command.answer(answer, 8);
  return kGood;
}

Sense readFormatCapacities(Drive& drive, Command& command) {
  constexpr std::int64_t kUnformatted = 1;
  constexpr std::int64_t kFormatted = 2;
  constexpr std::int64_t kUnknown = 3;
  Bytes answer(4);
  const auto add = [&](std::int64_t sectors, std::int64_t type, std::int64_t parameter) {
    append32(answer, sectors);
    append32(answer, type << 24 | parameter);
  };
  if (!drive.hasMedium()) {
    add(drive.isBurner() ? mediaNamed("bd-re")->usualCapacity : 0, kUnknown, kSectorBytes);
  } else {
    const Disc& disc = *drive.disc;
    const bool isFormatted =
        disc.media->isOverwritable ? disc.isFormatted : disc.readableSectors() > 0;
    add(disc.media->isOverwritable || !isFormatted ? disc.capacity : disc.readableSectors(),
        isFormatted ? kFormatted : kUnformatted, kSectorBytes);
    const auto offer = [&](std::int64_t type, std::int64_t parameter) {
      add(disc.capacity, type << 2, parameter);
    };
    switch (drive.isBurner() ? disc.media->profile : 0) {
      case 0x12:
        offer(0x00, kSectorBytes);
        break;
      case 0x13:
      case 0x14:
        offer(0x00, kSectorBytes);
        offer(0x10, 16);
        offer(0x15, 16);
        break;
      case 0x1A:
        offer(0x26, 0);
        break;
      case 0x41:
        if (!disc.isBlank()) break;
        offer(0x00, 0x3000);
        offer(0x32, 0x5000);
        break;
      case 0x43:
        offer(0x00, 0x3000);
        offer(0x30, 0x3000);
        offer(0x31, 0x0800);
        break;
      default:
        break;
    }
  }
  answer[3] = static_cast<std::uint8_t>(answer.size() - 4);
  command.answer(answer, command.number16(7));
  return kGood;
}

// Of the many structures only the physical format of DVDs.
Sense readDiscStructure(Drive& drive, Command& command) {
  constexpr std::uint8_t kPhysicalFormat = 0;
  constexpr std::int64_t kFirstPhysicalSector = 0x30000;
  const Disc& disc = *drive.disc;
  const std::uint8_t format = command.byte(7);
  command.note("format " + std::to_string(format));
  const bool isDvd =
      disc.media->family == Family::DvdMinus || disc.media->family == Family::DvdPlus;
  if (!isDvd || format != kPhysicalFormat) return kBadCommandField;
  Bytes answer(4 + 2048);
  put16(answer, 0, 2050);
  answer[4] = disc.media->bookType;
  answer[5] = 0x0F;
  answer[6] = 0x02;
  put32(answer, 8, kFirstPhysicalSector);
  put32(answer, 12, kFirstPhysicalSector + disc.capacity - 1);
  command.answer(answer, command.number16(8));
  return kGood;
}

}  // namespace emulated
