#include "dicom/read_file.h"

#include <algorithm>
#include <new>
#include <string>

#include "dicom/dict.h"
#include "dicom/file.h"
#include "dicom/log.h"
#include "dicom/tags.h"
#include "parse_list.h"
#include "parse_meta.h"
#include "parse_walk.h"
#include "parse_window.h"

namespace quillon {
namespace {

constexpr const char* kReadFunction = "dirReadFile";
constexpr double kBytesPerMegabyte = 1024.0 * 1024.0;

DcCode nullFileName(const char* function) {
  dcLog(DcLogLevel::Error, function, "Null argument passed");
  return kDcFileNullArgument;
}

DcCode statError(const char* function, const char* fileName) {
  dcLog(DcLogLevel::Error, function, "stat error file '%s'", fileName);
  return kDcStatFailed;
}

DcCode loadError(DcCode code, const char* function, const char* fileName) {
  if (code == kDcNoMemory) {
    dcLog(DcLogLevel::Error, function, "File '%s', unable to allocate memory", fileName);
  } else {
    dcLog(DcLogLevel::Error, function, "Error reading file '%s'", fileName);
  }
  return code;
}

struct PixelData {
  bool isFound = false;
  std::uint64_t elementAt = 0;
  std::uint64_t valueAt = kNoPixelData;
  std::uint32_t valueLength = 0;
  bool isCut = false;
  // Where stepping over the elements failed; nothing behind it could be searched.
  bool isFaulty = false;
  std::uint64_t faultAt = 0;
};

// Over the elements that cannot be the pixel data and whose values are in memory already.
void passInMemory(const FileWindow& window, unsigned form, std::uint64_t& position) {
  std::size_t count = 0;
  const std::uint8_t* bytes = window.inMemory(position, count);
  if (bytes == nullptr || form != kParseExplicitLittleForm) return;
  DcTag lastTag = 0;
  position += passPlainElements(bytes, 0, count, nullptr, lastTag);
}

// Steps over the elements of the data set. Pixel data of icon images does not count: it stands
// inside a sequence.
PixelData findPixelData(FileWindow& window, const DataSetPlace& place) {
  PixelData pixelData;
  const unsigned form = parseFormOf(place.syntax);
  std::uint64_t position = place.offset;
  while (true) {
    passInMemory(window, form, position);
    std::size_t available = 0;
    const std::uint8_t* bytes = headerAt(window, position, available);
    if (bytes == nullptr) break;
    ElemInfo info;
    const bool isWhole = utilGetElemInfo(bytes, available, form, info);
    if (info.tag == tags::kPixelData) {
      pixelData.isFound = true;
      pixelData.elementAt = position;
      pixelData.valueAt =
          position +
          (place.syntax == DcUid::ImplicitLittleEndian ? kShortHeaderBytes : kLongHeaderBytes);
      pixelData.valueLength = isWhole ? info.valueLength : 0;
      pixelData.isCut =
          !isWhole || (info.valueLength != kUndefinedLength &&
                       info.valueLength > window.size() - position - info.headerBytes);
      return pixelData;
    }
    if (!isWhole) break;
    if (walkValue(window, position, info, 0) != kDcOk) {
      pixelData.isFaulty = true;
      pixelData.faultAt = position;
      break;
    }
  }
  return pixelData;
}

// Everything in front of the pixel data. Where the structure is broken the parser is to meet the
// same fault: it gets the whole file, or of a very large one what it takes.
std::uint64_t endOfHeader(const FileWindow& window, const PixelData& pixelData) {
  if (pixelData.isFound) return pixelData.elementAt;
  if (!pixelData.isFaulty || window.size() <= kMaxFileBytes) return window.size();
  return std::min<std::uint64_t>(window.size(), pixelData.faultAt + kLongHeaderBytes);
}

DcCode parseDataSet(FileWindow& window, const char* fileName, const DataSetPlace& place,
                    std::uint64_t end, DcElemList& elements, const DcTagSet* kept) {
  const std::uint64_t start = std::min(place.offset, end);
  const std::uint8_t* bytes = nullptr;
  if (const DcCode code = window.load(start, end, bytes); code != kDcOk) {
    return loadError(code, kReadFunction, fileName);
  }
  std::size_t consumed = 0;
  return processElemListDM(elements, bytes, static_cast<std::size_t>(end - start), place.syntax,
                           parseFormOf(place.syntax), consumed, start, 0, kept);
}

void takeSopUids(const DcElemList& elements, DcFileMetaInfo& metaInfo) {
  const auto textOf = [&elements](DcTag tag) {
    const DcElem* found = elements.find(tag);
    return found != nullptr ? found->stringValue(0) : std::nullopt;
  };
  if (metaInfo.sopClassUid.empty()) {
    if (const auto uid = textOf(tags::kSopClassUid)) {
      metaInfo.sopClassUid = *uid;
      metaInfo.sopClass = dcUidOf(metaInfo.sopClassUid);
    }
  }
  if (metaInfo.sopInstanceUid.empty()) {
    if (const auto uid = textOf(tags::kSopInstanceUid)) metaInfo.sopInstanceUid = *uid;
  }
}

// A file and what stands in front of its data set.
class OpenedFile {
 public:
  // The code with which reading must end, kDcOk when it goes on: also after kDcNotDicom, which
  // metaCode keeps. source: null for a file of that name. reading may be null.
  DcCode open(DcByteSource* source, const char* fileName, const char* function,
              DcFileMetaInfo& metaInfo, DcFileReading* reading);

