#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "drive.h"
#include "sense.h"

namespace emulated {

using Bytes = std::vector<std::uint8_t>;

// Big-endian numbers, as all of MMC has them.
void append16(Bytes& bytes, std::int64_t number);
void append32(Bytes& bytes, std::int64_t number);
void put16(Bytes& bytes, std::size_t at, std::int64_t number);
void put32(Bytes& bytes, std::size_t at, std::int64_t number);

// Minute, second and frame of an address on a CD; three bytes from "at" on.
void putMsf(Bytes& bytes, std::size_t at, std::int64_t sector);

// One command descriptor block with the host's buffer.
class Command {
 public:
  Command(const std::uint8_t* block, std::size_t blockBytes, std::uint8_t* data,
          std::size_t dataBytes, bool isToDrive);

  std::uint8_t byte(std::size_t at) const { return at < block_.size() ? block_[at] : 0; }
  std::int64_t number16(std::size_t at) const { return byte(at) << 8 | byte(at + 1); }
  std::int64_t number24(std::size_t at) const { return number16(at) << 8 | byte(at + 2); }
  // Addresses before the first track of a CD are negative.
  std::int64_t address(std::size_t at) const;

  // What the host sends; empty when it sends nothing.
  Bytes sent() const;
  std::uint8_t* data() const { return data_; }
  std::size_t dataBytes() const { return dataBytes_; }
  bool isToDrive() const { return isToDrive_; }
  // Gives the host as much of the answer as it asked for and has room for.
  void answer(const Bytes& bytes, std::int64_t allocationLength);
  void answered(std::size_t bytes) { transferred_ = bytes; }
  std::size_t transferred() const { return transferred_; }
  // What stands in the log behind the command's name.
  void note(std::string text) { notes_ += " " + std::move(text); }
  const std::string& notes() const { return notes_; }

 private:
  Bytes block_;
  std::uint8_t* data_;
  std::size_t dataBytes_;
  bool isToDrive_;
  std::size_t transferred_ = 0;
  std::string notes_;
};

// Does the command with all that is common to commands: lock, faults, unit attention, log. False:
// the command does not reach a drive.
bool runCommand(const std::string& directory, Command& command, Sense& sense);

// Forgets cue sheet, reservation and whatever else belongs to one recording.
void endWriting(Drive& drive);
// Writes the lead-out of a session at once whose last sector has come. False: there is none.
bool finishAtOnce(Drive& drive);

// The commands. Each is called with a medium in the drive where its row of the table says so.
Sense testUnitReady(Drive& drive, Command& command);
Sense requestSense(Drive& drive, Command& command);
Sense inquiry(Drive& drive, Command& command);
Sense startStopUnit(Drive& drive, Command& command);
Sense preventAllow(Drive& drive, Command& command);
Sense modeSense(Drive& drive, Command& command);
Sense modeSelect(Drive& drive, Command& command);
Sense getConfiguration(Drive& drive, Command& command);
Sense getEventStatus(Drive& drive, Command& command);
Sense getPerformance(Drive& drive, Command& command);
Sense setSpeed(Drive& drive, Command& command);
Sense setStreaming(Drive& drive, Command& command);
Sense mechanismStatus(Drive& drive, Command& command);
Sense readBufferCapacity(Drive& drive, Command& command);

Sense readDiscInformation(Drive& drive, Command& command);
Sense readTrackInformation(Drive& drive, Command& command);
Sense readToc(Drive& drive, Command& command);
Sense readCapacity(Drive& drive, Command& command);
Sense readFormatCapacities(Drive& drive, Command& command);
Sense readDiscStructure(Drive& drive, Command& command);

Sense read10(Drive& drive, Command& command);
Sense read12(Drive& drive, Command& command);
Sense readCd(Drive& drive, Command& command);

Sense sendOpc(Drive& drive, Command& command);
Sense sendCueSheet(Drive& drive, Command& command);
Sense reserveTrack(Drive& drive, Command& command);
Sense write10(Drive& drive, Command& command);
Sense write12(Drive& drive, Command& command);
Sense synchronizeCache(Drive& drive, Command& command);
Sense closeTrackSession(Drive& drive, Command& command);
Sense blank(Drive& drive, Command& command);
Sense formatUnit(Drive& drive, Command& command);

}  // namespace emulated
