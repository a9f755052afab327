#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text_table.h"

namespace emulated {

constexpr std::int64_t kSectorBytes = 2048;
// Addresses of a CD are counted from the end of the first track's pregap.
constexpr std::int64_t kPregapSectors = 150;

enum class Family { Cd, DvdMinus, DvdPlus, Bd };

struct Media {
  const char* name;
  std::uint16_t profile;
  Family family;
  bool isWritable;
  bool isErasable;        // BLANK takes it
  bool isOverwritable;    // any sector may be written at any time, once it is formatted
  std::uint8_t bookType;  // what the lead-in of a DVD begins with: its kind and the version of that
  std::int64_t usualCapacity;
};
const Media* mediaNamed(std::string_view name);
const Media* mediaOfProfile(std::uint16_t profile);

enum class TrackState { Open, Closed, Damaged };

struct Track {
  int session = 1;
  std::int64_t start = 0;
  std::int64_t sectors = 0;   // written so far
  std::int64_t reserved = 0;  // how many it will hold; 0: not said
  // The two unreadable sectors that follow a CD track written on its own.
  std::int64_t runOut = 0;
  TrackState state = TrackState::Open;

  std::int64_t end() const { return start + sectors; }
};

enum class BackgroundFormat { None = 0, Started = 1, Running = 2, Complete = 3 };

// What is on a disc: the lines of disc.txt.
//   media = cd-r | ...         capacity = sectors          serial = any text
//   state = blank | unformatted | formatted | appendable | closed | damaged
//   used = sectors             for a disc without track lines that is not blank: one track of them
//   session = open | closed    whether the last session takes more tracks
//   track = session start sectors reserved runOut open|closed|damaged
//   background = 0..3          DVD+RW: background format not begun, stopped, running, complete
//   sequential_only_at_once = yes   DVD-RW after a quick erasure: no incremental recording
struct Disc {
  const Media* media = nullptr;
  std::int64_t capacity = 0;
  std::string serial;
  std::vector<Track> tracks;
  bool isSessionOpen = false;
  bool isFinal = false;
  bool isFormatted = false;
  bool isAtOnceOnly = false;
  BackgroundFormat background = BackgroundFormat::None;

  static std::optional<Disc> of(const TextTable& table);
  void store(TextTable& table) const;

  bool isCd() const { return media->family == Family::Cd; }
  // What the drive writes at least, filling it up with zeros.
  std::int64_t blockSectors() const;
  std::int64_t wholeBlocks(std::int64_t sectors) const;
  bool isBlank() const;
  bool isDamaged() const;
  // Where recording goes on; the first sector of a new track when none is open.
  std::int64_t nextWritable() const;
  Track* openTrack();
  const Track* openTrack() const;
  int closedSessions() const;
  int lastTrackSession() const { return tracks.empty() ? 0 : tracks.back().session; }
  // Where the session's lead-out begins.
  std::int64_t leadOutOf(int session) const;
  const Track* trackAt(std::int64_t sector) const;
  // How many sectors from 0 a computer takes the disc for.
  std::int64_t readableSectors() const;
  void erase();
};

}  // namespace emulated