  FileWindow& window() { return window_; }
  [[nodiscard]] const DataSetPlace& place() const { return place_; }
  [[nodiscard]] DcCode metaCode() const { return metaCode_; }

 private:
  DcFile file_;
  FileWindow window_{file_, true};
  DataSetPlace place_;
  DcCode metaCode_ = kDcOk;
};

DcCode OpenedFile::open(DcByteSource* source, const char* fileName, const char* function,
                        DcFileMetaInfo& metaInfo, DcFileReading* reading) {
  if (reading != nullptr) reading->clear();
  if (source != nullptr) {
    file_.open(*source);
  } else {
    metaCode_ = openToRead(file_, fileName, function);
  }
  if (metaCode_ == kDcOk && !window_.measure()) metaCode_ = statError(function, fileName);
  const bool isOpen = metaCode_ == kDcOk;
  if (isOpen) metaCode_ = readMetaInfo(window_, metaInfo, place_);
  if (reading != nullptr) {
    reading->file = window_.status();
    reading->hasMagic = place_.hasMagic;
    reading->metaCode = metaCode_;
    if (isOpen) reading->metaInfo = metaInfo;
    reading->metaTags = place_.metaTags;
  }
  return isReadOnAfter(metaCode_) ? kDcOk : metaCode_;
}

// The whole file, or with pixelData what stands before it.
DcCode readFile(DcByteSource* source, const char* fileName, DcFileMetaInfo& metaInfo,
                DcElemList& elements, DcFileReading* reading, PixelData* pixelData,
                const DcTagSet* kept) try {
  if (fileName == nullptr) return nullFileName(kReadFunction);
  const DcLogFile inLog(fileName);
  OpenedFile file;
  const DcCode metaCode = file.open(source, fileName, kReadFunction, metaInfo, reading);
  if (metaCode != kDcOk) return metaCode;
  FileWindow& window = file.window();
  const DataSetPlace& place = file.place();
  PixelData found;
  if (pixelData != nullptr) {
    found = findPixelData(window, place);
    if (window.fault() != kDcOk) return loadError(window.fault(), kReadFunction, fileName);
    if (reading != nullptr) reading->isPixelDataCut = found.isCut;
  } else if (window.size() > kMaxFileBytes) {
    dcLog(DcLogLevel::Error, kReadFunction, "File '%s', size exceeds limit of %g Mbytes", fileName,
          static_cast<double>(kMaxFileBytes) / kBytesPerMegabyte);
    return kDcFileTooLarge;
  }
  elements.clear();
  const std::uint64_t end = pixelData != nullptr ? endOfHeader(window, found) : window.size();
  const DcCode code = parseDataSet(window, fileName, place, end, elements, kept);
  // A whole file with meta information is believed in what that leaves out.
  if (pixelData != nullptr || place.offset <= kMetaGroupAt) takeSopUids(elements, metaInfo);
  if (pixelData != nullptr) *pixelData = found;
  return code;
} catch (const std::bad_alloc&) {
  return loadError(kDcNoMemory, kReadFunction, fileName);
}

DcCode readHeader(DcByteSource* source, const char* fileName, DcFileMetaInfo& metaInfo,
                  DcElemList& elements, std::uint64_t* pixelValueOffset,
                  std::uint32_t* pixelValueLength, DcFileReading* reading, const DcTagSet* kept) {
  PixelData pixelData;
  const DcCode code = readFile(source, fileName, metaInfo, elements, reading, &pixelData, kept);
  if (pixelValueOffset != nullptr) *pixelValueOffset = pixelData.valueAt;
  if (pixelValueLength != nullptr) *pixelValueLength = pixelData.valueLength;
  return code;
}

}  // namespace

void DcFileReading::clear() {
  static const DcFileReading fresh;
  *this = fresh;
}

DcCode dirReadFileMetaInfo(const char* fileName, DcFileMetaInfo& metaInfo,
                           std::uint64_t* dataSetOffset) try {
  constexpr const char* kFunction = "dirReadFileMetaInfo";
  if (dataSetOffset != nullptr) *dataSetOffset = 0;
  if (fileName == nullptr) return nullFileName(kFunction);
  const DcLogFile inLog(fileName);
  OpenedFile file;
  static_cast<void>(
      file.open(nullptr, fileName, kFunction, metaInfo, nullptr));  // metaCode keeps more
  if (dataSetOffset != nullptr) *dataSetOffset = file.place().offset;
  return file.metaCode();
} catch (const std::bad_alloc&) {
  return loadError(kDcNoMemory, "dirReadFileMetaInfo", fileName);
}

DcCode dirReadFile(const char* fileName, DcFileMetaInfo& metaInfo, DcElemList& elements,
                   DcFileReading* reading) {
  return readFile(nullptr, fileName, metaInfo, elements, reading, nullptr, nullptr);
}

DcCode dirReadFile(const char* fileName, DcFileMetaInfo& metaInfo, DcElemList& elements,
                   std::uint64_t* pixelValueOffset, std::uint32_t* pixelValueLength,
                   DcFileReading* reading, const DcTagSet* kept) {
  return readHeader(nullptr, fileName, metaInfo, elements, pixelValueOffset, pixelValueLength,
                    reading, kept);
}

DcCode dirReadFile(DcByteSource& source, const char* name, DcFileMetaInfo& metaInfo,
                   DcElemList& elements, std::uint64_t* pixelValueOffset,
                   std::uint32_t* pixelValueLength, DcFileReading* reading, const DcTagSet* kept) {
  return readHeader(&source, name, metaInfo, elements, pixelValueOffset, pixelValueLength, reading,
                    kept);
}

DcCode utilGetSqItemValLen(const std::uint8_t* lengthField, std::uint32_t remaining,
                           DcUid transferSyntax, std::uint32_t* valueLength,
                           std::uint32_t* trailerLength) {
  constexpr const char* kFunction = "utilGetSqItemValLen";
  if (lengthField == nullptr || valueLength == nullptr || trailerLength == nullptr) {
    dcLog(DcLogLevel::Error, kFunction, "Null argument passed");
    return kDcItemLengthUnknown;
  }
  *valueLength = 0;
  *trailerLength = 0;
  if (const DcCode code = checkTransferSyntax(transferSyntax, kDcItemLengthUnknown);
      code != kDcOk) {
    return code;
  }
  const std::uint32_t declared = load32(lengthField, isBigEndian(transferSyntax));
  if (declared != kUndefinedLength) {
    if (declared > remaining) {
      dcLog(DcLogLevel::Error, kFunction,
            "Value length field %d(0x%x) exceeds buffer length %d(0x%x)",
            static_cast<int>(declared), static_cast<unsigned>(declared),
            static_cast<int>(remaining), static_cast<unsigned>(remaining));
      return kDcItemLengthUnknown;
    }
    *valueLength = declared;
    return kDcOk;
  }
  MemorySource source(lengthField + sizeof declared, remaining);
  std::uint64_t position = 0;
  bool isDelimited = false;
  const DcCode code = walkItem(source, position, parseFormOf(transferSyntax), 0, isDelimited);
  if (code != kDcOk || !isDelimited) {
    dcLog(DcLogLevel::Error, kFunction, "No item delimitation item in %d(0x%x) bytes",
          static_cast<int>(remaining), static_cast<unsigned>(remaining));
    return kDcItemLengthUnknown;
  }
  *valueLength = static_cast<std::uint32_t>(position - kShortHeaderBytes);
  *trailerLength = kShortHeaderBytes;
  return kDcOk;
}

}  // namespace quillon
