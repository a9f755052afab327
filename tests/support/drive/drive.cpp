#include "drive.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "command.h"
#include "real_calls.h"

namespace emulated {
namespace {

constexpr const char* kSimulated = "simulated.txt";

// CD 4x to 24x, in the kB/s that drives count in.
constexpr const char* kUsualSpeeds = "706 1411 2822 4234";

}  // namespace

std::string hexOf(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", byte);
    text += digits.data();
  }
  return text;
}

std::vector<std::uint8_t> bytesOfHex(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
    const std::string digits(text.substr(at, 2));
    bytes.push_back(static_cast<std::uint8_t>(std::strtoul(digits.c_str(), nullptr, 16)));
  }
  return bytes;
}

Drive::Drive(std::string directory) : directory_(std::move(directory)) {
  OwnDescriptor lock(real().open(pathOf("state.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (!lock.isOpen() || ::flock(lock.get(), LOCK_EX) != 0) return;
  lock_ = lock.take();
  settings = TextTable::read(pathOf("drive.txt"));
  plan = TextTable::read(pathOf("faults.txt"));
  storedState_ = state = TextTable::read(pathOf("state.txt"));
  discTable_ = TextTable::read(pathOf("disc.txt"));
  const std::string serial = discTable_.lines().empty() ? "none" : discTable_.text("serial");
  if (state.text("disc seen") != serial) {
    // Another disc: nothing that was under way goes on with it.
    if (state.has("disc seen")) state.setYes("changed", true);
    state.set("disc seen", serial);
    state.remove("pulled");
    state.remove("simulating");
    endWriting(*this);
  }
  if (isSimulating()) discTable_ = TextTable::read(pathOf(kSimulated));
  disc = Disc::of(discTable_);
}

Drive::~Drive() {
  if (lock_ >= 0) real().close(lock_);
}

bool Drive::store() {
  bool isStored = true;
  if (disc) {
    TextTable table = discTable_;
    disc->store(table);
    const char* const name = isSimulating() ? kSimulated : "disc.txt";
    if (!(table == discTable_)) isStored = table.write(pathOf(name));
  }
  if (!(state == storedState_)) isStored = state.write(pathOf("state.txt")) && isStored;
  return isStored;
}

std::vector<int> Drive::speeds() const {
  std::vector<int> speeds;
  for (const std::string& word : wordsOf(settings.text("speeds", kUsualSpeeds))) {
    speeds.push_back(static_cast<int>(std::strtol(word.c_str(), nullptr, 10)));
  }
  std::sort(speeds.begin(), speeds.end());
  return speeds;
}

Sense Drive::noMedium() const {
  if (state.isYes("pulled")) return kNoMedium;
  return isTrayOpen() ? kNoMediumTrayOpen : kNoMediumTrayClosed;
}

std::uint16_t Drive::currentProfile() const {
  if (!hasMedium()) return 0;
  if (isBurner()) return disc->media->profile;
  // A drive that only reads takes what is readable for pressed.
  if (disc->readableSectors() == 0) return 0;
  switch (disc->media->family) {
    case Family::Cd:
      return 0x08;
    case Family::Bd:
      return 0;
    default:
      return 0x10;
  }
}

WriteParameters Drive::writeParameters() const {
  const std::vector<std::uint8_t> page = bytesOfHex(state.text("write parameters"));
  if (page.size() < 4) {
    return WriteParameters{.writeType = static_cast<std::uint8_t>(disc && disc->isCd() ? 1 : 0)};
  }
  return WriteParameters{.isTest = (page[2] & 0x10) != 0,
                         .writeType = static_cast<std::uint8_t>(page[2] & 0x0F),
                         .isMultiSession = (page[3] >> 6) == 3,
                         .isData = (page[3] & 4) != 0};
}

void Drive::beginSimulation() {
  if (isSimulating()) return;
  // What is on the disc itself stays as disc.txt has it.
  state.setYes("simulating", true);
  if (!discTable_.write(pathOf(kSimulated))) state.setYes("simulating", false);
}

void Drive::endSimulation() {
  if (!isSimulating()) return;
  state.remove("simulating");
  discTable_ = TextTable::read(pathOf("disc.txt"));
  disc = Disc::of(discTable_);
  endWriting(*this);
}

void Drive::breakOff() {
  endSimulation();
  if (!state.isYes("writing")) return;
  if (disc && !finishAtOnce(*this)) {
    // There is no link to go on from, except where any block can be the last of a burn.
    const bool goesOn = disc->media->family == Family::DvdPlus || disc->media->family == Family::Bd;
    Track* const track = disc->openTrack();
    if (track != nullptr && !goesOn) track->state = TrackState::Damaged;
  }
  endWriting(*this);
}

bool Drive::isTakenAway(std::int64_t end) {
  const bool isPulled = faults.meets("pulled", end);
  const bool isUnplugged = faults.meets("unplugged", end);
  if (!isPulled && !isUnplugged) return false;
  breakOff();
  state.setYes(isPulled ? "pulled" : "unplugged", true);
  return true;
}

bool Drive::writeSectors(std::int64_t first, const std::uint8_t* data, std::int64_t count) {
  if (count <= 0 || isSimulating()) return true;
  const OwnDescriptor file(
      real().open(pathOf("disc.bin").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  const auto bytes = static_cast<std::size_t>(count * kSectorBytes);
  return file.isOpen() &&
         ::pwrite64(file.get(), data, bytes, first * kSectorBytes) == static_cast<ssize_t>(bytes);
}

// What no file holds is zeros.
bool Drive::readSectors(std::int64_t first, std::uint8_t* data, std::int64_t count) {
  const auto bytes = static_cast<std::size_t>(count * kSectorBytes);
  std::fill(data, data + bytes, std::uint8_t{0});
  const OwnDescriptor file(real().open(pathOf("disc.bin").c_str(), O_RDONLY | O_CLOEXEC, 0));
  return !file.isOpen() || real().pread(file.get(), data, bytes, first * kSectorBytes) >= 0;
}

void Drive::eraseContents() {
  const OwnDescriptor file(
      real().open(pathOf("disc.bin").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
}

void Drive::log(std::string_view line) const {
  const OwnDescriptor file(
      real().open(pathOf("commands.log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
  if (!file.isOpen()) return;
  const std::string whole = std::to_string(::getpid()) + " " + std::string(line) + "\n";
  // A log that cannot be written shows in what is missing from it.
  static_cast<void>(!::write(file.get(), whole.data(), whole.size()));
}

}  // namespace emulated
