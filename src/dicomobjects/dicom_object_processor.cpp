#include "dicomobjects/dicom_object_processor.h"

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

#include "dicom/tags.h"
#include "dicomobjects/instance_uid.h"
#include "value_text.h"

namespace quillon {

namespace {

constexpr TextView kMakerCrClass = OLESTR("1.2.392.876543.9125.1.1.2");
constexpr std::array<TextView, 3> kUncompressed{
    OLESTR("1.2.840.10008.1.2.1"), OLESTR("1.2.840.10008.1.2"), OLESTR("1.2.840.10008.1.2.2")};
constexpr std::size_t kMaxUidChars = 1024;
constexpr unsigned kFirstOverlayGroup = 0x6000;
constexpr unsigned kOverlayGroups = 16;  // 6000, 6002 ... 601E
constexpr std::array kElementsRead{tags::kSopClassUid,
                                   tags::kSopInstanceUid,
                                   tags::kModality,
                                   tags::kInstanceNumber,
                                   tags::kSamplesPerPixel,
                                   tags::kPhotometricInterpretation,
                                   tags::kPlanarConfiguration,
                                   tags::kNumberOfFrames,
                                   tags::kRows,
                                   tags::kColumns,
                                   tags::kBitsAllocated,
                                   tags::kBitsStored,
                                   tags::kPixelRepresentation,
                                   tags::kPixelPaddingValue};
constexpr unsigned kMaskBits = std::numeric_limits<std::uint16_t>::digits;

constexpr DcTag OverlayBitPosition(unsigned index) {
  const auto group = static_cast<std::uint16_t>(kFirstOverlayGroup + 2 * index);
  return dcTag(group, dcElement(tags::kOverlayBitPosition));
}

// False when the element is absent or has no value that could be a text; an empty text is one.
bool ReadText(CDicomUtil& util, DcTag tag, Text& text) {
  DicomValue value;
  text.clear();
  return util.GetValue(tag, value, /*asArray=*/false) && DicomValueToText(value, text);
}

// The same, but an element without a value counts as missing.
bool ReadFilledText(CDicomUtil& util, DcTag tag, Text& text) {
  return ReadText(util, tag, text) && !text.empty();
}

// Values that may be signed or not come as text; a negative one keeps its bits.
bool ReadUint16(CDicomUtil& util, DcTag tag, std::uint16_t& number) {
  DicomValue value;
  number = 0;
  if (!util.GetValue(tag, value, /*asArray=*/false)) return false;
  return std::visit(
      [&number](const auto& held) {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_integral_v<Held>) {
          number = static_cast<std::uint16_t>(held);
          return true;
        } else if constexpr (std::is_same_v<Held, Text>) {
          number = static_cast<std::uint16_t>(LeadingNumber(held));
          return !held.empty();
        } else {
          return false;
        }
      },
      value);
}

void ReadNumberOfFrames(CDicomUtil& util, CDicomImageProperties& image) {
  Text frames;
  image.numberOfFrames = 1;
  if (ReadFilledText(util, tags::kNumberOfFrames, frames)) {
    image.numberOfFrames = static_cast<std::uint32_t>(std::max(LeadingNumber(frames), 0));
  }
}

// Of encapsulated pixel data that was deferred, the value as declared: its first fragment is looked
// up in the file by whoever needs it, not for every file that is added.
void ReadPixelDataPosition(const CDicomUtil& util, CDicomImageProperties& image) {
  if (!util.GetDeferredPixelData(image.pixelDataOffset, image.pixelDataLength) &&
      !util.GetPixelDataPosition(image.pixelDataOffset, image.pixelDataLength)) {
    image.pixelDataOffset = 0;
    static_cast<void>(util.GetPixelDataLength(image.pixelDataLength));
  }
}

}  // namespace

CDicomObjectProcessor::CDicomObjectProcessor() { SetClassName(OLESTR("CDicomObjectProcessor")); }

std::vector<DcTag> CDicomObjectProcessor::ElementsRead() {
  std::vector<DcTag> tags(kElementsRead.begin(), kElementsRead.end());
  for (unsigned i = 0; i < kOverlayGroups; ++i) tags.push_back(OverlayBitPosition(i));
  return tags;
}

