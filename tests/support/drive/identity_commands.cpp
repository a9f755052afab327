// What a drive is, whether it is ready, and its tray.
#include <algorithm>

#include "command.h"

namespace emulated {
namespace {

void putText(Bytes& bytes, std::size_t at, std::size_t length, const std::string& text) {
  for (std::size_t i = 0; i < length; ++i) {
    bytes[at + i] = i < text.size() ? static_cast<std::uint8_t>(text[i]) : std::uint8_t{' '};
  }
}

}  // namespace

Sense testUnitReady(Drive&, Command&) { return kGood; }

// Nothing is ever pending here: each command brings its own sense.
Sense requestSense(Drive&, Command& command) {
  Bytes answer(18);
  answer[0] = 0x70;
  answer[7] = 10;
  command.answer(answer, command.byte(4));
  return kGood;
}

Sense inquiry(Drive& drive, Command& command) {
  Bytes answer(36);
  answer[0] = 0x05;  // multimedia device
  answer[1] = 0x80;  // removable
  answer[2] = 0x05;
  answer[3] = 0x32;
  answer[4] = 31;
  putText(answer, 8, 8, drive.vendor());
  putText(answer, 16, 16, drive.product());
  putText(answer, 32, 4, drive.revision());
  command.answer(answer, command.number16(3));
  return kGood;
}

Sense startStopUnit(Drive& drive, Command& command) {
  const bool starts = (command.byte(4) & 1) != 0;
  const bool movesTray = (command.byte(4) & 2) != 0;
  command.note(movesTray ? (starts ? "load" : "eject") : (starts ? "start" : "stop"));
  if (!movesTray) {
    if (!starts) drive.breakOff();
    return starts && !drive.hasMedium() ? drive.noMedium() : kGood;
  }
  if (starts) {
    if (drive.isTrayOpen() && drive.disc) drive.state.setYes("changed", true);
    drive.state.set("tray", "closed");
    return kGood;
  }
  if (drive.state.isYes("locked")) return kRemovalPrevented;
  drive.breakOff();
  drive.state.set("tray", "open");
  return kGood;
}

Sense preventAllow(Drive& drive, Command& command) {
  const bool prevents = (command.byte(4) & 1) != 0;
  command.note(prevents ? "prevent" : "allow");
  drive.state.setYes("locked", prevents);
  return kGood;
}

Sense getEventStatus(Drive& drive, Command& command) {
  constexpr std::uint8_t kMediaClass = 4;
  const bool isAsked = (command.byte(4) & (1 << kMediaClass)) != 0;
  Bytes answer(isAsked ? 8 : 4);
  put16(answer, 0, isAsked ? 6 : 2);
  answer[2] = isAsked ? kMediaClass : 0x80;
  answer[3] = 1 << kMediaClass;
  if (isAsked) {
    answer[4] = drive.state.isYes("changed") && drive.hasMedium() ? 2 : 0;  // new media
    answer[5] =
        static_cast<std::uint8_t>((drive.hasMedium() ? 2 : 0) | (drive.isTrayOpen() ? 1 : 0));
  }
  command.answer(answer, command.number16(7));
  return kGood;
}

Sense getPerformance(Drive& drive, Command& command) {
  constexpr std::uint8_t kNominal = 0x00;
  constexpr std::uint8_t kWriteSpeeds = 0x03;
  const std::uint8_t type = command.byte(10);
  if (type != kNominal && type != kWriteSpeeds) return kBadCommandField;
  std::vector<int> speeds = drive.speeds();
  std::reverse(speeds.begin(), speeds.end());
  const std::int64_t end = drive.hasMedium() ? drive.disc->capacity - 1 : 0;
  Bytes answer(8);
  for (const int speed : speeds) {
    const bool isFirst = answer.size() == 8;
    if (type == kNominal && !isFirst) break;
    append32(answer, 0);
    append32(answer, type == kNominal ? speed : end);
    append32(answer, type == kNominal ? end : speed);
    append32(answer, speed);
  }
  put32(answer, 0, static_cast<std::int64_t>(answer.size()) - 4);
  constexpr std::size_t kDescriptorBytes = 16;
  const auto most = 8 + kDescriptorBytes * static_cast<std::size_t>(command.number16(8));
  if (answer.size() > most) answer.resize(most);
  command.answer(answer, static_cast<std::int64_t>(command.dataBytes()));
  return kGood;
}

Sense setSpeed(Drive&, Command& command) {
  command.note("write " + std::to_string(command.number16(4)));
  return kGood;
}

Sense setStreaming(Drive&, Command& command) {
  constexpr std::size_t kDescriptorBytes = 28;
  return command.sent().size() < kDescriptorBytes ? kBadParameter : kGood;
}

Sense mechanismStatus(Drive& drive, Command& command) {
  Bytes answer(8);
  answer[1] = drive.isTrayOpen() ? 0x10 : 0;
  command.answer(answer, command.number16(8));
  return kGood;
}

Sense readBufferCapacity(Drive&, Command& command) {
  constexpr std::int64_t kBufferBytes = 2 << 20;
  Bytes answer(4);
  append32(answer, kBufferBytes);
  append32(answer, kBufferBytes);  // all of it free: what is written is on the disc at once
  put16(answer, 0, 10);
  command.answer(answer, command.number16(7));
  return kGood;
}

}  // namespace emulated
