#include "dicomobjects/dicom_util.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <new>
#include <utility>

#include "dicom/dict.h"
#include "dicom/elem_sq.h"
#include "dicom/parse_fields.h"
#include "dicom/tags.h"
#include "elem_value.h"
#include "foundation/file_handle.h"
#include "header_xml.h"
#include "platform/services.h"
#include "platform/win32.h"
#include "tag_path.h"
#include "value_text.h"

namespace quillon {

namespace {

constexpr std::uint16_t kMetaGroup = dcGroup(tags::kTransferSyntaxUid);

// Tag (and VR) and length of the Pixel Data element stand before its value.
constexpr std::uint64_t kImplicitHeaderBytes = 8;
constexpr std::uint64_t kExplicitHeaderBytes = 12;
// Room for the XML of nearly every header.
constexpr std::size_t kHeaderXmlUnits = 1'081'344;
// Item tag and length of a fragment, always little endian: FE FF 00 E0 and four bytes of length.
constexpr std::uint32_t kItemHeaderBytes = 8;
constexpr std::array<std::uint8_t, 4> kItemTag{0xFE, 0xFF, 0x00, 0xE0};

const DcElemSq* AsSequence(const DcElem* element) {
  if (element == nullptr || !element->isSequence()) return nullptr;
  return dynamic_cast<const DcElemSq*>(element);
}

const DcElemList* ItemOf(const DcElemList& list, DcTag tag, std::uint32_t itemFromOne) {
  const DcElemSq* sequence = AsSequence(list.find(tag));
  if (sequence == nullptr || itemFromOne > sequence->itemCount()) return nullptr;
  return sequence->item(itemFromOne - 1);
}

// What the file says stands before what its dictionary id says: newer classes have no id.
Text UidOf(const std::string& asRead, DcUid id) {
  if (!asRead.empty()) return WidenValue(asRead);
  const char* known = CDicomUtilDict::UidText(id);
  return known == nullptr ? Text() : WidenValue(known);
}

bool IsNative(DcUid transferSyntax) {
  return transferSyntax == DcUid::ImplicitLittleEndian ||
         transferSyntax == DcUid::ExplicitLittleEndian ||
         transferSyntax == DcUid::ExplicitBigEndian ||
         transferSyntax == DcUid::DeflatedExplicitLittleEndian;
}

class SourceFile : public FileHandle {
 public:
  explicit SourceFile(const Text& path)
      : FileHandle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr)) {}

  bool Size(std::uint64_t& sizeBytes) const {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(Get(), &size)) return false;
    sizeBytes = static_cast<std::uint64_t>(size.QuadPart);
    return true;
  }

  bool Seek(std::uint64_t offset) const {
    LARGE_INTEGER distance{};
    distance.QuadPart = static_cast<LONGLONG>(offset);
    return SetFilePointerEx(Get(), distance, nullptr, FILE_BEGIN) != FALSE;
  }

  bool ReadAll(std::uint8_t* bytes, std::uint32_t lengthBytes) const {
    std::uint32_t done = 0;
    while (done < lengthBytes) {
      DWORD got = 0;
      if (!::ReadFile(Get(), bytes + done, lengthBytes - done, &got, nullptr) || got == 0) {
        return false;
      }
      done += got;
    }
    return true;
  }
};

// The item header at `offset`: false when none stands there.
bool ReadItemLength(const Text& path, std::uint64_t offset, std::uint32_t& lengthBytes) {
  CBuffer header;
  if (!CDicomUtil::ReadUNCToBuffer(path, offset, kItemHeaderBytes, header)) return false;
  const std::uint8_t* bytes = header.GetData();
  if (!std::equal(kItemTag.begin(), kItemTag.end(), bytes)) return false;
  lengthBytes = static_cast<std::uint32_t>(bytes[4]) | static_cast<std::uint32_t>(bytes[5]) << 8 |
                static_cast<std::uint32_t>(bytes[6]) << 16 |
                static_cast<std::uint32_t>(bytes[7]) << 24;
  return true;
}

}  // namespace

