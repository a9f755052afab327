#include "elem_copy.h"

#include <string>
#include <utility>

#include "dicom/elem_sq.h"

namespace quillon {

namespace {

// The copy holds what the source holds, also when that would not pass the checks of new input.
DcCode AcceptAsItIs(void*, DcTag, DcVr, const char*, std::string*, bool* hasReplacement) {
  *hasReplacement = false;
  return kDcOk;
}

template <typename Value>
bool CopyNumber(DcElem& from, DcElem& to, int index) {
  Value value{};
  return from.getValue(value, index) == kDcOk && to.addValue(value) == kDcOk;
}

bool CopyValue(DcElem& from, DcElem& to, DcVr vr, int index) {
  if (const std::string* text = from.stringValue(index)) return to.addValue(text->c_str()) == kDcOk;
  switch (vr) {
    case DcVr::SS:
    case DcVr::XS:
      return CopyNumber<std::int16_t>(from, to, index);
    case DcVr::US:
      return CopyNumber<std::uint16_t>(from, to, index);
    case DcVr::SL:
      return CopyNumber<std::int32_t>(from, to, index);
    case DcVr::UL:
    case DcVr::AT:
      return CopyNumber<std::uint32_t>(from, to, index);
    case DcVr::FL:
      return CopyNumber<float>(from, to, index);
    case DcVr::FD:
      return CopyNumber<double>(from, to, index);
    default:
      return false;
  }
}

void CopySegments(const DcElem& from, DcElem& to) {
  to.segments().reserve(from.segments().size());
  for (const DcElemValueBuf& segment : from.segments()) {
    const bool borrowed =
        segment.storage() == DcElemValueBuf::Storage::Memory && !segment.ownsMemory();
    to.segments().push_back(borrowed ? DcElemValueBuf::copyOf(segment.data(), segment.lengthBytes(),
                                                              segment.transferSyntax())
                                     : segment);
  }
}

bool CopyElements(const DcElemList& from, DcElemList& to) {
  for (std::size_t i = 0; i < from.size(); ++i) {
    if (to.add(CopyElement(*from.at(i))) == nullptr) return false;
  }
  return true;
}

bool CopyItems(const DcElemSq& from, DcElemSq& to) {
  for (std::size_t i = 0; i < from.itemCount(); ++i) {
    DcElemSqItem* item = to.addItem(std::make_unique<DcElemSqItem>());
    if (!CopyElements(*from.item(i), *item)) return false;
  }
  return true;
}

}  // namespace

std::unique_ptr<DcElem> CopyElement(DcElem& element) {
  if (element.isSequence()) {
    const auto* sequence = dynamic_cast<const DcElemSq*>(&element);
    if (sequence == nullptr) return nullptr;
    auto copy = std::make_unique<DcElemSq>(sequence->tag(), sequence->vr());
    if (!CopyItems(*sequence, *copy)) return nullptr;
    return copy;
  }
  const void* const noBytes = nullptr;
  auto copy =
      std::make_unique<DcElem>(element.tag(), noBytes, 0U, element.transferSyntax(), element.vr());
  if (!element.segments().empty()) {
    CopySegments(element, *copy);
    return copy;
  }
  // Once the iterator has moved, index 0 would mean its position.
  element.resetIterator();
  copy->setStringHook({nullptr, &AcceptAsItIs});
  const DcVr vr = element.resolvedVr();
  for (int i = 0; i < element.valueCount(); ++i) {
    if (!CopyValue(element, *copy, vr, i)) return nullptr;
  }
  return copy;
}

}  // namespace quillon
