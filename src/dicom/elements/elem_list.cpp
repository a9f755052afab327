#include "dicom/elem_list.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "dicom/cmd.h"
#include "dicom/elem_sq.h"
#include "dicom/log.h"

namespace quillon {
namespace {

// Stands in lists made while checking is off: text stays as it is.
DcCode acceptEveryString(void*, DcTag, DcVr, const char*, std::string*, bool*) { return kDcOk; }

bool isBelow(const std::unique_ptr<DcElem>& element, DcTag tag) { return element->tag() < tag; }

template <typename Elements>
auto placeOf(Elements& elements, DcTag tag) {
  return std::lower_bound(elements.begin(), elements.end(), tag, isBelow);
}

}  // namespace

DcElemList::DcElemList() {
  if (!dcValueChecking()) hook_.convert = acceptEveryString;
}

DcElemList::DcElemList(const void* buffer, std::uint32_t lengthBytes, DcUid transferSyntax)
    : DcElemList() {
  static_cast<void>(parse(static_cast<const std::uint8_t*>(buffer), lengthBytes, transferSyntax));
}

DcElemList::~DcElemList() = default;
DcElemList::DcElemList(DcElemList&&) noexcept = default;
DcElemList& DcElemList::operator=(DcElemList&&) noexcept = default;

DcElem* DcElemList::add(std::unique_ptr<DcElem> element) {
  if (element == nullptr) return nullptr;
  element->setStringHook(hook_);
  const DcTag tag = element->tag();
  // Data sets come in ascending order, so that nearly every element goes to the end.
  if (elements_.empty() || elements_.back()->tag() < tag) {
    return elements_.emplace_back(std::move(element)).get();
  }
  const auto place = placeOf(elements_, tag);
  if (place != elements_.end() && (*place)->tag() == tag) {
    dcLog(DcLogLevel::Warning, "DcElemList::add",
          "Element (%04x,%04x) added again, previous instance deleted", dcGroup(tag),
          dcElement(tag));
    *place = std::move(element);
    return place->get();
  }
  return elements_.insert(place, std::move(element))->get();
}

DcElem* DcElemList::find(DcTag tag) const {
  const auto place = placeOf(elements_, tag);
  return place != elements_.end() && (*place)->tag() == tag ? place->get() : nullptr;
}

DcCode DcElemList::getElem(DcTag tag, DcElem** out) const {
  if (out == nullptr) {
    dcLog(DcLogLevel::Error, "DcElemList::getElem", "Null argument passed");
    return kDcNullArgument;
  }
  *out = find(tag);
  return *out != nullptr ? kDcOk : kDcNotInList;
}

DcCode DcElemList::getElem(DcTag tag, DcElemSq** out) const {
  if (out == nullptr) {
    dcLog(DcLogLevel::Error, "DcElemList::getElem", "Null argument passed");
    return kDcNullArgument;
  }
  *out = nullptr;
  DcElem* const element = find(tag);
  if (element == nullptr) return kDcNotInList;
  if (element->isSequence()) *out = dynamic_cast<DcElemSq*>(element);
  if (*out != nullptr) return kDcOk;
  dcLog(DcLogLevel::Error, "DcElemList::getElem", "Element 0x%08x is not a Sequence", tag);
  return kDcNotSequence;
}

std::unique_ptr<DcElem> DcElemList::remove(DcElem* element) {
  if (element == nullptr) return nullptr;
  const auto place = placeOf(elements_, element->tag());
  if (place == elements_.end() || place->get() != element) return nullptr;
  std::unique_ptr<DcElem> removed = std::move(*place);
  elements_.erase(place);
  return removed;
}

// In one move of what is behind them, however many they are.
void DcElemList::removeGroup(std::uint16_t group) {
  const auto first = placeOf(elements_, dcTag(group, 0));
  const auto last = std::find_if(
      first, elements_.end(), [group](const auto& element) { return element->group() != group; });
  elements_.erase(first, last);
}

void DcElemList::clear() {
  elements_.clear();
  lostElements_ = false;
}

DcCode DcElemList::getValue(DcTag tag, char* buffer, std::size_t bufferBytes, int index) const {
  if (buffer != nullptr && bufferBytes != 0) buffer[0] = '\0';
  DcElem* const element = find(tag);
  return element != nullptr ? element->getValue(buffer, bufferBytes, index) : kDcNotInList;
}

DcCode DcElemList::getValue(DcTag tag, std::uint16_t& value, int index) const {
  DcElem* const element = find(tag);
  return element != nullptr ? element->getValue(value, index) : kDcNotInList;
}

DcCode DcElemList::getValue(DcTag tag, std::int32_t& value, int index) const {
  DcElem* const element = find(tag);
  return element != nullptr ? element->getValue(value, index) : kDcNotInList;
}

DcCode DcElemList::getValue(DcTag tag, std::uint32_t& value, int index) const {
  DcElem* const element = find(tag);
  return element != nullptr ? element->getValue(value, index) : kDcNotInList;
}

DcCode DcElemList::getValue(DcTag tag, DcUid& uid, int index) const {
  DcElem* const element = find(tag);
  return element != nullptr ? element->getValue(uid, index) : kDcNotInList;
}

DcCode DcElemList::getValue(DcTag tag, DcElemValueBuf& segment, int index) const {
  DcElem* const element = find(tag);
  return element != nullptr ? element->getValue(segment, index) : kDcNotInList;
}

int DcElemList::position(DcTag tag) const {
  const auto place = placeOf(elements_, tag);
  if (place == elements_.end() || (*place)->tag() != tag) return -1;
  return static_cast<int>(place - elements_.begin());
}

void DcElemList::resetIterators() {
  for (const auto& element : elements_) element->resetIterator();
}

void DcElemList::takeAll(DcElemList& other) {
  if (&other == this) return;
  for (auto& element : std::exchange(other.elements_, {})) add(std::move(element));
}

void DcElemList::addCopiesOf(const DcElemList& other) {
  if (&other == this) return;
  for (const auto& element : other.elements_) add(element->copy());
}

void DcElemList::addAll(std::vector<std::unique_ptr<DcElem>> elements) {
  const auto byTag = [](const auto& a, const auto& b) { return a->tag() < b->tag(); };
  std::stable_sort(elements.begin(), elements.end(), byTag);
  std::vector<std::unique_ptr<DcElem>> merged;
  merged.reserve(elements_.size() + elements.size());
  auto old = elements_.begin();
  for (std::unique_ptr<DcElem>& element : elements) {
    while (old != elements_.end() && (*old)->tag() < element->tag()) {
      merged.push_back(std::move(*old++));
    }
    const bool replacesOld = old != elements_.end() && (*old)->tag() == element->tag();
    const bool replacesNew = !merged.empty() && merged.back()->tag() == element->tag();
    if (replacesOld || replacesNew) {
      dcLog(DcLogLevel::Warning, "DcElemList::add",
            "Element (%04x,%04x) added again, previous instance deleted", element->group(),
            element->element());
    }
    if (replacesOld) ++old;
    element->setStringHook(hook_);
    if (replacesNew) {
      merged.back() = std::move(element);
    } else {
      merged.push_back(std::move(element));
    }
  }
  std::move(old, elements_.end(), std::back_inserter(merged));
  elements_ = std::move(merged);
}

void DcCmd::add(std::unique_ptr<DcElemList> list) {
  if (list == nullptr) {
    dcLog(DcLogLevel::Error, "DcCmd::add", "Null argument passed for element list");
    return;
  }
  takeAll(*list);
}

}  // namespace quillon