CDicomUtil::CDicomUtil() { SetClassName(OLESTR("CDicomUtil")); }

CDicomUtil::CDicomUtil(DcElemList& list) : list_(&list) { SetClassName(OLESTR("CDicomUtil")); }

CDicomUtil::~CDicomUtil() = default;

void CDicomUtil::Clear() {
  owned_.reset();
  list_ = nullptr;
  filePath_.clear();
  pixelDataOffset_ = 0;
  pixelDataLength_ = 0;
  pixelDataDeferred_ = false;
  lastResult_ = kDcOk;
  // These can find no memory.
  metaInfo_.clear();
  reading_.clear();
}

bool CDicomUtil::ReadFile(TextView path, bool deferPixelData, const DcTagSet* kept) {
  try {
    Clear();
    if (Load(path, deferPixelData, kept)) return true;
  } catch (const std::bad_alloc&) {
    lastResult_ = kDcNoMemory;
  }
  metaInfo_.clear();
  return false;
}

bool CDicomUtil::Load(TextView path, bool deferPixelData, const DcTagSet* kept) {
  const std::string fileName = NarrowText(path, FileSystemCodePage());
  // A new list each time: it takes the hook that the checking switch of this moment asks for.
  auto elements = std::make_unique<DcElemList>();
  std::uint64_t offset = 0;
  std::uint32_t lengthBytes = 0;
  lastResult_ = deferPixelData ? dirReadFile(fileName.c_str(), metaInfo_, *elements, &offset,
                                             &lengthBytes, &reading_, kept)
                               : dirReadFile(fileName.c_str(), metaInfo_, *elements, &reading_);
  if (lastResult_ != kDcOk) return false;
  Text taken(path);
  if (deferPixelData && offset > 0 && lengthBytes > 0) {
    // The segment is put in its place directly: adding it as a value would open the file again.
    auto placeholder = std::make_unique<DcElem>(tags::kPixelData);
    placeholder->segments().push_back(
        DcElemValueBuf::inFile(fileName, offset, lengthBytes, metaInfo_.transferSyntax));
    elements->add(std::move(placeholder));
    pixelDataOffset_ = offset;
    pixelDataLength_ = lengthBytes;
    pixelDataDeferred_ = true;
  }
  // Nothing fails from here on.
  filePath_ = std::move(taken);
  owned_ = std::move(elements);
  list_ = owned_.get();
  return true;
}

void CDicomUtil::SettleUnknownVrs() {
  if (list_ == nullptr) return;
  for (std::size_t i = 0; i < list_->size(); ++i) {
    const DcElem& element = *list_->at(i);
    if (element.vr() != DcVr::UN || element.segments().size() > 1) continue;
    const DcElemValueBuf value =
        element.segments().empty() ? DcElemValueBuf() : element.segments().front().view();
    if (value.storage() != DcElemValueBuf::Storage::Memory) continue;
    DcVr vr = DcVr::None;
    if (theDictionary().getElemVr(element.group(), element.element(), &vr) != kDcOk ||
        vr == DcVr::UN || vr == DcVr::SQ) {
      continue;
    }
    // The list keeps its order: the new element takes the place of the one with its tag.
    const DcTag tag = element.tag();
    auto settled = std::make_unique<DcElem>(tag, vr);
    settled->setStringHook(list_->stringHook());
    if (settled->parseVal(value.data(), value.lengthBytes(), value.transferSyntax()) ==
        kDcNoMemory) {
      list_->noteLostElement();
      continue;
    }
    list_->remove(list_->find(tag));
    list_->add(std::move(settled));
  }
}

