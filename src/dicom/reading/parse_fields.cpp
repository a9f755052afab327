#include "dicom/parse_fields.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "dicom/file.h"
#include "dicom/file_meta_info.h"
#include "dicom/log.h"
#include "dicom/parse_header.h"
#include "dicom/tags.h"
#include "parse_meta.h"
#include "parse_walk.h"
#include "parse_window.h"

namespace quillon {
namespace {

constexpr const char* kFunction = "libParseFields";

// One walk over a file that answers requests. At the top level the cursor follows the ascending
// tags. Inside sequences a request that is still open is answered too, but the top level has the
// last word, and nested tags do not move the cursor: they are ordered on their own.
class FieldWalk {
 public:
  FieldWalk(FileWindow& window, DcFieldRequest* table, const char* name, bool readPixelLength)
      : window_(window),
        cursor_(table),
        end_(table),
        name_(name),
        readPixelLength_(readPixelLength) {
    while (end_->tag != kLastFieldRequest) ++end_;
  }

  // Walks the elements in [position, to). At their end, and when no request is left, kDcOk.
  DcCode parseElements(std::uint64_t position, std::uint64_t to, unsigned form) {
    constexpr const char* kWalk = "parseElements";
    while (position < to) {
      std::size_t available = 0;
      const std::uint8_t* bytes = headerAt(window_, position, available);
      if (bytes == nullptr) return fail(kWalk, Fault::Read, position);
      ElemInfo info;
      const bool isWhole = utilGetElemInfo(bytes, available, form, info);
      while (cursor_ != end_ && cursor_->tag < info.tag) ++cursor_;
      if (cursor_ == end_) return kDcOk;
      DcFieldRequest* wanted = cursor_->tag == info.tag ? cursor_ : nullptr;
      if (wanted != nullptr && info.tag == tags::kPixelData && !readPixelLength_) {
        wanted->status = DcFieldStatus::PixelDataNotRead;
        wanted->offsetInFile = position;
        return kDcOk;
      }
      if (!isWhole) return failAtLength(info.tag);
      if (const DcCode code = processElement(wanted, info, position, 0); code != kDcOk) return code;
    }
    return kDcOk;
  }

 private:
  // Answers the request, if any, and moves `position` behind the element.
  DcCode processElement(DcFieldRequest* wanted, const ElemInfo& info, std::uint64_t& position,
                        int depth) {
    const bool isImplicit = (info.flags & kParseExplicit) == 0;
    if (!isImplicit && info.headerBytes == kLongHeaderBytes) {
      return processOx(wanted, info, position, depth);
    }
    if (info.valueLength == kUndefinedLength) return processOx(wanted, info, position, depth);
    const std::uint64_t valueAt = position + info.headerBytes;
    if (wanted != nullptr && !take(*wanted, position, valueAt, info.valueLength)) {
      return fail("parseElements", Fault::Read, valueAt);
    }
    position = valueAt + info.valueLength;
    return kDcOk;
  }

  // A value with a 4-byte length: bulk bytes, or a sequence. In the implicit form what has an
  // undefined length is a sequence.
  DcCode processOx(DcFieldRequest* wanted, const ElemInfo& info, std::uint64_t& position,
                   int depth) {
    const std::uint64_t elementAt = position;
    const std::uint64_t valueAt = position + info.headerBytes;
    const bool isUndefined = info.valueLength == kUndefinedLength;
    const bool isImplicit = (info.flags & kParseExplicit) == 0;
    const bool isSequence = info.vr == DcVr::SQ || isImplicit;
    position = valueAt;
    std::uint64_t valueLength = info.valueLength;
    if (isSequence) {
      const std::uint64_t to = isUndefined ? window_.size() : valueAt + info.valueLength;
      const DcCode code = processSq(position, to, isUndefined, info.flags, depth + 1);
      if (code != kDcOk) return code;
    } else if (isUndefined) {
      if (const DcCode code = processOxForward(info, position, depth); code != kDcOk) return code;
    } else {
      position += info.valueLength;
    }
    if (isUndefined) valueLength = position - valueAt - kShortHeaderBytes;
    if (wanted != nullptr && !take(*wanted, elementAt, valueAt, valueLength)) {
      return fail("processOx", Fault::Read, valueAt);
    }
    return kDcOk;
  }

