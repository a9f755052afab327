// GET CONFIGURATION: the profiles and features of the drive, and which of them the disc makes
// current.
#include <array>
#include <initializer_list>

#include "command.h"

namespace emulated {
namespace {

constexpr std::array<std::uint16_t, 13> kBurnerProfiles{0x43, 0x41, 0x40, 0x1B, 0x1A, 0x14, 0x13,
                                                        0x12, 0x11, 0x10, 0x0A, 0x09, 0x08};
constexpr std::array<std::uint16_t, 2> kReaderProfiles{0x10, 0x08};

class Features {
 public:
  Features(const Drive& drive, const Command& command)
      : asked_(command.byte(1) & 3), first_(command.number16(2)) {
    append32(answer_, 0);
    append16(answer_, 0);
    append16(answer_, drive.currentProfile());
  }

  void add(std::uint16_t code, std::uint8_t version, bool isAlways, bool isCurrent,
           const Bytes& data) {
    constexpr int kOnlyCurrent = 1;
    constexpr int kOnlyOne = 2;
    if (asked_ == kOnlyCurrent && !isCurrent) return;
    if (asked_ == kOnlyOne ? code != first_ : code < first_) return;
    append16(answer_, code);
    answer_.push_back(
        static_cast<std::uint8_t>(version << 2 | (isAlways ? 2 : 0) | (isCurrent ? 1 : 0)));
    answer_.push_back(static_cast<std::uint8_t>(data.size()));
    answer_.insert(answer_.end(), data.begin(), data.end());
  }

  Bytes answer() {
    put32(answer_, 0, static_cast<std::int64_t>(answer_.size()) - 4);
    return answer_;
  }

 private:
  int asked_;
  std::int64_t first_;
  Bytes answer_;
};

template <typename Profiles>
Bytes profileList(const Profiles& profiles, std::uint16_t current) {
  Bytes list;
  for (const std::uint16_t profile : profiles) {
    append16(list, profile);
    list.push_back(profile == current ? 1 : 0);
    list.push_back(0);
  }
  return list;
}

bool isOneOf(std::uint16_t profile, std::initializer_list<std::uint16_t> list) {
  for (const std::uint16_t one : list) {
    if (one == profile) return true;
  }
  return false;
}

void addReading(Features& features, std::uint16_t profile) {
  Bytes randomReadable;
  append32(randomReadable, kSectorBytes);
  append16(randomReadable, profile >= 0x10 ? 16 : 1);
  append16(randomReadable, 1);
  features.add(0x0010, 0, false, profile != 0, randomReadable);
  features.add(0x001D, 0, false, profile != 0, {});  // reads discs of all kinds
  features.add(0x001E, 2, false, profile != 0 && profile < 0x10, {0, 0, 0, 0});
  features.add(0x001F, 1, false, profile >= 0x10 && profile < 0x40, {1, 0, 1, 0});
}

void addWriting(Features& features, const Drive& drive, std::uint16_t profile) {
  const Disc* const disc = drive.hasMedium() ? &*drive.disc : nullptr;
  const auto test = static_cast<std::uint8_t>(drive.simulates() ? 0x04 : 0);
  const auto orTest = [=](int bits) { return static_cast<std::uint8_t>(bits | test); };
  const bool isOverwritable = disc != nullptr && disc->media->isOverwritable;
  const bool isIncremental =
      disc != nullptr && isOneOf(profile, {0x11, 0x14, 0x15}) && !disc->isAtOnceOnly;
  Bytes randomWritable;
  append32(randomWritable, disc == nullptr ? 0 : disc->capacity - 1);
  append32(randomWritable, kSectorBytes);
  append16(randomWritable, 16);
  append16(randomWritable, 1);
  features.add(0x0020, 1, false, isOverwritable && disc->isFormatted, randomWritable);
  // Blocks of data in 2048 bytes; links of 16 sectors.
  features.add(0x0021, 2, false, isIncremental, {0x01, 0x00, 0, 1, 16, 0, 0, 0});
  features.add(0x0023, 1, false, isOneOf(profile, {0x12, 0x13, 0x14, 0x1A, 0x41, 0x43}),
               {0x0A, 0, 0, 0, 0, 0, 0, 0});
  features.add(0x0026, 0, false, profile == 0x13, {});
  features.add(0x002A, 0, false, profile == 0x1A, {1, 0, 0, 0});
  features.add(0x002B, 0, false, profile == 0x1B, {1, 0, 0, 0});
  const bool isRecordableCd = isOneOf(profile, {0x09, 0x0A});
  features.add(0x002D, 2, false, isRecordableCd, {orTest(0x42), 0, 0x01, 0x00});
  features.add(0x002E, 0, false, isRecordableCd, {orTest(0x62), 0, 0, 0});
  features.add(0x002F, 2, false, isOneOf(profile, {0x11, 0x14, 0x15}), {orTest(0x42), 0, 0, 0});
  features.add(0x0037, 0, false, profile == 0x0A, {0, 0xFF, 0, 0});
  features.add(0x003B, 0, false, profile == 0x2B, {1, 0, 0, 0});
  const bool isBd = isOneOf(profile, {0x41, 0x43});
  features.add(0x0040, 0, false, isBd || profile == 0x40, Bytes(28));
  features.add(0x0041, 0, false, isBd, Bytes(20));
}

}  // namespace

Sense getConfiguration(Drive& drive, Command& command) {
  const std::uint16_t profile = drive.currentProfile();
  Features features(drive, command);
  features.add(0x0000, 0, true, true,
               drive.isBurner() ? profileList(kBurnerProfiles, profile)
                                : profileList(kReaderProfiles, profile));
  features.add(0x0001, 2, true, true, {0, 0, 0, 7, 1, 0, 0, 0});  // serial ATA
  features.add(0x0002, 1, true, true, {2, 0, 0, 0});
  features.add(0x0003, 0, true, true, {0x29, 0, 0, 0});  // a tray that opens and locks
  addReading(features, profile);
  if (drive.isBurner()) addWriting(features, drive, profile);
  features.add(0x0100, 0, true, true, {});
  features.add(0x0105, 0, true, true, {0, 0, 0, 0});
  features.add(0x0107, 4, false, profile != 0, {0x1E, 0, 0, 0});
  features.add(0x0108, 0, true, true, {'Q', '0', '0', '1'});
  command.answer(features.answer(), command.number16(7));
  return kGood;
}

}  // namespace emulated
