#include "drive_facts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "libburn.h"
#include "recorders/disc_types.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

struct ProfileRow {
  int profile;
  IMAPI_MEDIA_PHYSICAL_TYPE type;
  bool isWritable;
  bool isOverwritable;
};
// clang-format off
constexpr std::array kProfiles{
    ProfileRow{0x08, IMAPI_MEDIA_TYPE_CDROM,               false, false},
    ProfileRow{0x09, IMAPI_MEDIA_TYPE_CDR,                 true,  false},
    ProfileRow{0x0A, IMAPI_MEDIA_TYPE_CDRW,                true,  false},
    ProfileRow{0x10, IMAPI_MEDIA_TYPE_DVDROM,              false, false},
    ProfileRow{0x11, IMAPI_MEDIA_TYPE_DVDDASHR,            true,  false},
    ProfileRow{0x12, IMAPI_MEDIA_TYPE_DVDRAM,              true,  true },
    ProfileRow{0x13, IMAPI_MEDIA_TYPE_DVDDASHRW,           true,  true },
    ProfileRow{0x14, IMAPI_MEDIA_TYPE_DVDDASHRW,           true,  false},
    ProfileRow{0x15, IMAPI_MEDIA_TYPE_DVDDASHR_DUALLAYER,  true,  false},
    ProfileRow{0x1A, IMAPI_MEDIA_TYPE_DVDPLUSRW,           true,  true },
    ProfileRow{0x1B, IMAPI_MEDIA_TYPE_DVDPLUSR,            true,  false},
    ProfileRow{0x2B, IMAPI_MEDIA_TYPE_DVDPLUSR_DUALLAYER,  true,  false},
    ProfileRow{0x40, IMAPI_MEDIA_TYPE_BDROM,               false, false},
    ProfileRow{0x41, IMAPI_MEDIA_TYPE_BDR,                 true,  false},
    ProfileRow{0x43, IMAPI_MEDIA_TYPE_BDRE,                true,  true },
    ProfileRow{kFileProfile, IMAPI_MEDIA_TYPE_DVDPLUSRW,        true,  true },
};
// clang-format on

const ProfileRow* rowOf(int profile) {
  const auto* const row = std::find_if(kProfiles.begin(), kProfiles.end(),
                                       [=](const ProfileRow& r) { return r.profile == profile; });
  return row == kProfiles.end() ? nullptr : row;
}

// Sector numbers of the interfaces are positive 32-bit numbers.
std::uint32_t sectorCount(std::int64_t sectors) {
  return static_cast<std::uint32_t>(
      std::clamp<std::int64_t>(sectors, 0, std::numeric_limits<std::int32_t>::max()));
}

bool isCd(int profile) { return profile >= 0x08 && profile <= 0x0A; }

std::u16string trimmedText(const char* text, std::size_t size) {
  std::string_view view(text, ::strnlen(text, size));
  view = view.substr(0, view.find_last_not_of(' ') + 1);
  return wideFromNative(view);
}

// libburn counts speeds in units of 1000 bytes a second, of a CD with all that its sectors hold.
constexpr std::int64_t kSpeedUnitBytes = 1000;
std::int64_t rawSectorBytes(int profile) { return isCd(profile) ? 2352 : kSectorBytes; }

const DiscType* discTypeOf(IMAPI_MEDIA_PHYSICAL_TYPE type) {
  const auto found = std::ranges::find(discTypes(), type, &DiscType::physicalType);
  return found == discTypes().end() ? nullptr : &*found;
}

constexpr DWORD bit(IMAPI_FORMAT2_DATA_MEDIA_STATE state) { return static_cast<DWORD>(state); }

// How many sectors the file system takes that begins on the disc; 0 for none. One that does not say
// takes all.
std::uint32_t sectorsOfFileSystem(burn_drive* drive, std::uint32_t readable) {
  constexpr std::uint32_t kFirst = 16;
  constexpr std::size_t kVolumeSizeAt = 80;  // little endian, in an ISO 9660 descriptor
  if (readable <= kFirst) return 0;
  std::array<char, std::size_t{3} * kSectorBytes> bytes{};
  const std::uint32_t sectors = std::min<std::uint32_t>(3, readable - kFirst);
  off_t got = 0;
  burn_read_data(drive, off_t{kFirst} * kSectorBytes, bytes.data(), off_t{sectors} * kSectorBytes,
                 &got, 2);
  forgetBurnMessages();
  if (got < static_cast<off_t>(kSectorBytes)) return 0;
  if (std::memcmp(bytes.data() + 1, "CD001", 5) == 0) {
    std::uint32_t size = 0;
    for (int i = 3; i >= 0; --i) {
      size = size << 8 |
             static_cast<unsigned char>(bytes[kVolumeSizeAt + static_cast<std::size_t>(i)]);
    }
    return size == 0 ? readable : size;
  }
  const bool isEmpty = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == 0; });
  return isEmpty ? 0 : readable;
}

std::uint32_t readableSectors(burn_drive* drive) {
  int sectors = 0;
  const bool isKnown = burn_get_read_capacity(drive, &sectors, 0) > 0;
  forgetBurnMessages();
  return isKnown ? sectorCount(sectors) : 0;
}