bool CDicomObjectProcessor::ReadObjectProperties(TextView path, CDicomUtil& util,
                                                 CDicomObjectProperties& properties) {
  if (path.empty()) return Fail(kMsgFilenameInvalid);
  if (!util.ReadFile(path, /*deferPixelData=*/true)) return Fail(kMsgCannotReadDicomFile, {path});
  return ReadProperties(util, properties);
}

bool CDicomObjectProcessor::ReadProperties(CDicomUtil& util, CDicomObjectProperties& properties) {
  properties.Clear();
  if (!ReadFileIdentity(util, properties) || !ReadSopClass(util, properties) ||
      !ParseInstanceUid(util, properties)) {
    return false;
  }
  // None of these is required.
  Text text;
  util.GetTransferSyntaxUid(text);
  static_cast<void>(properties.SetTransferSyntax(text));
  util.GetDataSetTransferSyntaxUid(text);
  static_cast<void>(properties.SetDataSetTransferSyntaxUid(text));
  util.GetImplementationVersionName(text);
  static_cast<void>(properties.SetImplementationVersionName(text));
  util.GetImplementationClassUid(text);
  static_cast<void>(properties.SetImplementationClassUid(text));

  return ReadModality(util, properties) && ReadInstanceNumber(util, properties) &&
         (util.HasNoPixelData() || ReadImage(util, properties));
}

bool CDicomObjectProcessor::ReadFileIdentity(CDicomUtil& util, CDicomObjectProperties& properties) {
  Text path;
  util.GetFilePath(path);
  if (path.empty()) return Fail(kMsgFilenameInvalid);
  if (!properties.SetFileName(path)) return Fail(kMsgCannotSetImageFilename, {path});
  // Only the low half has its place there.
  properties.SetFileSize(static_cast<std::uint32_t>(util.GetReading().file.sizeBytes));
  return true;
}

bool CDicomObjectProcessor::ReadSopClass(CDicomUtil& util, CDicomObjectProperties& properties) {
  Text uid;
  if (ReadFilledText(util, tags::kSopClassUid, uid)) {
    static_cast<void>(properties.SetSopClassUid(uid));
    return true;
  }
  return instanceUidOptional_ || Fail(kMsgSopClassUidInvalid, {properties.FileName()});
}

bool CDicomObjectProcessor::ReadModality(CDicomUtil& util, CDicomObjectProperties& properties) {
  Text modality;
  if (ReadFilledText(util, tags::kModality, modality)) {
    static_cast<void>(properties.SetModality(modality));
    return true;
  }
  return instanceUidOptional_ || Fail(kMsgModalityPropertyInvalid);
}

// An image may have an empty number, so only an absent one is missing.
bool CDicomObjectProcessor::ReadInstanceNumber(CDicomUtil& util,
                                               CDicomObjectProperties& properties) {
  Text number;
  const bool found = ReadText(util, tags::kInstanceNumber, number);
  if (!found && instanceUidOptional_) return true;
  CDicomImageProperties* image = found ? properties.Image() : nullptr;
  if (image != nullptr && image->SetInstanceNumber(number)) return true;
  return Fail(kMsgImageNumberInvalid, {properties.FileName()});
}

bool CDicomObjectProcessor::ReadImage(CDicomUtil& util, CDicomObjectProperties& properties) {
  CDicomImageProperties* image = properties.Image();
  if (image == nullptr) {
    return instanceUidOptional_ || Fail(kMsgNumberOfFramesInvalid, {properties.FileName()});
  }
  if (!ReadPixelDescription(util, *image)) return false;
  image->isCompressed = std::ranges::find(kUncompressed, properties.DataSetTransferSyntaxUid()) ==
                        kUncompressed.end();
  ReadPixelDataPosition(util, *image);
  image->isMakerCr = properties.SopClassUid() == kMakerCrClass;
  if (!ComputeOverlayMask(util, image->overlayMask)) return false;
  ReadNumberOfFrames(util, *image);
  return true;
}

