#include "dicom/parse_header.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "dicom/dict.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"

namespace quillon {
namespace {

// What the two characters of a VR say about its header, in one look: this is asked for every
// element of every file. None when they name no VR that can stand in a file.
struct CodedVr {
  DcVr vr = DcVr::None;
  bool isLong = hasLongHeader(DcVr::None);
};
constexpr auto kCodedVrs = [] {
  std::array<CodedVr, kVrByCode.size()> coded{};
  for (std::size_t i = 0; i < coded.size(); ++i) {
    const DcVr vr = vrRow(kVrByCode[i]).isPseudo() ? DcVr::None : kVrByCode[i];
    coded[i] = {vr, hasLongHeader(vr)};
  }
  return coded;
}();

CodedVr vrFromCode(const std::uint8_t* code) {
  if (!isVrLetter(code[0]) || !isVrLetter(code[1])) return {};
  return kCodedVrs[static_cast<std::size_t>(code[0] - 'A') * kVrCodeLetters +
                   static_cast<std::size_t>(code[1] - 'A')];
}

// Behind the groups that dictate a form, in front of the tags of items.
constexpr DcTag kFirstPlainTag = 0x00050000;
constexpr DcTag kEndOfPlainTags = 0xFFFE0000;

constexpr auto kHasShortHeader = [] {
  std::array<bool, kCodedVrs.size()> isShort{};
  for (std::size_t i = 0; i < isShort.size(); ++i) {
    isShort[i] = kCodedVrs[i].vr != DcVr::None && !kCodedVrs[i].isLong;
  }
  return isShort;
}();

bool hasShortHeader(const std::uint8_t* code) {
  const auto first = static_cast<unsigned>(code[0]) - 'A';
  const auto second = static_cast<unsigned>(code[1]) - 'A';
  return first < kVrCodeLetters && second < kVrCodeLetters &&
         kHasShortHeader[first * kVrCodeLetters + second];
}

// VRs that were made after the table. They, and every one still to come, have the long header.
constexpr std::array<std::string_view, 7> kYoungerVrs{"OD", "OL", "OV", "SV", "UC", "UR", "UV"};

bool isYoungerVr(const std::uint8_t* code, bool isKnownTag) {
  const char text[] = {static_cast<char>(code[0]), static_cast<char>(code[1])};
  if (isKnownTag) {
    return std::ranges::find(kYoungerVrs, std::string_view(text, 2)) != kYoungerVrs.end();
  }
  return isVrLetter(code[0]) && isVrLetter(code[1]);
}

// Group 0000 is implicit and groups 0002 and 0004 are explicit, both little endian, in whatever
// data set they stand. In a big endian data set their bytes can also be those of a group like
// 0400; the dictionary tells the two apart.
void applyGroupForm(const std::uint8_t* bytes, ElemInfo& info) {
  const bool big = (info.flags & kParseBig) != 0;
  const unsigned kept = info.flags & kParseOpenEnd;
  if (info.tag >> 16 == 0) {
    info.tag = loadTag(bytes, false);
    info.flags = kParseImplicitLittleForm | kept;
    return;
  }
  const std::uint16_t group = big ? loadLe16(bytes) : dcGroup(info.tag);
  if (group != 0x0002 && group != 0x0004) return;
  if (big && theDictionary().getElemDef(info.tag, nullptr) == kDcOk) return;
  info.tag = loadTag(bytes, false);
  info.flags = kParseExplicitLittleForm | kept;
}

}  // namespace

unsigned parseFormOf(DcUid transferSyntax) {
  if (transferSyntax == DcUid::ImplicitLittleEndian) return kParseImplicitLittleForm;
  if (transferSyntax == DcUid::ExplicitBigEndian) return kParseExplicitBigForm;
  return kParseExplicitLittleForm;
}

bool utilGetElemInfo(const std::uint8_t* bytes, std::size_t available, unsigned flags,
                     ElemInfo& info) {
  if (available < kShortHeaderBytes) return false;
  info.flags = flags;
  info.tag = loadTag(bytes, (flags & kParseBig) != 0);
  info.isVrFromDictionary = false;
  applyGroupForm(bytes, info);
  const bool big = (info.flags & kParseBig) != 0;

  if ((info.flags & kParseExplicit) == 0) {
    info.vr = DcVr::None;
    info.headerBytes = kShortHeaderBytes;
    info.valueLength = load32(bytes + 4, big);
    return true;
  }
  const CodedVr coded = vrFromCode(bytes + 4);
  info.vr = coded.vr;
  bool isLong = coded.isLong;
  if (info.vr == DcVr::None) {
    std::int32_t vm = 0;
    info.isVrFromDictionary = theDictionary().getElemVrVm(info.tag, info.vr, vm) == kDcOk;
    isLong = isYoungerVr(bytes + 4, info.isVrFromDictionary) ||
             (info.isVrFromDictionary && hasLongHeader(info.vr));
    if (!info.isVrFromDictionary) info.vr = DcVr::UN;
  }
  if (isLong && available < kLongHeaderBytes) return false;
  info.headerBytes = isLong ? kLongHeaderBytes : kShortHeaderBytes;
  info.valueLength = isLong ? load32(bytes + 8, big) : load16(bytes + 6, big);
  return true;
}

std::size_t passPlainElements(const std::uint8_t* bytes, std::size_t at, std::size_t length,
                              const DcTagSet* wanted, DcTag& lastTag) {
  const std::uint8_t* header = bytes + at;
  std::size_t left = length - at;
  DcTag last = lastTag;
  while (left >= kShortHeaderBytes) {
    const DcTag tag = loadTag(header, false);
    if (tag <= last || tag < kFirstPlainTag || tag >= kEndOfPlainTags) break;
    if (tag == tags::kPixelData || !hasShortHeader(header + 4)) break;
    if (wanted != nullptr && wanted->contains(tag)) break;
    const std::size_t elementBytes = kShortHeaderBytes + load16(header + 6, false);
    if (elementBytes > left) break;
    header += elementBytes;
    left -= elementBytes;
    last = tag;
  }
  lastTag = last;
  return length - left;
}

}  // namespace quillon