// Of a disc whose sectors are not written over.
std::uint32_t lastSession(burn_drive* drive) {
  int start = 0;
  const bool isKnown = burn_disc_get_msc1(drive, &start) > 0;
  forgetBurnMessages();
  return isKnown ? sectorCount(start) : 0;
}

std::vector<LONG> writeSpeeds(burn_drive* drive, int profile) {
  std::vector<LONG> speeds;
  burn_speed_descriptor* list = nullptr;
  if (burn_drive_get_speedlist(drive, &list) > 0) {
    for (const burn_speed_descriptor* one = list; one != nullptr; one = one->next) {
      if (one->write_speed > 0) {
        speeds.push_back(sectorsPerSecondOf(one->write_speed, profile));
      }
    }
    burn_drive_free_speedlist(&list);
  }
  std::sort(speeds.begin(), speeds.end(), std::greater<>());
  speeds.erase(std::unique(speeds.begin(), speeds.end()), speeds.end());
  // Callers reckon with a speed; a file has none.
  constexpr LONG kSingleSpeedDvd = 676;
  if (speeds.empty()) speeds.push_back(kSingleSpeedDvd);
  return speeds;
}

// What a disc has room for when nothing is on it, as far as the drive tells: where a CD may end at
// the latest, and what the disc can be formatted to. 0 when it does not.
std::uint32_t capacityOf(burn_drive* drive, int profile) {
  std::uint32_t capacity = 0;
  if (isCd(profile)) {
    int start = 0;
    int end = 0;
    if (burn_disc_read_atip(drive) > 0 &&
        burn_drive_get_start_end_lba(drive, &start, &end, 0) > 0) {
      capacity = sectorCount(end);
    }
  } else {
    int status = 0;
    off_t bytes = 0;
    unsigned int spare = 0;
    int formats = 0;
    if (burn_disc_get_formats(drive, &status, &bytes, &spare, &formats) > 0) {
      capacity = sectorCount(bytes / kSectorBytes);
    }
  }
  forgetBurnMessages();
  return capacity;
}

// What is written says nothing of the room that was there. A disc that does not tell is taken for
// one of its kind.
std::uint32_t capacityOfWritten(burn_drive* drive, int profile, const MediaFacts& facts,
                                std::uint32_t used) {
  std::uint32_t capacity = capacityOf(drive, profile);
  const DiscType* type = discTypeOf(facts.physicalType);
  if (capacity <= used && type != nullptr) capacity = type->usualSectors;
  return std::max(capacity, used);
}

void readOverwritable(burn_drive* drive, MediaFacts& facts) {
  const std::uint32_t readable = readableSectors(drive);
  const std::uint32_t used = sectorsOfFileSystem(drive, readable);
  facts.isOverwritable = facts.isErasable = true;
  facts.isHeuristicallyBlank = used == 0;
  facts.isPhysicallyBlank = readable == 0;
  facts.readableSectors = readable;
  facts.totalSectors = sectorCount(burn_disc_available_space(drive, nullptr) / kSectorBytes);
  facts.freeSectors = facts.totalSectors - std::min(facts.totalSectors, used);
  facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_OVERWRITE_ONLY);
  if (used == 0) facts.state |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK);
}

void readSequential(burn_drive* drive, burn_disc_status status, int profile, MediaFacts& facts) {
  facts.isErasable = burn_disc_erasable(drive) != 0;
  const std::uint32_t free = sectorCount(burn_disc_available_space(drive, nullptr) / kSectorBytes);
  if (status == BURN_DISC_BLANK) {
    facts.isPhysicallyBlank = facts.isHeuristicallyBlank = true;
    facts.totalSectors = facts.freeSectors = free;
    facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK);
    return;
  }
  const std::uint32_t used = facts.readableSectors = readableSectors(drive);
  facts.lastSession = lastSession(drive);
  facts.totalSectors = capacityOfWritten(drive, profile, facts, used);
  if (status == BURN_DISC_APPENDABLE) {
    facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_APPENDABLE);
    int first = 0;
    int next = 0;
    const bool isKnown = burn_disc_track_lba_nwa(drive, nullptr, 0, &first, &next) == 1;
    const std::uint32_t nextWritable = isKnown ? sectorCount(next) : used;
    facts.totalSectors = std::max(facts.totalSectors, nextWritable);
    facts.freeSectors = std::min(free, facts.totalSectors - nextWritable);
    if (burn_disc_next_track_is_damaged(drive, 0) != 0) {
      facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_DAMAGED);
    }
  } else {
    facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_FINALIZED);
  }
  if (facts.isErasable && status != BURN_DISC_APPENDABLE) {
    facts.state |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_ERASE_REQUIRED);
  }
  forgetBurnMessages();
}

// A disc that could be written and has no contents table: what began to write it did not end.
void readBroken(burn_drive* drive, int profile, MediaFacts& facts) {
  facts.isErasable = burn_disc_erasable(drive) != 0;
  facts.totalSectors = capacityOfWritten(drive, profile, facts, 0);
  facts.readableSectors = readableSectors(drive);
  facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_DAMAGED);
  if (facts.isErasable) facts.state |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_ERASE_REQUIRED);
}