bool CDicomUtil::GetValue(std::string_view tagPath, DicomValue& value, bool asArray) {
  value = std::monostate{};
  const DcElemList* list = list_;
  TagPathCursor path(tagPath);
  TagPathStep step;
  while (list != nullptr && path.Next(step)) {
    if (step.itemFromOne == 0) return ReadFrom(*list, step.tag, value, asArray);
    list = ItemOf(*list, step.tag, step.itemFromOne);
  }
  return false;
}

bool CDicomUtil::GetValue(const TagPlace& place, DicomValue& value, bool asArray) {
  value = std::monostate{};
  const DcElemList* list = list_;
  if (list != nullptr && place.sequence != 0) {
    list = ItemOf(*list, place.sequence, place.itemFromOne);
  }
  return list != nullptr && ReadFrom(*list, place.tag, value, asArray);
}

bool CDicomUtil::ReadFrom(const DcElemList& list, DcTag tag, DicomValue& value, bool asArray) {
  if (dcGroup(tag) == kMetaGroup && &list == list_) return GetMetaValue(tag, value);
  DcElem* element = list.find(tag);
  if (element == nullptr) return false;
  return element->isSequence() || ReadElementValue(*element, ValueVr(*element), asArray, value);
}

bool CDicomUtil::GetMetaValue(DcTag tag, DicomValue& value) const {
  Text text;
  switch (tag) {
    case tags::kFileMetaInformationVersion:
      value = metaInfo_.version;
      return true;
    case tags::kMediaStorageSopClassUid:
      GetSopClassUid(text);
      break;
    case tags::kMediaStorageSopInstanceUid:
      GetSopInstanceUid(text);
      break;
    case tags::kTransferSyntaxUid:
      GetTransferSyntaxUid(text);
      break;
    case tags::kImplementationClassUid:
      GetImplementationClassUid(text);
      break;
    case tags::kImplementationVersionName:
      GetImplementationVersionName(text);
      break;
    case tags::kSourceApplicationEntityTitle:
      GetSourceAeTitle(text);
      break;
    case tags::kPrivateInformationCreatorUid:
      GetPrivateCreatorUid(text);
      break;
    default:
      return false;
  }
  value = std::move(text);
  return true;
}

DcVr CDicomUtil::ValueVr(const DcElem& element) const {
  std::uint16_t bitsAllocated = 0;  // when it is not there
  if (element.resolvedVr() == DcVr::OX) {
    static_cast<void>(list_->getValue(tags::kBitsAllocated, bitsAllocated));
  }
  return ReadableVr(element, bitsAllocated);
}

bool CDicomUtil::GetHeaderXml(Text& out, std::uint32_t maxValues, bool includePixelData,
                              const HeaderOptions& options) {
  out.clear();
  if (list_ == nullptr) return false;
  out.reserve(kHeaderXmlUnits);
  return HeaderXml(*this, out, maxValues, includePixelData, options).Write(*list_);
}

bool CDicomUtil::CopySequence(DcTag tag, CDicomUtil& target) {
  if (list_ == nullptr || target.list_ == nullptr) return false;
  const DcElemSq* sequence = AsSequence(list_->find(tag));
  return sequence != nullptr && target.list_->add(sequence->copy()) != nullptr;
}

bool CDicomUtil::ReadUNCToBuffer(TextView path, std::uint64_t offset, std::uint32_t lengthBytes,
                                 CBuffer& buffer) {
  const SourceFile file{Text(path)};
  std::uint64_t sizeBytes = 0;
  if (!file.IsOpen() || !file.Size(sizeBytes) || offset > sizeBytes || !file.Seek(offset)) {
    return false;
  }
  const std::uint64_t remaining = sizeBytes - offset;
  const std::uint64_t wanted = lengthBytes == 0 ? remaining : lengthBytes;
  // Compared before anything is allocated: a length from a file may be any number.
  if (wanted > remaining || wanted > UINT32_MAX) return false;
  if ((lengthBytes == 0 || buffer.IsEmpty()) &&
      buffer.Allocate(static_cast<std::uint32_t>(wanted)) != 0) {
    return false;
  }
  const auto expected = std::min(static_cast<std::uint32_t>(wanted), buffer.GetSize());
  return file.ReadAll(buffer.GetData(), expected);
}

