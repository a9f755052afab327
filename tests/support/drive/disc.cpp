#include "disc.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace emulated {
namespace {

// clang-format off
constexpr std::array kMedia{
    //    name        profile family            writable erasable overwritable book  usual capacity
    Media{"cd-rom",     0x08, Family::Cd,       false,   false,   false,       0x00,   359849},
    Media{"cd-r",       0x09, Family::Cd,       true,    false,   false,       0x00,   359849},
    Media{"cd-rw",      0x0A, Family::Cd,       true,    true,    false,       0x00,   359849},
    Media{"dvd-rom",    0x10, Family::DvdMinus, false,   false,   false,       0x01,  2298496},
    Media{"dvd-r",      0x11, Family::DvdMinus, true,    false,   false,       0x25,  2298496},
    Media{"dvd-ram",    0x12, Family::DvdMinus, true,    false,   true,        0x16,  2236704},
    Media{"dvd-rw-ro",  0x13, Family::DvdMinus, true,    true,    true,        0x32,  2298496},
    Media{"dvd-rw",     0x14, Family::DvdMinus, true,    true,    false,       0x32,  2298496},
    Media{"dvd-r-dl",   0x15, Family::DvdMinus, true,    false,   false,       0x26,  4171712},
    Media{"dvd+rw",     0x1A, Family::DvdPlus,  true,    false,   true,        0x92,  2295104},
    Media{"dvd+r",      0x1B, Family::DvdPlus,  true,    false,   false,       0xA1,  2295104},
    Media{"dvd+r-dl",   0x2B, Family::DvdPlus,  true,    false,   false,       0xE1,  4173824},
    Media{"bd-rom",     0x40, Family::Bd,       false,   false,   false,       0x00, 12219392},
    Media{"bd-r",       0x41, Family::Bd,       true,    false,   false,       0x00, 12219392},
    Media{"bd-re",      0x43, Family::Bd,       true,    false,   true,        0x00, 11826176},
};
constexpr std::array<const char*, 3> kTrackStates{"open", "closed", "damaged"};
// clang-format on

TrackState trackStateOf(std::string_view text) {
  for (std::size_t i = 0; i < kTrackStates.size(); ++i) {
    if (text == kTrackStates[i]) return static_cast<TrackState>(i);
  }
  return TrackState::Damaged;
}

std::int64_t aligned(std::int64_t sector, std::int64_t unit) {
  return (sector + unit - 1) / unit * unit;
}

// What lies between the end of a session's last track and the next session's first.
std::int64_t sessionGap(const Disc& disc) {
  // Lead-out, lead-in and pregap; the first lead-out is longer than those that follow.
  constexpr std::int64_t kAfterFirstCdSession = 6750 + 4500 + kPregapSectors;
  constexpr std::int64_t kAfterLaterCdSession = 2250 + 4500 + kPregapSectors;
  constexpr std::int64_t kDvdBorder = 4096;
  if (disc.isCd()) {
    return disc.lastTrackSession() == 1 ? kAfterFirstCdSession : kAfterLaterCdSession;
  }
  return disc.media->family == Family::Bd ? 0 : kDvdBorder;
}

std::vector<Track> tracksOf(const TextTable& table) {
  std::vector<Track> tracks;
  for (const auto& [name, value] : table.lines()) {
    const std::vector<std::string> words = wordsOf(value);
    if (name != "track" || words.size() != 6) continue;
    const auto number = [&](std::size_t i) { return std::strtoll(words[i].c_str(), nullptr, 10); };
    tracks.push_back(Track{.session = static_cast<int>(number(0)),
                           .start = number(1),
                           .sectors = number(2),
                           .reserved = number(3),
                           .runOut = number(4),
                           .state = trackStateOf(words[5])});
  }
  return tracks;
}

const char* stateOf(const Disc& disc) {
  if (disc.media->isOverwritable) return disc.isFormatted ? "formatted" : "unformatted";
  if (disc.isFinal) return "closed";
  if (disc.isDamaged()) return "damaged";
  return disc.isBlank() ? "blank" : "appendable";
}

}  // namespace

const Media* mediaNamed(std::string_view name) {
  const auto* const row =
      std::find_if(kMedia.begin(), kMedia.end(), [=](const Media& m) { return m.name == name; });
  return row == kMedia.end() ? nullptr : row;
}

const Media* mediaOfProfile(std::uint16_t profile) {
  const auto* const row = std::find_if(kMedia.begin(), kMedia.end(),
                                       [=](const Media& m) { return m.profile == profile; });
  return row == kMedia.end() ? nullptr : row;
}

