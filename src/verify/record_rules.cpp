#include "record_rules.h"

#include <algorithm>
#include <array>
#include <string>

#include "charset/character_set.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"
#include "fileset/record_rows.h"
#include "platform/services.h"

namespace quillon {

namespace {

constexpr std::uint16_t kInUse = 0xFFFF;
constexpr std::uint16_t kNotInUse = 0;
constexpr std::size_t kMaxUidChars = 64;

// Keys that our own records have beside those that the standard asks for.
constexpr std::array kNotAskedFor{tags::kPatientsSex, tags::kPatientsAge, tags::kPatientsBirthDate,
                                  tags::kSeriesDate};
constexpr std::array kUids{tags::kReferencedFileClassUid, tags::kReferencedFileInstanceUid,
                           tags::kReferencedFileXferSynUid, tags::kStudyInstanceUid,
                           tags::kSeriesInstanceUid};

// The numbers of the sets; behind "ISO 2022 IR " those of code extensions stand too.
constexpr std::array<std::string_view, 14> kSingleSets{
    "6", "100", "101", "109", "110", "144", "127", "126", "138", "148", "203", "13", "166", "192"};
constexpr std::array<std::string_view, 4> kExtensionSets{"87", "159", "149", "58"};

bool IsDefinedTerm(std::string_view term) {
  constexpr std::string_view kPlain = "ISO_IR ";
  constexpr std::string_view kExtended = "ISO 2022 IR ";
  constexpr std::string_view kUtf8 = "192";
  const auto isOf = [](const auto& sets, std::string_view set) {
    return std::ranges::find(sets, set) != sets.end();
  };
  if (term.starts_with(kPlain)) return isOf(kSingleSets, term.substr(kPlain.size()));
  if (term.starts_with(kExtended)) {
    const std::string_view set = term.substr(kExtended.size());
    return set != kUtf8 && (isOf(kSingleSets, set) || isOf(kExtensionSets, set));
  }
  return term == "GB18030" || term == "GBK";
}

// Calls part for each of the values that backslashes divide.
template <typename Part>
void ForEachValue(std::string_view values, const Part& part) {
  for (std::size_t begin = 0; begin <= values.size();) {
    const std::size_t end = std::min(values.find('\\', begin), values.size());
    part(TrimmedBytes(values.substr(begin, end - begin)));
    begin = end + 1;
  }
}

void CheckCharacterSet(const RawElements& elements, const FaultPlace& place, Findings& findings) {
  const std::string_view declared = elements.Text(tags::kSpecificCharacterSet);
  bool isKnown = true;
  bool isDeclared = false;
  bool isFirst = true;
  ForEachValue(declared, [&](std::string_view term) {
    isDeclared = isDeclared || (!term.empty() && term != "ISO_IR 6");
    // The first of several may be empty: the default repertoire.
    isKnown = isKnown && (IsDefinedTerm(term) || (isFirst && term.empty()));
    isFirst = false;
  });
  if (!isKnown) {
    findings.Add(Fault::CharacterSetUnknown, place, {ShownValue(declared), place.record});
  }
  if (isDeclared) return;
  static_cast<void>(AnyElement(elements, [&](const RawElement& element) {
    if (vrRow(element.vr).characters == DcCharacters::Ascii || IsDefaultRepertoire(element.value)) {
      return false;
    }
    findings.Add(Fault::NoCharacterSet, place, {KeyName(element.tag), place.record});
    return true;
  }));
}

bool IsUid(std::string_view uid) {
  return uid.size() <= kMaxUidChars && uid.find("..") == std::string_view::npos &&
         uid.front() != '.' && uid.back() != '.' &&
         std::ranges::all_of(uid, [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
}

void CheckKeys(const RawElements& elements, DcDirRecType type, const FaultPlace& place,
               Findings& findings) {
  for (const RecordKey& key : RecordRowOf(type).keys) {
    if (key.need == KeyNeed::IfThere ||
        std::ranges::find(kNotAskedFor, key.tag) != kNotAskedFor.end())
      continue;
    const RawElement* element = elements.Find(key.tag);
    const bool isEmpty = element == nullptr || TrimmedBytes(element->value).empty();
    if (!isEmpty || (element != nullptr && key.need == KeyNeed::Place)) continue;
    // Without these nobody knows to which study and series the objects below belong.
    if (key.tag == tags::kStudyInstanceUid || key.tag == tags::kSeriesInstanceUid) {
      findings.Add(Fault::IdentityMissing, place, {place.record, KeyName(key.tag)});
    } else if (element == nullptr) {
      findings.Add(Fault::KeyMissing, place, {place.record, KeyName(key.tag)});
    } else {
      findings.Add(Fault::KeyEmpty, place, {KeyName(key.tag), place.record});
    }
  }
}

bool IsFileIdCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

void AddReason(Text& reasons, const OLECHAR* reason) {
  if (reasons.find(reason) != Text::npos) return;
  if (!reasons.empty()) reasons += OLESTR(", ");
  reasons += reason;
}

}  // namespace

void CheckRecord(const RawElements& elements, DcDirRecType type, const FaultPlace& place,
                 Findings& findings) {
  std::uint16_t flag = kInUse;
  const bool hasFlag = elements.Number(tags::kRecordInUseFlag, flag);
  if (hasFlag && flag == kNotInUse) {
    findings.Add(Fault::NotInUse, place, {place.record});
  } else if (!hasFlag || flag != kInUse) {
    findings.Add(Fault::InUseFlag, place, {place.record});
  }
  CheckKeys(elements, type, place, findings);
  CheckCharacterSet(elements, place, findings);
  for (const DcTag tag : kUids) {
    const std::string_view uid = elements.Text(tag);
    if (uid.empty() || IsUid(uid)) continue;
    findings.Add(Fault::UidForm, place, {KeyName(tag), ShownValue(uid), place.record});
  }
}

Text CheckFileId(std::string_view fileId, const FaultPlace& place, Findings& findings) {
  Text reasons;
  std::string path;
  std::size_t parts = 0;
  bool isOutside = false;
  ForEachValue(fileId, [&](std::string_view part) {
    ++parts;
    if (part.empty()) AddReason(reasons, OLESTR("a component is empty"));
    if (part.size() > kMaxFileIdPartChars)
      AddReason(reasons, OLESTR("a component has more than 8 characters"));
    if (!std::ranges::all_of(part, IsFileIdCharacter))
      AddReason(reasons, OLESTR("it has other characters than A-Z, 0-9 and \"_\""));
    isOutside = isOutside || part == ".." || part.starts_with("../") || part.starts_with('/') ||
                part.ends_with("/..") || part.find("/../") != std::string_view::npos;
    if (parts > 1) path += '\\';
    path += part;
  });
  if (parts > kMaxFileIdParts) AddReason(reasons, OLESTR("it has more than 8 components"));
  if (isOutside) {
    findings.Add(Fault::FileIdOutside, place, {ShownValue(fileId), place.record});
    return {};
  }
  if (!reasons.empty()) {
    findings.Add(Fault::FileIdForm, place, {ShownValue(fileId), place.record, reasons});
  }
  // Where one component was written as a path, its file is what it leads to.
  std::ranges::replace(path, '/', '\\');
  return WidenText(path, FileSystemCodePage());
}

}  // namespace quillon
