#include "header_xml.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <variant>
#include <vector>

#include "dicom/dict.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"
#include "dicomobjects/decoded_text.h"
#include "dicomobjects/xml_text.h"
#include "elem_value.h"
#include "tables/uid_names.h"
#include "value_text.h"

namespace quillon {

namespace {

constexpr DcTag kPixelDataGroupLength = dcTag(dcGroup(tags::kPixelData), 0);
constexpr std::string_view kEndTag = "</tag>\n";

// The group as it is written before a data set that does not hold it itself.
constexpr std::array kMetaTags{
    tags::kFileMetaInformationVersion,   tags::kMediaStorageSopClassUid,
    tags::kMediaStorageSopInstanceUid,   tags::kTransferSyntaxUid,
    tags::kImplementationClassUid,       tags::kImplementationVersionName,
    tags::kSourceApplicationEntityTitle, tags::kPrivateInformationCreatorUid,
    tags::kPrivateInformation,
};

std::string Decimal(std::size_t number) { return std::to_string(number); }

template <typename Held>
constexpr bool kIsArray = false;
template <typename Entry>
constexpr bool kIsArray<std::vector<Entry>> = true;

// 0 for a single value and none.
std::size_t EntryCount(const DicomValue& value) {
  return std::visit(
      [](const auto& held) -> std::size_t {
        if constexpr (kIsArray<std::decay_t<decltype(held)>>) return held.size();
        return 0;
      },
      value);
}

bool IsArray(const DicomValue& value) {
  return std::visit([](const auto& held) { return kIsArray<std::decay_t<decltype(held)>>; }, value);
}

bool IsEmpty(const DicomValue& value) {
  const auto* text = std::get_if<Text>(&value);
  return text != nullptr ? text->empty() : std::holds_alternative<std::monostate>(value);
}

Text EntryText(const DicomValue& array, std::size_t index) {
  Text text;
  std::visit(
      [&](const auto& held) {
        if constexpr (kIsArray<std::decay_t<decltype(held)>>) {
          static_cast<void>(DicomValueToText(DicomValue(held[index]), text));
        }
      },
      array);
  EscapeXmlText(text);
  return text;
}

// The dictionary's "T_0028_0010_rows" without what stands before the last underscore.
std::string ElementName(DcTag tag) {
  std::string name = dcTagName(tag);
  const std::size_t underscore = name.find_last_of('_');
  if (underscore != std::string::npos && underscore + 1 < name.size()) {
    name.erase(0, underscore + 1);
  }
  return name;
}

}  // namespace

HeaderXml::HeaderXml(CDicomUtil& util, Text& out, std::uint32_t maxValues, bool includePixelData,
                     const HeaderOptions& options)
    : util_(util),
      out_(out),
      maxValues_(maxValues),
      includePixelData_(includePixelData),
      options_(options) {}

bool HeaderXml::Write(const DcElemList& list) {
  const bool isTold = !options_.characterSet.empty();
  if (!isTold && !options_.currentPractice) return DumpElementList(list, 0);
  const CharacterSet set = isTold ? CharacterSet(options_.characterSet) : CharacterSetOf(list);
  characterSet_ = &set;
  return DumpElementList(list, 0);
}

void HeaderXml::BeginDocument() {
  Put("<?xml version=\"1.0\" ?>\n<data-set");
  if (characterSet_ != nullptr) {
    Text terms = WidenValue(characterSet_->Terms());
    EscapeXmlText(terms);
    // A tab would be a space to those who read it.
    std::ranges::replace(terms, OLESTR('\t'), OLESTR(' '));
    Put(" charset=\"");
    out_ += terms;
    if (!characterSet_->IsKnown()) {
      Put("\" code-page=\"");
      Put(Decimal(GetACP()));
    }
    Put("\"");
  }
  if (!options_.above.empty()) PutAttribute("above", options_.above);
  Put(">\n");
}

void HeaderXml::Put(std::string_view ascii) { out_.append(ascii.begin(), ascii.end()); }

void HeaderXml::PutAttribute(std::string_view name, Text value) {
  EscapeXmlText(value);
  Put(" ");
  Put(name);
  Put("=\"");
  out_ += value;
  Put("\"");
}

void HeaderXml::PutTitle(std::string_view title) {
  if (title.empty()) return;
  // Every element has one, and few of them a character that is not plain.
  const auto isPlain = [](char c) { return (c >= 'A' && c <= 'z') || c == ' ' || c == '-'; };
  if (!std::ranges::all_of(title, isPlain)) {
    PutAttribute("title", WidenText(title, CP_UTF8));
    return;
  }
  Put(" title=\"");
  Put(title);
  Put("\"");
}

std::uint16_t HeaderXml::BitsAllocated() {
  if (!bitsAllocated_) {
    DicomValue value;
    static_cast<void>(util_.GetValue(tags::kBitsAllocated, value, /*asArray=*/false));
    const auto* bits = std::get_if<std::uint16_t>(&value);
    bitsAllocated_ = bits == nullptr ? std::uint16_t{0} : *bits;
  }
  return *bitsAllocated_;
}

std::string HeaderXml::VrText(const DcElem& element) {
  const DcVr vr = element.resolvedVr();
  if (vr == DcVr::OX && BitsAllocated() == 0) return "OB/OW";
  const std::string_view code =
      vrCodeAsWritten(vr == DcVr::OX ? ReadableVr(element, BitsAllocated()) : vr);
  return std::string(code.empty() ? "UN" : code);
}

void HeaderXml::OpenTag(DcTag tag, std::string_view vr, std::string_view vm, TextView meaning) {
  // Group and element, four digits each.
  std::array<char, 8> digits{};
  for (std::size_t i = 0; i < digits.size(); ++i) {
    digits[i] = "0123456789abcdef"[tag >> (28 - 4 * i) & 0xF];
  }
  Put("<tag grp=\"");
  Put({digits.data(), 4});
  Put("\" element=\"");
  Put({digits.data() + 4, 4});
  Put("\" VR=\"");
  Put(vr);
  Put("\" VM=\"");
  Put(vm);
  Put("\" name=\"");
  Put(tag == kPixelDataGroupLength ? std::string("groupLength") : ElementName(tag));
  Put("\"");
  if (options_.currentPractice) {
    PutTitle(dcTagTitle(tag));
    if (!meaning.empty()) PutAttribute("meaning", Text(meaning));
  }
  Put(">");
}

bool HeaderXml::DumpElementList(const DcElemList& list, int depth) {
  if (depth == 0) {
    BeginDocument();
    const bool hasMetaGroup =
        list.size() > 0 && list.at(0)->tag() == tags::kFileMetaInformationVersion;
    if (!hasMetaGroup && !DumpMetaGroup()) return false;
  }
  bool hasGroupLength = false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    DcElem& element = *list.at(i);
    hasGroupLength = hasGroupLength || element.tag() == kPixelDataGroupLength;
    if (element.tag() == tags::kPixelData && !includePixelData_) {
      DumpPixelDataNotLoaded(element, hasGroupLength);
    } else if (!DumpElement(element, depth)) {
      return false;
    }
  }
  if (depth == 0) Put("</data-set>\n");
  return true;
}

