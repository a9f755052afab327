// A data set: elements in ascending tag order, one per tag, owned by the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "dicom/elem.h"
#include "dicom/types.h"

namespace quillon {

class DcElemSq;

class DcElemList {
 public:
  // Takes the string hook that the checking switch of this moment asks for.
  DcElemList();
  // Parses encoded bytes; parse() is the form that tells how it went.
  DcElemList(const void* buffer, std::uint32_t lengthBytes, DcUid transferSyntax);
  virtual ~DcElemList();
  DcElemList(const DcElemList&) = delete;
  DcElemList& operator=(const DcElemList&) = delete;
  DcElemList(DcElemList&&) noexcept;
  DcElemList& operator=(DcElemList&&) noexcept;

  // Inserts in tag order and answers the element; one with the same tag is deleted first, with a
  // warning. Null answers null.
  DcElem* add(std::unique_ptr<DcElem> element);
  // kDcNotInList, or (sequence form) kDcNotSequence / kDcNullArgument; out is null then.
  DcCode getElem(DcTag tag, DcElem** out) const;
  DcCode getElem(DcTag tag, DcElemSq** out) const;
  [[nodiscard]] DcElem* find(DcTag tag) const;  // null when absent
  [[nodiscard]] bool contains(DcTag tag) const { return find(tag) != nullptr; }
  // Unlinks without deleting; null when the element is not in the list.
  std::unique_ptr<DcElem> remove(DcElem* element);
  // Deletes every element of a group.
  void removeGroup(std::uint16_t group);
  void clear();
  // Room for as many elements in all.
  void reserve(std::size_t count) { elements_.reserve(count); }
  // Whether parsing dropped an element, in this list or in the items below it, because there was no
  // memory for its value: what is here is not all that was encoded. clear() forgets it.
  [[nodiscard]] bool lostElements() const { return lostElements_; }
  void noteLostElement() { lostElements_ = true; }

  // Find the element and forward to it. The text form empties its buffer first.
  DcCode getValue(DcTag tag, char* buffer, std::size_t bufferBytes, int index = 0) const;
  DcCode getValue(DcTag tag, std::uint16_t& value, int index = 0) const;
  DcCode getValue(DcTag tag, std::int32_t& value, int index = 0) const;
  DcCode getValue(DcTag tag, std::uint32_t& value, int index = 0) const;
  DcCode getValue(DcTag tag, DcUid& uid, int index = 0) const;
  DcCode getValue(DcTag tag, DcElemValueBuf& segment, int index = 0) const;

  [[nodiscard]] int position(DcTag tag) const;  // -1 when absent
  [[nodiscard]] std::size_t size() const { return elements_.size(); }
  [[nodiscard]] DcElem* at(std::size_t index) const { return elements_[index].get(); }
  void resetIterators();

  // Reaches only elements added afterwards.
  void setStringHook(const DcStringHook& hook) { hook_ = hook; }
  [[nodiscard]] const DcStringHook& stringHook() const { return hook_; }

  // Adds the elements of encoded bytes to the list. On an error the elements before it stay.
  // lostElements tells of elements that were dropped; kDcNoMemory when there is none for the
  // elements themselves.
  DcCode parse(const std::uint8_t* buffer, std::uint32_t lengthBytes, DcUid transferSyntax);
  // Encodes every element, with group lengths recomputed where the list has them.
  virtual DcCode frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax);
  [[nodiscard]] std::uint64_t encodedLengthEstimate() const;
  // Moves every element of `other` into this list, as add would.
  void takeAll(DcElemList& other);
  // Adds a copy of every element of `other`, as add would.
  void addCopiesOf(const DcElemList& other);
  // What add for each in turn would do, in one pass however they are ordered.
  void addAll(std::vector<std::unique_ptr<DcElem>> elements);

 private:
  std::vector<std::unique_ptr<DcElem>> elements_;
  DcStringHook hook_;
  bool lostElements_ = false;
};

}  // namespace quillon
