// The encoded value of one element, and of a sequence handed over on its own.
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include "dicom/byte_order.h"
#include "dicom/dict.h"
#include "dicom/elem.h"
#include "dicom/elem_sq.h"
#include "dicom/log.h"
#include "dicom/parse_header.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"
#include "parse_list.h"

namespace quillon {
namespace {

template <class T>
std::vector<T> loadValues(const std::uint8_t* bytes, std::size_t count, bool bigEndian) {
  std::vector<T> values(count);
  for (std::size_t i = 0; i < count; ++i, bytes += sizeof(T)) {
    values[i] = bigEndian ? loadBe<T>(bytes) : loadLe<T>(bytes);
  }
  return values;
}

// The group stands first in either byte order.
std::vector<DcTag> loadTags(const std::uint8_t* bytes, std::size_t count, bool bigEndian) {
  std::vector<DcTag> tags(count);
  for (std::size_t i = 0; i < count; ++i) tags[i] = loadTag(bytes + i * sizeof(DcTag), bigEndian);
  return tags;
}

DcCode outOfMemory(const char* function, std::uint32_t lengthBytes) {
  dcLog(DcLogLevel::Error, function, "unable to allocated 0x%x (%d) bytes of memory",
        static_cast<unsigned>(lengthBytes), static_cast<int>(lengthBytes));
  return kDcNoMemory;
}

}  // namespace

DcCode DcElem::parseVal(const std::uint8_t* buffer, std::uint32_t lengthBytes,
                        DcUid transferSyntax) try {
  clearValues();
  if (buffer == nullptr || lengthBytes == 0) return kDcOk;
  const VrRow& row = vrRow(resolvedVr());
  if (row.storage == DcStorage::Segments) {
    segments_.push_back(DcElemValueBuf::copyOf(buffer, lengthBytes, transferSyntax));
    return kDcOk;
  }
  if (const DcCode code = checkTransferSyntax(transferSyntax); code != kDcOk) return code;
  if (sizeClass_ == DcSizeClass::Bytes) {
    return addText({reinterpret_cast<const char*>(buffer), lengthBytes}, kAppend);
  }
  if (sizeClass_ == DcSizeClass::NoScalar) {
    dcLog(DcLogLevel::Error, "DcElem::parseVal", "Element (%04x,%04x) - invalid VR size", group(),
          element());
    return kDcNotReadable;
  }
  if (maxValueBytes_ == 0) {
    dcLog(DcLogLevel::Error, "DcElem::parseValBinary", "Element (%04x,%04x) - zero vrLen", group(),
          element());
    return kDcNotReadable;
  }
  const bool big = isBigEndian(transferSyntax) && group() != 0;
  std::size_t count = lengthBytes / maxValueBytes_;
  // As if the values were added one by one: beyond the limit the first ones make room.
  const auto limit = static_cast<std::size_t>(std::abs(vmLimit_));
  if (limit != 0 && count > limit && dcValueChecking()) {
    buffer += (count - limit) * maxValueBytes_;
    count = limit;
  }
  if (count == 0) return kDcOk;
  visitStorage(row.storage, [&]<typename Stored>(Stored) {
    if constexpr (std::is_arithmetic_v<Stored>) values_ = loadValues<Stored>(buffer, count, big);
  });
  if (row.number == DcNumber::Tag) values_ = loadTags(buffer, count, big);
  return kDcOk;
} catch (const std::bad_alloc&) {
  return outOfMemory("DcElem::parseVal", lengthBytes);
}

DcCode DcElemSq::parseVal(const std::uint8_t* buffer, std::uint32_t lengthBytes,
                          DcUid transferSyntax) try {
  constexpr const char* kFunction = "DcElemSq::parseVal";
  items_.clear();
  if (buffer == nullptr) {
    dcLog(DcLogLevel::Error, kFunction, "Null argument passed");
    return kDcNullArgument;
  }
  if (const DcCode code = checkTransferSyntax(transferSyntax); code != kDcOk) return code;
  const unsigned form = parseFormOf(transferSyntax);
  std::uint32_t at = 0;
  while (at < lengthBytes) {
    if (lengthBytes - at < kShortHeaderBytes) {
      dcLog(DcLogLevel::Error, kFunction, "SQ item length invalid for element (%04x,%04x)", group(),
            element());
      return kDcNotAccepted;
    }
    const DcTag itemTag = loadItemTag(buffer + at, form);
    const std::uint32_t itemLength = loadItemLength(buffer + at, form);
    if (itemTag == tags::kSequenceDelimitationItem && itemLength == 0) return kDcOk;
    if (itemTag != tags::kItem) {
      dcLog(DcLogLevel::Error, kFunction,
            "Element (%04x,%04x) - Data error, did not find the expected sequence item tag",
            group(), element());
      return kDcNotAccepted;
    }
    if (itemLength == kUndefinedLength) {
      dcLog(DcLogLevel::Error, kFunction,
            "Element (%04x,%04x) - Data error, undefined length encountered", group(), element());
      return kDcNotAccepted;
    }
    const std::uint32_t itemAt = at;
    at += static_cast<std::uint32_t>(kShortHeaderBytes);
    if (itemLength > lengthBytes - at) {
      dcLog(DcLogLevel::Error, kFunction, "Item length %d(0x%x) exceeds buffer length %d(0x%x)",
            static_cast<int>(itemLength), static_cast<unsigned>(itemLength),
            static_cast<int>(lengthBytes - at), static_cast<unsigned>(lengthBytes - at));
      return kDcNotAccepted;
    }
    DcElemSqItem& item = *addItem(std::make_unique<DcElemSqItem>());
    item.offsetInBuffer = itemAt;
    item.lengthBytes = itemLength;
    std::size_t consumed = 0;
    DcCode code =
        processElemListDM(item, buffer + at, itemLength, transferSyntax, form, consumed, at, 1);
    if (code == kDcOk && tag() == tags::kIconImageSequence) code = item.processIconImage();
    if (code != kDcOk) return code;
    at += itemLength;
  }
  return kDcOk;
} catch (const std::bad_alloc&) {
  return outOfMemory("DcElemSq::parseVal", lengthBytes);
}

}  // namespace quillon
