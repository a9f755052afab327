#include "command.h"

namespace emulated {
namespace {

// The host asks whether it is done; done it is at once.
void goOnAlone(Drive& drive, bool isImmediate) {
  if (isImmediate) drive.state.set("busy polls", drive.faults.number("busy_polls"));
}

bool takesFormat(const Disc& disc, int type) {
  switch (disc.media->profile) {
    case 0x12:
      return type == 0x00 || type == 0x01;
    case 0x13:
    case 0x14:
      return type == 0x00 || type == 0x10 || type == 0x15;
    case 0x1A:
      return type == 0x26;
    case 0x41:
      return type == 0x00 || type == 0x32;
    case 0x43:
      return type == 0x00 || type == 0x30 || type == 0x31;
    default:
      return false;
  }
}

// DVD+RW is formatted in the background, and keeps what it holds.
Sense formatInBackground(Disc& disc, bool restarts) {
  if (restarts && disc.background != BackgroundFormat::Started) return kBadParameter;
  disc.isFormatted = true;
  disc.background = BackgroundFormat::Running;
  return kGood;
}

}  // namespace

Sense blank(Drive& drive, Command& command) {
  constexpr int kWhole = 0;
  constexpr int kMinimal = 1;
  Disc& disc = *drive.disc;
  const int type = command.byte(1) & 7;
  command.note(type == kWhole     ? "whole"
               : type == kMinimal ? "minimal"
                                  : "type " + std::to_string(type));
  if (!disc.media->isErasable) return kIncompatibleMedium;
  if (type != kWhole && type != kMinimal) return kBadCommandField;
  drive.endSimulation();
  endWriting(drive);
  disc.erase();
  if (disc.media->profile == 0x13) disc.media = mediaOfProfile(0x14);
  disc.isAtOnceOnly = type == kMinimal && !disc.isCd();
  if (type == kWhole) drive.eraseContents();
  goOnAlone(drive, (command.byte(1) & 0x10) != 0);
  return kGood;
}

Sense formatUnit(Drive& drive, Command& command) {
  constexpr std::size_t kParameterBytes = 12;
  Disc& disc = *drive.disc;
  const Bytes list = command.sent();
  if (list.size() < kParameterBytes) return kBadParameter;
  const int type = list[8] >> 2;
  command.note("type " + hexOf({static_cast<std::uint8_t>(type)}));
  if (disc.media->profile == 0x41 && !disc.isBlank()) return kUnformattableMedium;
  const bool canBeFormatted =
      disc.media->isErasable || disc.media->isOverwritable || disc.media->family == Family::Bd;
  if (disc.isCd() || !disc.media->isWritable || !canBeFormatted) return kUnformattableMedium;
  if (!takesFormat(disc, type)) return kBadParameter;
  goOnAlone(drive, (list[1] & 2) != 0);
  if (disc.media->profile == 0x1A) return formatInBackground(disc, (list[11] & 1) != 0);
  // A new BD-R may be formatted for spare blocks; it is recorded as before.
  if (disc.media->profile == 0x41) return kGood;
  disc.erase();
  endWriting(drive);
  if (disc.media->profile == 0x14) disc.media = mediaOfProfile(0x13);
  disc.isFormatted = true;
  disc.background = BackgroundFormat::None;
  // 15h writes only what marks the disc as formatted.
  if (type != 0x15) drive.eraseContents();
  return kGood;
}

}  // namespace emulated