bool CDicomObjectProcessor::ReadNumber(CDicomUtil& util, DcTag tag, UINT message,
                                       std::uint16_t& number) {
  return ReadUint16(util, tag, number) || instanceUidOptional_ || Fail(message);
}

bool CDicomObjectProcessor::ReadPixelDescription(CDicomUtil& util, CDicomImageProperties& image) {
  if (!ReadNumber(util, tags::kBitsAllocated, kMsgBitsAllocatedInvalid, image.bitsAllocated))
    return false;
  image.hasPixelPaddingValue = ReadUint16(util, tags::kPixelPaddingValue, image.pixelPaddingValue);
  return ReadNumber(util, tags::kRows, kMsgRowsInvalid, image.rows) &&
         ReadNumber(util, tags::kColumns, kMsgColumnsInvalid, image.columns) &&
         ReadNumber(util, tags::kBitsStored, kMsgBitsStoredInvalid, image.bitsStored) &&
         ReadPhotometricInterpretation(util, image) &&
         ReadNumber(util, tags::kPixelRepresentation, kMsgPixelRepresentationInvalid,
                    image.pixelRepresentation) &&
         ReadNumber(util, tags::kSamplesPerPixel, kMsgSamplesPerPixelInvalid,
                    image.samplesPerPixel) &&
         ReadPlanarConfiguration(util, image);
}

bool CDicomObjectProcessor::ReadPhotometricInterpretation(CDicomUtil& util,
                                                          CDicomImageProperties& image) {
  Text text;
  if (ReadFilledText(util, tags::kPhotometricInterpretation, text) &&
      image.SetPhotometricInterpretation(text)) {
    return true;
  }
  return instanceUidOptional_ || Fail(kMsgPhotometricInterpretationInvalid);
}

bool CDicomObjectProcessor::ReadPlanarConfiguration(CDicomUtil& util,
                                                    CDicomImageProperties& image) {
  if (image.samplesPerPixel <= 1) return true;
  ReadUint16(util, tags::kPlanarConfiguration, image.planarConfiguration);
  Text text = image.PhotometricInterpretation();
  text.append(1, OLESTR('/')).append(NumberText(image.planarConfiguration));
  return image.SetPhotometricInterpretation(text) || instanceUidOptional_ ||
         Fail(kMsgPhotometricInterpretationInvalid);
}

bool CDicomObjectProcessor::ParseInstanceUid(CDicomUtil& util, CDicomObjectProperties& properties) {
  CDicomImageProperties* image = properties.Image();
  if (image == nullptr) return FailAs(properties);
  Text uid;
  if (!ReadFilledText(util, tags::kSopInstanceUid, uid)) {
    if (!instanceUidOptional_) return Fail(kMsgInstanceUidInvalid);
    properties.ClearInstance();
    image->isMakerInstanceUid = false;
    image->frameNumber = 1;
    return true;
  }
  // No real UID needs to be longer than the maker's root, and one that is not cannot have its form.
  // Where a file is only to be filed and not to be told apart from the maker's, it must not be
  // lost over that: with the flag set a short UID is its own key.
  InstanceUidParts parts;
  if (uid.size() > kMaxUidChars || !ParseInstanceUidText(uid, instanceUidOptional_, parts)) {
    return Fail(kMsgInstanceUidInvalid);
  }
  if (!properties.SetInstanceKey(parts.key) || !properties.SetFrameKey(FrameKeyOf(parts)) ||
      !properties.SetInstanceUid(uid)) {
    return Fail(kMsgImageKeyInvalid);
  }
  image->isMakerInstanceUid = parts.isMakerForm;
  image->frameNumber = parts.frameIndex + 1;
  return true;
}

bool CDicomObjectProcessor::ComputeOverlayMask(CDicomUtil& util, std::uint16_t& mask) {
  std::uint32_t sum = 0;
  for (unsigned i = 0; i < kOverlayGroups; ++i) {
    std::uint16_t position = 0;
    if (ReadUint16(util, OverlayBitPosition(i), position) && position > 0 && position < kMaskBits) {
      sum += 1U << position;
    }
  }
  mask = static_cast<std::uint16_t>(sum);
  return true;
}

}  // namespace quillon