  // Follows encapsulated fragments, or the items of an unknown VR, to the delimitation item.
  DcCode processOxForward(const ElemInfo& info, std::uint64_t& position, int depth) {
    const DcCode code = walkSequence(window_, position, formInside(info), depth + 1);
    if (code == kDcTooDeep) return failAtDepth("processOxForward", position);
    if (code == kDcOk) return code;
    dcLog(DcLogLevel::Error, "processOxForward", "%s - missing OB/OW terminator of Tag %08x", name_,
          static_cast<unsigned>(info.tag));
    return kDcFieldReadError;
  }

  // Walks the items in [position, to); isOpenEnd when a delimitation item ends them.
  DcCode processSq(std::uint64_t& position, std::uint64_t to, bool isOpenEnd, unsigned form,
                   int depth) {
    constexpr const char* kWalk = "processSq";
    if (depth > kMaxNesting) return failAtDepth(kWalk, position);
    while (position < to || isOpenEnd) {
      const std::uint8_t* bytes = window_.at(position, kShortHeaderBytes);
      if (bytes == nullptr) {
        const bool hasTag = window_.at(position, sizeof(DcTag)) != nullptr;
        return fail(kWalk, hasTag ? Fault::ValueLength : Fault::Tag, position);
      }
      const DcTag tag = loadItemTag(bytes, form);
      const std::uint32_t length = loadItemLength(bytes, form);
      if (tag == tags::kSequenceDelimitationItem && length == 0) {
        position = isOpenEnd ? position + kShortHeaderBytes : to;
        return kDcOk;
      }
      if (tag != tags::kItem) return fail(kWalk, Fault::Data, position);
      position += kShortHeaderBytes;
      const bool isOpenItem = length == kUndefinedLength;
      const std::uint64_t itemEnd = isOpenItem ? to : position + length;
      if (itemEnd > to) return fail(kWalk, Fault::Data, position);
      const DcCode code = processSqItem(position, itemEnd, isOpenItem, form, depth);
      if (code != kDcOk) return code;
    }
    return kDcOk;
  }

  // Walks the elements of an item in [position, to); isOpenEnd as above.
  DcCode processSqItem(std::uint64_t& position, std::uint64_t to, bool isOpenEnd, unsigned form,
                       int depth) {
    constexpr const char* kWalk = "processSqItem";
    while (position < to) {
      std::size_t available = 0;
      const std::uint8_t* bytes = headerAt(window_, position, available);
      if (bytes == nullptr) {
        return fail(kWalk, Fault::Tag, position);
      }
      const DcTag itemTag = loadItemTag(bytes, form);
      if (itemTag == tags::kItemDelimitationItem && loadItemLength(bytes, form) == 0) {
        position = isOpenEnd ? position + kShortHeaderBytes : to;
        return kDcOk;
      }
      if (isOpenEnd && (itemTag == tags::kItem || itemTag == tags::kSequenceDelimitationItem))
        return kDcOk;
      ElemInfo info;
      if (!utilGetElemInfo(bytes, available, form, info)) {
        return fail(kWalk, Fault::ValueLength, position);
      }
      const DcCode code = processElement(openRequest(info.tag), info, position, depth);
      if (code != kDcOk) return code;
    }
    // A value that reaches beyond its item makes everything behind it unreliable.
    if (position > to) return fail(kWalk, Fault::Data, position);
    return kDcOk;
  }

  // The pixel data of an icon image is not the pixel data that a request means.
  [[nodiscard]] DcFieldRequest* openRequest(DcTag tag) const {
    if (tag == tags::kPixelData) return nullptr;
    DcFieldRequest* found = std::lower_bound(
        cursor_, end_, tag,
        [](const DcFieldRequest& request, DcTag wanted) { return request.tag < wanted; });
    const bool isOpen =
        found != end_ && found->tag == tag && found->status == DcFieldStatus::NotFound;
    return isOpen ? found : nullptr;
  }

  bool take(DcFieldRequest& request, std::uint64_t elementAt, std::uint64_t valueAt,
            std::uint64_t length) {
    const auto kept = static_cast<std::size_t>(std::min<std::uint64_t>(length, kFieldValueBytes));
    if (kept > 0) {
      const std::uint8_t* bytes = window_.at(valueAt, kept);
      if (bytes == nullptr) return false;
      std::memcpy(request.value.data(), bytes, kept);
    }
    request.offsetInFile = elementAt;
    request.lengthBytes =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(length, kUndefinedLength));
    request.status = length > kFieldValueBytes ? DcFieldStatus::FoundCut : DcFieldStatus::Found;
    return true;
  }

