#include "dicom/elem_sq.h"

#include <utility>

#include "dicom/dict.h"
#include "dicom/log.h"

namespace quillon {
namespace {

// A private sequence need not be known; a standard tag that is something else is a mistake.
void warnUnlessSequence(DcTag tag) {
  if ((dcGroup(tag) & 1U) != 0) return;
  if (dcTagVr(tag) == DcVr::SQ) return;
  dcLog(DcLogLevel::Warning, "DcElemSq::DcElemSq", "Element 0x%08lx is not of type SQ",
        static_cast<unsigned long>(tag));
}

}  // namespace

DcElemSq::DcElemSq(DcTag tag, DcVr vr)
    : DcElemSq(tag, nullptr, 0, DcUid::ExplicitLittleEndian, vr) {}

DcElemSq::DcElemSq(DcTag tag, const void* buffer, std::uint32_t lengthBytes, DcUid transferSyntax,
                   DcVr vr)
    : DcElem(tag, nullptr, 0, transferSyntax, vr == DcVr::IM ? DcVr::SQ : vr, true) {
  if (vr == DcVr::IM) warnUnlessSequence(tag);
  if (buffer != nullptr) {
    static_cast<void>(
        DcElemSq::parseVal(static_cast<const std::uint8_t*>(buffer), lengthBytes, transferSyntax_));
  }
}

DcElemSq::DcElemSq(const DcElemSq& other) : DcElem(other) {
  detach();
  items_.reserve(other.items_.size());
  for (const auto& item : other.items_) {
    addItem(std::make_unique<DcElemSqItem>())->addCopiesOf(*item);
  }
}

std::unique_ptr<DcElem> DcElemSq::copy() const {
  return std::unique_ptr<DcElem>(new DcElemSq(*this));
}

void DcElemSq::resetIterator() {
  DcElem::resetIterator();
  for (const auto& item : items_) item->resetIterators();
}

void DcElemSq::dump(std::string& out) const {
  DcElem::dump(out);
  for (const auto& item : items_) {
    out += "item\n";
    for (std::size_t i = 0; i < item->size(); ++i) item->at(i)->dump(out);
  }
}

DcElemSqItem* DcElemSq::addItem(std::unique_ptr<DcElemSqItem> item) {
  if (item == nullptr) return nullptr;
  return items_.emplace_back(std::move(item)).get();
}

}  // namespace quillon
