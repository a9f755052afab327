#include "dicom/dict.h"

#include <cstddef>
#include <cstdio>

#include "command_table.h"
#include "dicom/log.h"
#include "dicom/vr_table.h"
#include "element_table.h"

namespace quillon {
namespace {

static_assert(kElementCount == 2607, "the data elements of the standard");

constexpr std::uint16_t kGroupLengthElement = 0x0000;
constexpr std::uint16_t kFirstCreator = 0x0010;
constexpr std::uint16_t kLastCreator = 0x00FF;
constexpr std::size_t kMaxDescriptionChars = 60;
constexpr const char* kNullArgument = "Null argument passed";

constexpr bool isPrivate(std::uint16_t group) { return (group & 1U) != 0; }

// Tag under which the table holds this one: curve and overlay groups stand there once for all their
// repetitions.
constexpr DcTag searchKey(DcTag tag) {
  const unsigned high = dcGroup(tag) >> 8;
  if (high != 0x50 && high != 0x60) return tag;
  return dcTag(static_cast<std::uint16_t>(dcGroup(tag) | 0x00FFU), dcElement(tag));
}

// Halves without a branch on the comparison: the tags of a data set lie all over the table, so that
// a branch would be mispredicted half of the time.
const ElementRow* findRow(DcTag key) {
  const DcTag* first = kElementTags.data();
  std::size_t left = kElementCount;
  while (left > 1) {
    const std::size_t half = left / 2;
    first += first[half] <= key ? half : 0;
    left -= half;
  }
  if (*first != key) return nullptr;
  return &kElementTable[static_cast<std::size_t>(first - kElementTags.data())];
}

struct ElementFacts {
  enum class Source { Table, GroupLength, PrivateCreator, Unknown };
  Source source = Source::Unknown;
  DcVr vr = DcVr::UN;
  std::int32_t vm = 1;
  const ElementRow* row = nullptr;
};

ElementFacts lookUp(DcTag tag) {
  if (dcElement(tag) == kGroupLengthElement) {
    return {ElementFacts::Source::GroupLength, DcVr::UL, 1, nullptr};
  }
  if (isPrivate(dcGroup(tag))) {
    // The table has no private elements. Those below the creators are nobody's: some files keep
    // whole sequences there, which a VR of LO would cut.
    const bool isCreator = dcElement(tag) >= kFirstCreator && dcElement(tag) <= kLastCreator;
    if (!isCreator) return {};
    return {ElementFacts::Source::PrivateCreator, DcVr::LO, 1, nullptr};
  }
  if (const ElementRow* row = findRow(searchKey(tag))) {
    return {ElementFacts::Source::Table, static_cast<DcVr>(row->vr), row->vm, row};
  }
  return {};
}

template <std::size_t N>
void formatName(char (&name)[N], DcTag tag, const char* separator, const char* keyword) {
  std::snprintf(name, N, "T_%04x_%04x%s%s", static_cast<unsigned>(dcGroup(tag)),
                static_cast<unsigned>(dcElement(tag)), separator, keyword);
}

bool isPrintable(unsigned char c) { return c >= 0x20 && c < 0x7F; }

bool hasLimits(DcVr vr) { return vrRow(vr).hasLimits; }

DcCode refuseVr(const char* function, DcVr vr) {
  dcLog(DcLogLevel::Error, function, "Enum constant VR %d (0x%x) is not in dictionary",
        static_cast<int>(vr), static_cast<unsigned>(vr));
  return kDcNotFound;
}

DcCode refuseRetired(const char* function) {
  dcLog(DcLogLevel::Error, function, "Retired Data Element");
  return kDcNotFound;
}

DcCode refuseNull(const char* function) {
  dcLog(DcLogLevel::Error, function, kNullArgument);
  return kDcDictNullArgument;
}

}  // namespace

// Built while the program is loaded, before any element can be.
[[maybe_unused]] static const DcDict& builtAtLoad = theDictionary();

DcDict& theDictionary() {
  static DcDict dictionary;
  return dictionary;
}

DcVr dcTagVr(DcTag tag) { return lookUp(tag).vr; }

std::string dcTagName(DcTag tag) {
  std::string name;
  static_cast<void>(theDictionary().getDesc(tag, &name));
  return name;
}

std::string_view dcTagTitle(DcTag tag) {
  using Source = ElementFacts::Source;
  const ElementFacts facts = lookUp(tag);
  if (facts.source == Source::GroupLength) return "Group Length";
  if (facts.source == Source::PrivateCreator) return "Private Creator";
  if (facts.row == nullptr) return {};
  const auto index = static_cast<std::size_t>(facts.row - kElementTable.data());
  const std::uint32_t start = kElementNameStarts[index];
  return {kElementNames + start, kElementNameStarts[index + 1] - start};
}

std::string dcUidText(DcUid id) {
  std::string text;
  static_cast<void>(theDictionary().getUid(id, &text));
  return text;
}

DcUid dcUidOf(const std::string& uid) {
  DcUid id = DcUid::None;
  static_cast<void>(theDictionary().getUidDef(uid.c_str(), &id));
  return id;
}

DcCode DcDict::getElemDef(std::uint16_t group, std::uint16_t element, DcDictElemDef* def) const {
  return getElemDef(dcTag(group, element), def);
}

DcCode DcDict::getElemDef(DcTag tag, DcDictElemDef* def) const {
  using Source = ElementFacts::Source;
  const ElementFacts facts = lookUp(tag);
  const DcCode code = facts.source == Source::Unknown ? kDcNotFound : kDcOk;
  if (def == nullptr) return code;

  // A repeating group answers with the tag and the name of its one row.
  def->tag = def->tag2 = facts.row != nullptr ? facts.row->tag : tag;
  def->vr = facts.vr;
  def->vm = facts.vm;
  switch (facts.source) {
    case Source::Table:
      formatName(def->name, def->tag, "_", facts.row->keyword);
      break;
    case Source::GroupLength:
      formatName(def->name, tag, "_", "groupLength");
      break;
    case Source::PrivateCreator:
      formatName(def->name, tag, "_", "privateCreatorId");
      break;
    case Source::Unknown:
      formatName(def->name, tag, "", "");
      break;
  }
  return code;
}

DcCode DcDict::getElemVr(std::uint16_t group, std::uint16_t element, DcVr* vrOut) const {
  if (vrOut == nullptr) return refuseNull("DcDict::getElemVr");
  std::int32_t vm = 0;
  const DcCode code = getElemVrVm(dcTag(group, element), *vrOut, vm);
  if (code != kDcOk) *vrOut = DcVr::None;
  return code;
}

DcCode DcDict::getElemVrVm(DcTag tag, DcVr& vr, std::int32_t& vm) const {
  const ElementFacts facts = lookUp(tag);
  vr = facts.vr;
  vm = facts.vm;
  return facts.source == ElementFacts::Source::Unknown ? kDcNotFound : kDcOk;
}

DcCode DcDict::getDesc(std::uint16_t group, std::uint16_t element, std::string* name) const {
  return getDesc(dcTag(group, element), name);
}

DcCode DcDict::getDesc(DcTag tag, std::string* name) const {
  if (name == nullptr) return refuseNull("DcDict::getDesc");
  DcDictElemDef def;
  const DcCode code = getElemDef(tag, &def);
  name->assign(def.name);
  if (name->size() > kMaxDescriptionChars) name->resize(kMaxDescriptionChars);
  return code;
}

DcCode DcDict::getDesc(DcCommandField command, std::string* name) {
  if (name == nullptr) return refuseNull("DcDict::getDesc");
  for (const CommandRow& row : kCommandTable) {
    if (row.field == static_cast<std::uint16_t>(command)) {
      name->assign(row.name);
      return kDcOk;
    }
  }
  name->assign("Invalid command");
  return kDcNotFound;
}

DcCode DcDict::getVr(DcVr vr, std::string* code) const {
  if (code == nullptr) return refuseNull("DcDict::getVr");
  code->clear();
  if (static_cast<std::size_t>(vr) >= kVrTable.size()) return refuseVr("DcDict::getVr", vr);
  const VrRow& row = vrRow(vr);
  if (row.isPseudo()) return kDcNotFound;
  code->assign(row.code);
  return kDcOk;
}

DcCode DcDict::getVr(std::uint16_t group, std::uint16_t element, std::string* code) const {
  return getVr(dcTag(group, element), code);
}

DcCode DcDict::getVr(DcTag tag, std::string* code) const {
  if (code == nullptr) return refuseNull("DcDict::getVr");
  const ElementFacts facts = lookUp(tag);
  return getVr(facts.source == ElementFacts::Source::Unknown ? DcVr::None : facts.vr, code);
}

DcCode DcDict::getVrDef(const char* code, DcVr* vrOut) const {
  if (vrOut == nullptr) return refuseNull("DcDict::getVrDef");
  *vrOut = DcVr::None;
  if (code == nullptr) return refuseNull("DcDict::getVrDef");

  const auto first = static_cast<unsigned char>(code[0]);
  const auto second = static_cast<unsigned char>(first == 0 ? 0 : code[1]);
  *vrOut = vrByCode(first, second);
  if (*vrOut != DcVr::None) return kDcOk;
  if (isPrintable(first) && isPrintable(second)) {
    dcLog(DcLogLevel::Error, "DcDict::getVrDef", "Unknown VR string '%.2s'", code);
  } else {
    dcLog(DcLogLevel::Error, "DcDict::getVrDef", "Unknown VR string '0x%02x 0x%02x'",
          static_cast<unsigned>(first), static_cast<unsigned>(second));
  }
  return kDcNotFound;
}

DcCode DcDict::getVrLen(DcVr vr, std::uint32_t* lenOut) {
  if (lenOut == nullptr) return refuseNull("DcDict::getVrLen");
  *lenOut = vrRow(vr).maxBytes;
  if (vr == DcVr::RT) return refuseRetired("DcDict::getVrLen");
  return hasLimits(vr) ? kDcOk : refuseVr("DcDict::getVrLen", vr);
}

DcCode DcDict::getVrSize(DcVr vr, DcSizeClass* classOut) {
  if (classOut == nullptr) return refuseNull("DcDict::getVrSize");
  *classOut = vrRow(vr).sizeClass;
  if (vr == DcVr::RT) return refuseRetired("DcDict::getVrSize");
  return hasLimits(vr) ? kDcOk : refuseVr("DcDict::getVrSize", vr);
}

}  // namespace quillon
