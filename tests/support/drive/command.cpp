#include "command.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>

#include "real_calls.h"

namespace emulated {
namespace {

using Handler = Sense (*)(Drive&, Command&);

struct Row {
  std::uint8_t code;
  const char* name;
  const char* shortName;  // in faults.txt; "" for none
  bool needsMedium;
  bool isForBurners;
  bool tellsChange;  // answers with the unit attention that waits
  Handler run;
};
// clang-format off
constexpr std::array kCommands{
    //  code  name                      short     medium burner change
    Row{0x00, "TEST UNIT READY",        "",       true,  false, true,  testUnitReady},
    Row{0x03, "REQUEST SENSE",          "",       false, false, false, requestSense},
    Row{0x04, "FORMAT UNIT",            "format", true,  true,  true,  formatUnit},
    Row{0x12, "INQUIRY",                "",       false, false, false, inquiry},
    Row{0x1B, "START STOP UNIT",        "",       false, false, true,  startStopUnit},
    Row{0x1E, "PREVENT ALLOW",          "",       false, false, true,  preventAllow},
    Row{0x23, "READ FORMAT CAPACITIES", "",       false, false, true,  readFormatCapacities},
    Row{0x25, "READ CAPACITY",          "",       true,  false, true,  readCapacity},
    Row{0x28, "READ 10",                "",       true,  false, true,  read10},
    Row{0x2A, "WRITE 10",               "",       true,  true,  true,  write10},
    Row{0x35, "SYNCHRONIZE CACHE",      "sync",   true,  true,  true,  synchronizeCache},
    Row{0x43, "READ TOC",               "",       true,  false, true,  readToc},
    Row{0x46, "GET CONFIGURATION",      "",       false, false, false, getConfiguration},
    Row{0x4A, "GET EVENT STATUS",       "",       false, false, false, getEventStatus},
    Row{0x51, "READ DISC INFORMATION",  "",       true,  false, true,  readDiscInformation},
    Row{0x52, "READ TRACK INFORMATION", "",       true,  false, true,  readTrackInformation},
    Row{0x53, "RESERVE TRACK",          "",       true,  true,  true,  reserveTrack},
    Row{0x54, "SEND OPC",               "",       true,  true,  true,  sendOpc},
    Row{0x55, "MODE SELECT",            "",       false, false, true,  modeSelect},
    Row{0x5A, "MODE SENSE",             "",       false, false, true,  modeSense},
    Row{0x5B, "CLOSE TRACK SESSION",    "close",  true,  true,  true,  closeTrackSession},
    Row{0x5C, "READ BUFFER CAPACITY",   "",       true,  true,  true,  readBufferCapacity},
    Row{0x5D, "SEND CUE SHEET",         "",       true,  true,  true,  sendCueSheet},
    Row{0xA1, "BLANK",                  "blank",  true,  true,  true,  blank},
    Row{0xA8, "READ 12",                "",       true,  false, true,  read12},
    Row{0xAA, "WRITE 12",               "",       true,  true,  true,  write12},
    Row{0xAC, "GET PERFORMANCE",        "",       false, false, true,  getPerformance},
    Row{0xAD, "READ DISC STRUCTURE",    "",       true,  false, true,  readDiscStructure},
    Row{0xB6, "SET STREAMING",          "",       false, false, true,  setStreaming},
    Row{0xBB, "SET CD SPEED",           "",       false, false, true,  setSpeed},
    Row{0xBD, "MECHANISM STATUS",       "",       false, false, true,  mechanismStatus},
    Row{0xBE, "READ CD",                "",       true,  false, true,  readCd},
};
// clang-format on
static_assert(std::ranges::adjacent_find(kCommands, std::ranges::greater_equal{}, &Row::code) ==
                  kCommands.end(),
              "rows ascend by code, without doubles");

const Row* rowOf(std::uint8_t code) {
  const auto* const row = std::find_if(kCommands.begin(), kCommands.end(),
                                       [=](const Row& r) { return r.code == code; });
  return row == kCommands.end() ? nullptr : row;
}

bool isEject(const Command& command) {
  constexpr std::uint8_t kStart = 1;
  constexpr std::uint8_t kLoadEject = 2;
  return command.byte(0) == 0x1B && (command.byte(4) & (kStart | kLoadEject)) == kLoadEject;
}

// A drive that spins up, or works on what it was told without making the host wait.
Sense notReady(Drive& drive, const Row& row) {
  constexpr Sense kLongWrite{0x02, 0x04, 0x08};
  const std::int64_t asked = drive.state.number("polls");
  const std::int64_t busy = drive.state.number("busy polls");
  const bool isAsked = row.code == 0x00;
  if (busy > 0) {
    if (isAsked) drive.state.set("busy polls", busy - 1);
    return kLongWrite;
  }
  if (asked >= drive.faults.number("becoming_ready")) return kGood;
  if (isAsked) drive.state.set("polls", asked + 1);
  return kBecomingReady;
}

Sense run(Drive& drive, Command& command, const Row& row) {
  if (row.isForBurners && !drive.isBurner()) return kUnknownCommand;
  if (row.tellsChange && drive.hasMedium() && drive.state.isYes("changed")) {
    drive.state.remove("changed");
    return kMediumChanged;
  }
  const Sense fault = drive.faults.ofCommand(row.name, isEject(command) ? "eject" : row.shortName);
  if (!fault.isGood()) return fault;
  if (row.needsMedium) {
    if (!drive.hasMedium()) return drive.noMedium();
    if (const Sense sense = notReady(drive, row); !sense.isGood()) return sense;
  }
  return row.run(drive, command);
}

void waitAsPlanned(const std::string& directory, const Command& command) {
  const TextTable plan = TextTable::read(directory + "/faults.txt");
  const bool isWrite = command.byte(0) == 0x2A || command.byte(0) == 0xAA;
  const std::int64_t milliseconds = plan.number("slow") + (isWrite ? plan.number("slow_write") : 0);
  if (milliseconds <= 0) return;
  const timespec wait{.tv_sec = milliseconds / 1000, .tv_nsec = milliseconds % 1000 * 1'000'000};
  real().nanosleep(&wait, nullptr);
}

}  // namespace

void append16(Bytes& bytes, std::int64_t number) {
  bytes.push_back(static_cast<std::uint8_t>(number >> 8));
  bytes.push_back(static_cast<std::uint8_t>(number));
}

void append32(Bytes& bytes, std::int64_t number) {
  append16(bytes, number >> 16);
  append16(bytes, number);
}

void put16(Bytes& bytes, std::size_t at, std::int64_t number) {
  bytes[at] = static_cast<std::uint8_t>(number >> 8);
  bytes[at + 1] = static_cast<std::uint8_t>(number);
}

void put32(Bytes& bytes, std::size_t at, std::int64_t number) {
  put16(bytes, at, number >> 16);
  put16(bytes, at + 2, number);
}

void putMsf(Bytes& bytes, std::size_t at, std::int64_t sector) {
  constexpr std::int64_t kFramesPerSecond = 75;
  constexpr std::int64_t kFramesPerMinute = 60 * kFramesPerSecond;
  constexpr std::int64_t kWholeRound = 100 * kFramesPerMinute;  // lead-ins lie at its end
  const std::int64_t frame = (sector + kPregapSectors + kWholeRound) % kWholeRound;
  bytes[at] = static_cast<std::uint8_t>(frame / kFramesPerMinute);
  bytes[at + 1] = static_cast<std::uint8_t>(frame / kFramesPerSecond % 60);
  bytes[at + 2] = static_cast<std::uint8_t>(frame % kFramesPerSecond);
}

Command::Command(const std::uint8_t* block, std::size_t blockBytes, std::uint8_t* data,
                 std::size_t dataBytes, bool isToDrive)
    : block_(block, block + blockBytes),
      data_(data),
      dataBytes_(dataBytes),
      isToDrive_(isToDrive) {}

std::int64_t Command::address(std::size_t at) const {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number16(at)) << 16 |
                                   static_cast<std::uint32_t>(number16(at + 2)));
}