std::vector<LONG> featuresOf(burn_drive* drive, bool currentOnly) {
  int count = 0;
  unsigned int* codes = nullptr;
  burn_drive_get_feature_codes(drive, &count, &codes);
  std::vector<LONG> features;
  for (int i = 0; i < count; ++i) {
    unsigned char flags = 0;
    unsigned char length = 0;
    unsigned char* data = nullptr;
    const bool isKnown =
        burn_drive_get_feature(drive, codes[i], &flags, &length, &data, nullptr) > 0;
    std::free(data);
    if (!currentOnly || (isKnown && (flags & 1) != 0)) {
      features.push_back(static_cast<LONG>(codes[i]));
    }
  }
  std::free(codes);
  return features;
}

}  // namespace

int speedUnitsOf(LONG sectorsPerSecond, int profile) {
  return static_cast<int>((sectorsPerSecond * rawSectorBytes(profile) + kSpeedUnitBytes / 2) /
                          kSpeedUnitBytes);
}

LONG sectorsPerSecondOf(int speedUnits, int profile) {
  const std::int64_t bytes = rawSectorBytes(profile);
  return static_cast<LONG>((speedUnits * kSpeedUnitBytes + bytes / 2) / bytes);
}

bool isOverwritableProfile(int profile) {
  const ProfileRow* row = rowOf(profile);
  return row != nullptr && row->isOverwritable;
}

int profileOf(const GrabbedDrive& grabbed) {
  int profile = 0;
  std::array<char, 80> name{};
  return burn_disc_get_profile(grabbed.drive(), &profile, name.data()) > 0 ? profile : 0;
}

void describeFile(DriveIdentity& identity) {
  identity.supportedProfiles = {kFileProfile};
  identity.writableTypes = {IMAPI_MEDIA_TYPE_DVDPLUSRW};
}

void readDrive(const GrabbedDrive& grabbed, DriveIdentity& identity) {
  const std::lock_guard lock(burnMutex());
  const burn_drive_info& info = grabbed.info();
  if (identity.vendor.empty() && identity.product.empty()) {
    identity.vendor = trimmedText(info.vendor, sizeof info.vendor);
    identity.product = trimmedText(info.product, sizeof info.product);
    identity.revision = trimmedText(info.revision, sizeof info.revision);
  }
  std::array<int, 64> profiles{};
  std::array<char, 64> isCurrent{};
  int count = 0;
  burn_drive_get_all_profiles(grabbed.drive(), &count, profiles.data(), isCurrent.data());
  identity.supportedProfiles.assign(profiles.begin(), profiles.begin() + count);
  identity.supportedFeatures = featuresOf(grabbed.drive(), false);
  identity.supportedModePages.assign(driveModePages().begin(), driveModePages().end());
  for (const LONG profile : identity.supportedProfiles) {
    const ProfileRow* row = rowOf(profile);
    auto& types = identity.writableTypes;
    if (row != nullptr && row->isWritable &&
        std::find(types.begin(), types.end(), row->type) == types.end()) {
      types.push_back(row->type);
    }
  }
}

CurrentPages readCurrentPages(const GrabbedDrive& grabbed) {
  const std::lock_guard lock(burnMutex());
  CurrentPages pages;
  if (const int profile = profileOf(grabbed); profile != 0) pages.profiles = {profile};
  if (burn_drive_get_drive_role(grabbed.drive()) == 1) {
    pages.features = featuresOf(grabbed.drive(), true);
  }
  return pages;
}

DiscResult readMedia(const GrabbedDrive& grabbed, MediaFacts& facts) {
  const std::lock_guard lock(burnMutex());
  facts = MediaFacts{};
  burn_drive* drive = grabbed.drive();
  const burn_disc_status status = burn_disc_get_status(drive);
  if (status == BURN_DISC_EMPTY) return S_OK;
  if (status == BURN_DISC_UNREADY || status == BURN_DISC_UNGRABBED) {
    return E_IMAPI_RECORDER_MEDIA_BECOMING_READY;
  }
  const int profile = profileOf(grabbed);
  const ProfileRow* row = rowOf(profile);
  facts.present = true;
  if (row != nullptr) facts.physicalType = row->type;
  if (row == nullptr || !row->isWritable) {
    facts.totalSectors = facts.readableSectors = readableSectors(drive);
    facts.lastSession = lastSession(drive);
    facts.writeProtect = static_cast<DWORD>(IMAPI_WRITEPROTECTED_READ_ONLY_MEDIA);
    facts.state = bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_UNSUPPORTED_MEDIA) |
                  bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED);
    return S_OK;
  }
  if (status == BURN_DISC_UNSUITABLE) {
    readBroken(drive, profile, facts);
  } else if (row->isOverwritable) {
    readOverwritable(drive, facts);
  } else {
    readSequential(drive, status, profile, facts);
  }
  facts.writeSpeeds = writeSpeeds(drive, profile);
  return S_OK;
}

}  // namespace quillon::platform