// The values come from the meta information that was read and, but for the field's practice,
// completed; an element without one is empty.
bool HeaderXml::DumpMetaGroup() {
  const std::vector<std::uint8_t>& privateInformation = util_.GetMetaInfo().privateInformation;
  const std::vector<DcTag>& inFile = util_.GetReading().metaTags;
  for (const DcTag tag : kMetaTags) {
    if (options_.currentPractice && std::ranges::find(inFile, tag) == inFile.end()) continue;
    DcElem element(tag);
    if (tag == tags::kPrivateInformation && !privateInformation.empty() &&
        element.addValue(privateInformation.data(),
                         static_cast<std::uint32_t>(privateInformation.size()),
                         DcUid::ExplicitLittleEndian) != kDcOk) {
      return false;
    }
    DicomValue value;
    if (!ReadValue(element, 0, value) || !PutElement(element, value, IsEmpty(value) ? 0 : 1)) {
      return false;
    }
  }
  return true;
}

void HeaderXml::DumpPixelDataNotLoaded(const DcElem& element, bool hasGroupLength) {
  if (!hasGroupLength) {
    std::uint32_t lengthBytes = 0;
    for (const DcElemValueBuf& segment : element.segments()) lengthBytes += segment.lengthBytes();
    OpenTag(kPixelDataGroupLength, "UL", "1");
    Put(Decimal(lengthBytes));
    Put(kEndTag);
  }
  OpenTag(element.tag(), VrText(element), "1");
  Put("NOT LOADED");
  Put(kEndTag);
}

bool HeaderXml::DumpSequence(const DcElem& element, int depth) {
  const auto* sequence = dynamic_cast<const DcElemSq*>(&element);
  if (sequence == nullptr) return false;
  OpenTag(element.tag(), "SQ", {});
  Put("\n");
  for (std::size_t i = 0; i < sequence->itemCount(); ++i) {
    Put("<item>\n");
    if (!DumpItem(*sequence->item(i), depth + 1)) return false;
    Put("</item>\n");
  }
  Put(kEndTag);
  return true;
}