Bytes Command::sent() const { return isToDrive_ ? Bytes(data_, data_ + dataBytes_) : Bytes(); }

void Command::answer(const Bytes& bytes, std::int64_t allocationLength) {
  const std::size_t most = std::min(static_cast<std::size_t>(allocationLength), dataBytes_);
  transferred_ = isToDrive_ ? 0 : std::min(bytes.size(), most);
  if (transferred_ > 0) std::memcpy(data_, bytes.data(), transferred_);
}

bool runCommand(const std::string& directory, Command& command, Sense& sense) {
  waitAsPlanned(directory, command);
  Drive drive(directory);
  if (!drive.isThere() || drive.state.isYes("unplugged")) return false;
  const Row* const row = rowOf(command.byte(0));
  sense = row == nullptr ? kUnknownCommand : run(drive, command, *row);
  std::string name = row == nullptr ? "COMMAND " + hexOf({command.byte(0)}) : row->name;
  const bool isLost = drive.state.isYes("unplugged");
  drive.log(name + command.notes() + " -> " + (isLost ? "lost" : textOf(sense)));
  return drive.store() && !isLost;
}

void endWriting(Drive& drive) {
  for (const char* const name :
       {"writing", "cue sheet", "next of cue sheet", "reservation", "unsynchronized"}) {
    drive.state.remove(name);
  }
}

}  // namespace emulated
