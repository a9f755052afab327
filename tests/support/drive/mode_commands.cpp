// Mode pages: 01 error recovery, 05 write parameters, 2A capabilities.
#include "command.h"

namespace emulated {
namespace {

constexpr std::uint8_t kErrorRecovery = 0x01;
constexpr std::uint8_t kWriteParameters = 0x05;
constexpr std::uint8_t kCapabilities = 0x2A;
constexpr std::size_t kHeaderBytes = 8;

Bytes errorRecoveryPage() {
  Bytes page(12);
  page[0] = kErrorRecovery;
  page[1] = 10;
  page[3] = 5;  // read retries
  return page;
}

Bytes writeParametersPage(const Drive& drive) {
  Bytes page = bytesOfHex(drive.state.text("write parameters"));
  if (page.size() < 52) {
    page.assign(52, 0);
    page[2] = 1;     // track at once
    page[3] = 4;     // data
    page[4] = 8;     // blocks of 2048 bytes
    page[15] = 150;  // audio pause
  }
  page[0] = kWriteParameters;
  page[1] = 50;
  return page;
}

Bytes capabilitiesPage(const Drive& drive) {
  const std::vector<int> speeds = drive.speeds();
  Bytes page(32);
  page[0] = kCapabilities;
  page[2] = 0x3B;  // reads CD-R, CD-RW, DVD-ROM, DVD-R, DVD-RAM
  if (drive.isBurner()) {
    page[3] = static_cast<std::uint8_t>(0x33 | (drive.simulates() ? 0x04 : 0));
    page[4] = 0x80;  // survives that the host is late
  }
  page[4] |= 0x60;  // several sessions
  page[6] = 0x29;   // a tray that opens and locks
  if (drive.state.isYes("locked")) page[6] |= 2;
  const int fastest = speeds.empty() ? 0 : speeds.back();
  put16(page, 8, fastest);
  put16(page, 12, 2048);  // KiB of buffer
  put16(page, 14, fastest);
  const bool writes = drive.isBurner();
  put16(page, 18, writes ? fastest : 0);
  put16(page, 20, writes ? fastest : 0);
  put16(page, 28, writes ? fastest : 0);
  if (writes) {
    put16(page, 30, static_cast<std::int64_t>(speeds.size()));
    for (auto speed = speeds.rbegin(); speed != speeds.rend(); ++speed) {
      append16(page, 0);
      append16(page, *speed);
    }
  }
  page[1] = static_cast<std::uint8_t>(page.size() - 2);
  return page;
}

// How a disc can be recorded, and in which blocks. Audio is taken as a setting; nobody records it.
Sense checkWriteParameters(const Drive& drive, const Bytes& page) {
  constexpr std::uint8_t kRawBlocks = 0;
  constexpr std::uint8_t kMode1 = 8;
  constexpr std::uint8_t kMode2Form1 = 10;
  constexpr std::uint8_t kData = 4;
  const std::uint8_t writeType = page[2] & 0x0F;
  const std::uint8_t trackMode = page[3] & 0x0F;
  const std::uint8_t blockType = page[4] & 0x0F;
  const bool isTest = (page[2] & 0x10) != 0;
  if (isTest && !drive.simulates()) return kBadParameter;
  if (writeType > 2) return kBadParameter;
  // At once, a cue sheet or the medium decides on the blocks.
  const bool isData = (trackMode & kData) != 0;
  const bool fits =
      isData ? blockType == kMode1 || blockType == kMode2Form1 : blockType == kRawBlocks;
  if (writeType != 2 && !fits) return kBadParameter;
  if (!drive.hasMedium()) return kGood;
  const Disc& disc = *drive.disc;
  if (disc.media->family == Family::Cd) return writeType == 0 ? kBadParameter : kGood;
  if (disc.media->family != Family::DvdMinus) return kGood;
  if (writeType == 1 || (disc.media->isOverwritable && writeType != 0)) return kBadParameter;
  return kGood;
}

}  // namespace

Sense modeSense(Drive& drive, Command& command) {
  constexpr std::uint8_t kAll = 0x3F;
  const std::uint8_t page = command.byte(2) & 0x3F;
  command.note("page " + hexOf({page}));
  Bytes answer(kHeaderBytes);
  const auto add = [&](std::uint8_t code, const Bytes& content) {
    if (page == code || page == kAll) answer.insert(answer.end(), content.begin(), content.end());
  };
  add(kErrorRecovery, errorRecoveryPage());
  if (drive.isBurner()) add(kWriteParameters, writeParametersPage(drive));
  add(kCapabilities, capabilitiesPage(drive));
  if (answer.size() == kHeaderBytes) return kBadCommandField;
  put16(answer, 0, static_cast<std::int64_t>(answer.size()) - 2);
  command.answer(answer, command.number16(7));
  return kGood;
}

Sense modeSelect(Drive& drive, Command& command) {
  const Bytes sent = command.sent();
  if (sent.size() < kHeaderBytes + 2) return kBadParameter;
  const std::uint8_t code = sent[kHeaderBytes] & 0x3F;
  command.note("page " + hexOf({code}));
  const Bytes page(sent.begin() + kHeaderBytes, sent.end());
  if (code == kErrorRecovery) return kGood;
  constexpr std::size_t kLeastBytes = 16;
  if (code != kWriteParameters || page.size() < kLeastBytes || !drive.isBurner()) {
    return kBadParameter;
  }
  command.note("type " + std::to_string(page[2] & 0x0F) + ((page[2] & 0x10) != 0 ? " test" : "") +
               (page[3] >> 6 == 3 ? " multi" : ""));
  if (const Sense sense = checkWriteParameters(drive, page); !sense.isGood()) return sense;
  drive.state.set("write parameters", hexOf(page));
  if (!drive.writeParameters().isTest) drive.endSimulation();
  return kGood;
}

}  // namespace emulated