void CDicomUtil::GetSopClassUid(Text& out) const {
  out = UidOf(metaInfo_.sopClassUid, metaInfo_.sopClass);
}

void CDicomUtil::GetTransferSyntaxUid(Text& out) const {
  out = UidOf(metaInfo_.transferSyntaxUid, metaInfo_.transferSyntax);
}

// The parser takes the meta information's word for it.
void CDicomUtil::GetDataSetTransferSyntaxUid(Text& out) const { GetTransferSyntaxUid(out); }

void CDicomUtil::GetSopInstanceUid(Text& out) const { out = WidenValue(metaInfo_.sopInstanceUid); }

void CDicomUtil::GetImplementationClassUid(Text& out) const {
  out = WidenValue(metaInfo_.implementationClassUid);
}

void CDicomUtil::GetImplementationVersionName(Text& out) const {
  out = WidenValue(metaInfo_.implementationVersionName);
}

void CDicomUtil::GetSourceAeTitle(Text& out) const { out = WidenValue(metaInfo_.sourceAeTitle); }

void CDicomUtil::GetPrivateCreatorUid(Text& out) const {
  out = WidenValue(metaInfo_.privateCreatorUid);
}

bool CDicomUtil::HasNoPixelData() const {
  return !pixelDataDeferred_ && (list_ == nullptr || !list_->contains(tags::kPixelData));
}

bool CDicomUtil::GetPixelDataLength(std::uint32_t& lengthBytes) const {
  lengthBytes = pixelDataLength_;
  if (pixelDataDeferred_) return true;
  const DcElem* element = list_ == nullptr ? nullptr : list_->find(tags::kPixelData);
  if (element == nullptr) return false;
  for (const DcElemValueBuf& segment : element->segments()) lengthBytes += segment.lengthBytes();
  return true;
}

bool CDicomUtil::GetDeferredPixelData(std::uint64_t& offset, std::uint32_t& lengthBytes) const {
  offset = pixelDataOffset_;
  lengthBytes = pixelDataLength_;
  return pixelDataDeferred_;
}

// Pixel data that was loaded came without its place in the file, which is looked up there.
bool CDicomUtil::LocatePixelData(std::uint64_t& offset, std::uint32_t& lengthBytes) const {
  if (GetDeferredPixelData(offset, lengthBytes)) return true;
  if (filePath_.empty() || HasNoPixelData()) return false;
  std::array<DcFieldRequest, 2> requests;
  requests[0].tag = tags::kPixelData;
  requests[1].tag = kLastFieldRequest;
  const std::string fileName = NarrowText(filePath_, FileSystemCodePage());
  if (libParseFields(fileName.c_str(), requests.data(), /*readPixelLength=*/false) != kDcOk ||
      requests[0].status != DcFieldStatus::PixelDataNotRead) {
    return false;
  }
  offset = requests[0].offsetInFile + (metaInfo_.transferSyntax == DcUid::ImplicitLittleEndian
                                           ? kImplicitHeaderBytes
                                           : kExplicitHeaderBytes);
  return GetPixelDataLength(lengthBytes);
}

bool CDicomUtil::GetPixelDataPosition(std::uint64_t& offset, std::uint32_t& lengthBytes) const {
  if (!LocatePixelData(offset, lengthBytes)) return false;
  std::uint32_t itemBytes = 0;
  if (IsNative(metaInfo_.transferSyntax) || !ReadItemLength(filePath_, offset, itemBytes)) {
    return lengthBytes != kUndefinedLength;
  }
  // The first item is the basic offset table; the first fragment follows it.
  offset += kItemHeaderBytes + std::uint64_t{itemBytes};
  if (!ReadItemLength(filePath_, offset, lengthBytes)) return false;
  offset += kItemHeaderBytes;
  return true;
}

}  // namespace quillon