  // The faults that name a file and an offset.
  enum class Fault { Read, Tag, ValueLength, Data };
  DcCode fail(const char* function, Fault fault, std::uint64_t position) const {
    const auto offset = static_cast<unsigned>(position);
    switch (fault) {
      case Fault::Read:
        dcLog(DcLogLevel::Error, function, "%s - read error at offset 0x%x", name_, offset);
        break;
      case Fault::Tag:
        dcLog(DcLogLevel::Error, function, "%s - tag read error, offset - 0x%x", name_, offset);
        break;
      case Fault::ValueLength:
        dcLog(DcLogLevel::Error, function, "%s - value length read error, offset - 0x%x", name_,
              offset);
        break;
      case Fault::Data:
        dcLog(DcLogLevel::Error, function, "%s - invalid data, offset - 0x%x", name_, offset);
        break;
    }
    return kDcFieldReadError;
  }
  DcCode failAtDepth(const char* function, std::uint64_t position) const {
    dcLog(DcLogLevel::Error, function, "%s - sequences nested deeper than %d levels, offset - 0x%x",
          name_, kMaxNesting, static_cast<unsigned>(position));
    return kDcTooDeep;
  }
  [[nodiscard]] DcCode failAtLength(DcTag tag) const {
    dcLog(DcLogLevel::Error, "parseElements", "%s - error reading Value Length of Tag %08x", name_,
          static_cast<unsigned>(tag));
    return kDcFieldReadError;
  }

  FileWindow& window_;
  DcFieldRequest* cursor_;
  DcFieldRequest* end_;
  const char* name_;
  bool readPixelLength_;
};

DcCode walkFile(FileWindow& window, DcFieldRequest* table, const char* name, bool readPixelLength) {
  for (DcFieldRequest* request = table; request->tag != kLastFieldRequest; ++request) {
    request->status = DcFieldStatus::NotFound;
    request->offsetInFile = ~0ULL;
    request->lengthBytes = 0;
  }
  DcFileMetaInfo metaInfo;
  DataSetPlace place;
  const DcCode metaCode = readMetaInfo(window, metaInfo, place);
  if (!isReadOnAfter(metaCode)) return metaCode;
  FieldWalk walk(window, table, name, readPixelLength);
  if (place.offset > kMetaGroupAt) {
    const DcCode code = walk.parseElements(kMetaGroupAt, place.offset, kParseExplicitLittleForm);
    if (code != kDcOk) return code;
  }
  return walk.parseElements(place.offset, window.size(), parseFormOf(place.syntax));
}

DcCode checkArguments(bool hasFile, const DcFieldRequest* table, const char* name) {
  if (!hasFile || table == nullptr) {
    dcLog(DcLogLevel::Error, kFunction, "%s - null argument passed", name);
    return kDcHelperNullArgument;
  }
  if (table->tag == kLastFieldRequest) {
    dcLog(DcLogLevel::Error, kFunction, "%s - nothing to do", name);
    return kDcHelperNullArgument;
  }
  return kDcOk;
}

DcCode walkOpened(DcFile& file, bool isAtStart, DcFieldRequest* table, const char* name,
                  bool readPixelLength) try {
  const DcLogFile inLog(*name != '\0' ? name : nullptr);
  FileWindow window(file, isAtStart);
  if (!window.measure()) {
    dcLog(DcLogLevel::Error, kFunction, "stat error file '%s'", name);
    return kDcStatFailed;
  }
  return walkFile(window, table, name, readPixelLength);
} catch (const std::bad_alloc&) {
  dcLog(DcLogLevel::Error, kFunction, "File '%s', unable to allocate memory", name);
  return kDcNoMemory;
}

}  // namespace

DcCode libParseFields(DcFile* file, DcFieldRequest* table, const char* name, bool readPixelLength) {
  const char* shownName = name != nullptr ? name : "";
  if (const DcCode code = checkArguments(file != nullptr, table, shownName); code != kDcOk) {
    return code;
  }
  return walkOpened(*file, false, table, shownName, readPixelLength);
}

DcCode libParseFields(const char* fileName, DcFieldRequest* table, bool readPixelLength) {
  const char* shownName = fileName != nullptr ? fileName : "";
  if (const DcCode code = checkArguments(fileName != nullptr, table, shownName); code != kDcOk) {
    return code;
  }
  DcFile file;
  if (!file.open(fileName, DcFile::Mode::Read)) {
    dcLog(DcLogLevel::Error, kFunction, "Error opening file '%s'", fileName);
    return kDcOpenFailed;
  }
  return walkOpened(file, true, table, shownName, readPixelLength);
}

}  // namespace quillon
