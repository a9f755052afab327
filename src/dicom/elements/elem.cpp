#include "dicom/elem.h"

#include <charconv>
#include <cstdio>
#include <utility>

#include "dicom/dict.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/vr_table.h"

namespace quillon {
namespace {

bool valueChecking = true;

// A group's length, and the elements whose VR is 35, have one value at most.
constexpr std::int32_t kSingleValue = 1;
constexpr std::int32_t kUnbounded = 0;

void appendText(std::string& out, std::string_view value) { out += value; }
template <typename T>
void appendText(std::string& out, T value) {
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  out.append(digits.data(), result.ptr);
}

}  // namespace

DcCode dcSetValueChecking(bool on) {
  valueChecking = on;
  return kDcOk;
}

bool dcValueChecking() { return valueChecking; }

// A value that is refused is not there: who wants to know why adds it himself.
DcElem::DcElem(DcTag tag, const void* buffer, std::uint32_t lengthBytes, DcUid transferSyntax,
               DcVr vr, bool isSequence)
    : tag_(tag), vr_(vr), isSequence_(isSequence) {
  initialize(transferSyntax);
  if (buffer != nullptr && lengthBytes != 0) {
    static_cast<void>(
        DcElem::parseVal(static_cast<const std::uint8_t*>(buffer), lengthBytes, transferSyntax_));
  }
}

DcElem::DcElem(DcTag tag, DcVr vr) : tag_(tag), vr_(vr) { initialize(DcUid::ExplicitLittleEndian); }

DcElem::DcElem(DcTag tag, const char* text) : DcElem(tag) { static_cast<void>(addValue(text)); }

DcElem::DcElem(DcTag tag, DcUid uid) : DcElem(tag) { static_cast<void>(addValue(uid)); }

DcElem::DcElem(DcTag tag, std::int32_t value) : DcElem(tag) { static_cast<void>(addValue(value)); }

DcElem::DcElem(DcTag tag, std::uint32_t value) : DcElem(tag) { static_cast<void>(addValue(value)); }

DcElem::DcElem(DcTag tag, const char* fileName, std::uint64_t offsetInFile,
               std::uint32_t lengthBytes, DcUid transferSyntax)
    : DcElem(tag) {
  static_cast<void>(addValue(fileName, offsetInFile, lengthBytes, transferSyntax));
}

DcElem::~DcElem() = default;

std::unique_ptr<DcElem> DcElem::copy() const {
  std::unique_ptr<DcElem> made(new DcElem(*this));
  made->detach();
  return made;
}

void DcElem::detach() {
  iterator_ = 0;
  hook_ = {};
  for (DcElemValueBuf& segment : segments_) {
    if (segment.storage() == DcElemValueBuf::Storage::Memory && !segment.ownsMemory()) {
      segment =
          DcElemValueBuf::copyOf(segment.data(), segment.lengthBytes(), segment.transferSyntax());
    }
  }
}

void DcElem::initialize(DcUid transferSyntax) {
  transferSyntax_ = syntaxOfGroup(group(), transferSyntax);
  deriveFromVr();
  if (resolvedVr() == DcVr::SQ && !isSequence_) {
    dcLog(DcLogLevel::Error, "DcElem::initialize",
          "SQ Element (%04x,%04x) must be constructed with DcElemSq", group(), element());
  }
}

void DcElem::deriveFromVr() {
  std::int32_t dictionaryVm = kUnbounded;
  // Of a tag that is not known these are UN and one value.
  static_cast<void>(theDictionary().getElemVrVm(lookupTag(), dictionaryVr_, dictionaryVm));
  const DcVr vr = resolvedVr();
  if (vr == DcVr::Xx) {
    sizeClass_ = DcSizeClass::NoScalar;
    maxValueBytes_ = 0;
    vmLimit_ = kSingleValue;
    return;
  }
  vmLimit_ = vr == dictionaryVr_ ? dictionaryVm : kUnbounded;
  if (element() == 0) vmLimit_ = kSingleValue;
  // An invalid VR is reported once, not by both queries.
  sizeClass_ = DcSizeClass::NoScalar;
  if (DcDict::getVrLen(vr, &maxValueBytes_) == kDcOk) sizeClass_ = vrRow(vr).sizeClass;
}

void DcElem::setVr(DcVr vr) {
  vr_ = vr;
  deriveFromVr();
}

void DcElem::setLookupTag(DcTag tag) {
  lookupTag_ = tag;
  deriveFromVr();
}

int DcElem::valueCount() const {
  if (!segments_.empty()) return static_cast<int>(segments_.size());
  return std::visit(
      [](const auto& values) {
        if constexpr (std::is_same_v<std::decay_t<decltype(values)>, std::monostate>) {
          return 0;
        } else {
          return static_cast<int>(values.size());
        }
      },
      values_);
}

DcCode DcElem::nextPosition(int& position) {
  const int count = valueCount();
  if (iterator_ < count) ++iterator_;
  if (iterator_ >= count) return kDcNoMoreValues;
  position = iterator_;
  return kDcOk;
}

void DcElem::resetIterator() { iterator_ = 0; }

void DcElem::clearValues() {
  values_ = std::monostate{};
  segments_.clear();
  iterator_ = 0;
}

std::optional<std::string_view> DcElem::stringValue(int index) const {
  const auto* values = std::get_if<DcTextValues>(&values_);
  if (values == nullptr || index < 0 || static_cast<std::size_t>(index) >= values->size()) {
    return std::nullopt;
  }
  return (*values)[static_cast<std::size_t>(index)];
}

std::string_view DcElem::stringValues() const {
  const auto* values = std::get_if<DcTextValues>(&values_);
  return values == nullptr ? std::string_view() : std::string_view(values->joined());
}

const std::string* DcElem::undividedText() const {
  const auto* values = std::get_if<DcTextValues>(&values_);
  return values == nullptr ? nullptr : values->undivided();
}

void DcElem::dump(std::string& out) const {
  std::array<char, 32> head{};
  std::snprintf(head.data(), head.size(), "(%04x,%04x) %s ", static_cast<unsigned>(group()),
                static_cast<unsigned>(element()), vrRow(resolvedVr()).code);
  out.append(head.data()).append(dcTagName(lookupTag())).append(" [");
  std::visit(
      [&out](const auto& values) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(values)>, std::monostate>) {
          const char* separator = "";
          for (const auto& value : values) {
            out += std::exchange(separator, "\\");
            appendText(out, value);
          }
        }
      },
      values_);
  const char* separator = "";
  for (const DcElemValueBuf& segment : segments_) {
    out += std::exchange(separator, "\\");
    appendText(out, segment.lengthBytes());
    out += segment.storage() == DcElemValueBuf::Storage::File ? " bytes in a file" : " bytes";
  }
  out += "]\n";
}

}  // namespace quillon