// An item that declares no character set has that of the data set, or item, that it lies in.
bool HeaderXml::DumpItem(const DcElemList& item, int depth) {
  if (characterSet_ == nullptr || !options_.characterSet.empty() ||
      !item.contains(tags::kSpecificCharacterSet)) {
    return DumpElementList(item, depth);
  }
  const CharacterSet own = CharacterSetOf(item);
  const CharacterSet* const outer = characterSet_;
  if (!own.Terms().empty()) characterSet_ = &own;
  const bool isDone = DumpElementList(item, depth);
  characterSet_ = outer;
  return isDone;
}

// What the tag path of the element would find, without looking for it.
bool HeaderXml::ReadValue(DcElem& element, int depth, DicomValue& value) {
  if (depth == 0 && element.group() == dcGroup(kMetaTags[0]) &&
      util_.GetValue(element.tag(), value, /*asArray=*/false)) {
    return true;
  }
  // Only OX has a choice that depends on the image.
  const std::uint16_t bits = element.resolvedVr() == DcVr::OX ? BitsAllocated() : std::uint16_t{0};
  return ReadElementValue(element, ReadableVr(element, bits), element.valueCount() > 1, value,
                          maxValues_);
}

void HeaderXml::BeginValues(std::size_t count, std::size_t total) {
  Put("<values count=\"");
  Put(Decimal(count));
  Put("\" total=\"");
  Put(Decimal(total));
  Put("\">\n");
}

bool HeaderXml::PutContent(const DcElem& element, const DicomValue& value) {
  if (!IsArray(value)) {
    Text text;
    if (!DicomValueToText(value, text)) return false;
    EscapeXmlText(text);
    // The stored number of the version: its first byte is zero and does not show in it.
    if (element.tag() == tags::kFileMetaInformationVersion) Put("0\\");
    out_ += text;
    return true;
  }
  // Bulk bytes are there as a whole; of other values no more are read than can be written.
  const std::size_t total = element.segments().empty()
                                ? static_cast<std::size_t>(element.valueCount())
                                : EntryCount(value);
  const std::size_t count = std::min<std::size_t>(total, maxValues_);
  BeginValues(count, total);
  for (std::size_t i = 0; i < count; ++i) {
    Put("<value>");
    out_ += EntryText(value, i);
    Put("</value>\n");
  }
  Put("</values>\n");
  return true;
}

bool HeaderXml::DumpElement(DcElem& element, int depth) {
  if (element.resolvedVr() == DcVr::SQ) return DumpSequence(element, depth);
  if (characterSet_ != nullptr && NeedsCharacterSet(element)) {
    PutDecoded(element);
    return true;
  }
  DicomValue value;
  return ReadValue(element, depth, value) &&
         PutElement(element, value, static_cast<std::size_t>(element.valueCount()));
}

void HeaderXml::PutDecoded(const DcElem& element) {
  constexpr OLECHAR kSeparator = OLESTR('\\');
  const Text text = DecodedText(element, *characterSet_);
  const auto separators = vrRow(element.resolvedVr()).characters == DcCharacters::Paragraphs
                              ? std::size_t{0}
                              : static_cast<std::size_t>(std::ranges::count(text, kSeparator));
  const std::size_t count = std::min<std::size_t>(separators + 1, maxValues_);
  OpenTag(element.tag(), VrText(element), Decimal(count));
  if (separators == 0) {
    Text value(TrimmedView(text));
    EscapeXmlText(value);
    out_ += value;
  } else {
    BeginValues(count, separators + 1);
    TextView rest = text;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t end = std::min(rest.find(kSeparator), rest.size());
      Text value(rest.substr(0, end));
      EscapeXmlText(value);
      Put("<value>");
      out_ += value;
      Put("</value>\n");
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    Put("</values>\n");
  }
  Put(kEndTag);
}

bool HeaderXml::PutElement(const DcElem& element, const DicomValue& value, std::size_t valueCount) {
  const DcVr vr = element.resolvedVr();
  const bool isArray = IsArray(value);
  // Bytes and words are all that the VRs without a settled form come as.
  if (isArray && vr == DcVr::XL) return false;
  const std::size_t vm =
      isArray ? std::min<std::size_t>(EntryCount(value), maxValues_) : valueCount;
  const Text* const uid = vr == DcVr::UI ? std::get_if<Text>(&value) : nullptr;
  OpenTag(element.tag(), vr == DcVr::OX && !isArray ? std::string("OB/OW") : VrText(element),
          Decimal(vm), uid != nullptr ? UidName(*uid) : Text());
  if (!PutContent(element, value)) return false;
  Put(kEndTag);
  return true;
}

}  // namespace quillon