std::optional<Disc> Disc::of(const TextTable& table) {
  Disc disc;
  disc.media = mediaNamed(table.text("media"));
  if (disc.media == nullptr) return std::nullopt;
  disc.capacity = table.number("capacity", disc.media->usualCapacity);
  disc.serial = table.text("serial");
  disc.tracks = tracksOf(table);
  disc.isAtOnceOnly = table.isYes("sequential_only_at_once");
  const std::string state = table.text("state", disc.media->isWritable ? "blank" : "closed");
  disc.isFinal = state == "closed";
  disc.isSessionOpen = table.text("session") == "open" || state == "damaged";
  disc.isFormatted = state == "formatted";
  constexpr std::uint16_t kDvdPlusRw = 0x1A;
  const auto background = disc.isFormatted && disc.media->profile == kDvdPlusRw
                              ? BackgroundFormat::Complete
                              : BackgroundFormat::None;
  disc.background = static_cast<BackgroundFormat>(
      table.number("background", static_cast<std::int64_t>(background)));
  const bool holdsData = state == "appendable" || state == "closed" || state == "damaged";
  if (holdsData && disc.tracks.empty() && !disc.media->isOverwritable) {
    disc.tracks.push_back(
        Track{.sectors = table.number("used", disc.capacity),
              .state = state == "damaged" ? TrackState::Damaged : TrackState::Closed});
  }
  return disc;
}

void Disc::store(TextTable& table) const {
  table.set("media", media->name);
  table.set("state", stateOf(*this));
  table.set("capacity", capacity);
  table.remove("used");
  table.remove("track");
  table.set("session", isSessionOpen ? "open" : "closed");
  table.setYes("sequential_only_at_once", isAtOnceOnly);
  table.set("background", static_cast<std::int64_t>(background));
  for (const Track& track : tracks) {
    std::string line;
    for (const std::int64_t number :
         {std::int64_t{track.session}, track.start, track.sectors, track.reserved, track.runOut}) {
      line += std::to_string(number) + " ";
    }
    table.add("track", line + kTrackStates[static_cast<std::size_t>(track.state)]);
  }
}

std::int64_t Disc::blockSectors() const {
  constexpr std::int64_t kDvdBlock = 16;
  constexpr std::int64_t kBdCluster = 32;
  return isCd() ? 1 : media->family == Family::Bd ? kBdCluster : kDvdBlock;
}

std::int64_t Disc::wholeBlocks(std::int64_t sectors) const {
  return aligned(sectors, blockSectors());
}

bool Disc::isBlank() const { return !media->isOverwritable && tracks.empty() && !isFinal; }

bool Disc::isDamaged() const {
  return !tracks.empty() && tracks.back().state == TrackState::Damaged;
}

std::int64_t Disc::nextWritable() const {
  if (tracks.empty()) return 0;
  const Track& last = tracks.back();
  if (last.state == TrackState::Open) return last.end();
  const std::int64_t block = blockSectors();
  if (!isSessionOpen) return aligned(last.end() + sessionGap(*this), block);
  // A track of its own on a CD begins with a pregap that the drive writes.
  return aligned(last.end() + last.runOut + (isCd() ? kPregapSectors : 0), block);
}

Track* Disc::openTrack() {
  return tracks.empty() || tracks.back().state != TrackState::Open ? nullptr : &tracks.back();
}

const Track* Disc::openTrack() const { return const_cast<Disc*>(this)->openTrack(); }

int Disc::closedSessions() const {
  return isSessionOpen ? std::max(0, lastTrackSession() - 1) : lastTrackSession();
}

std::int64_t Disc::leadOutOf(int session) const {
  std::int64_t end = 0;
  for (const Track& track : tracks) {
    if (track.session == session) end = track.end() + track.runOut;
  }
  return end;
}

const Track* Disc::trackAt(std::int64_t sector) const {
  for (const Track& track : tracks) {
    if (sector >= track.start && sector < track.end()) return &track;
  }
  return nullptr;
}

std::int64_t Disc::readableSectors() const {
  if (media->isOverwritable) return isFormatted ? capacity : 0;
  return leadOutOf(closedSessions());
}

void Disc::erase() {
  tracks.clear();
  isSessionOpen = isFinal = isFormatted = isAtOnceOnly = false;
  background = BackgroundFormat::None;
}

}  // namespace emulated
