// The pixel description of one image object.
#pragma once

#include <cstdint>

#include "foundation/base_item.h"
#include "foundation/shared_text.h"

namespace quillon {

class CDicomImageProperties : public CBaseItem {
 public:
  CDicomImageProperties();
  // Texts to empty, values to their defaults.
  void Clear();
  // As CDicomObjectProperties' own.
  void ExpectLike(const CDicomImageProperties* other) { like_ = other; }

  std::uint16_t bitsAllocated = 0;
  std::uint16_t rows = 0;
  std::uint16_t columns = 0;
  std::uint16_t bitsStored = 0;
  std::uint16_t samplesPerPixel = 0;
  std::uint16_t pixelRepresentation = 0;
  std::uint16_t planarConfiguration = 0;
  std::uint16_t pixelPaddingValue = 0;
  bool hasPixelPaddingValue = false;
  bool isCompressed = false;
  bool isMakerInstanceUid = false;
  bool isMakerCr = false;
  std::uint16_t overlayMask = 0;
  std::uint32_t numberOfFrames = 1;
  std::uint32_t frameNumber = 1;  // from 1
  std::uint32_t pixelDataLength = 0;
  std::uint64_t pixelDataOffset = 0;

  // At most 1,024 characters; a refused text leaves the old one.
  [[nodiscard]] bool SetPhotometricInterpretation(TextView text);
  [[nodiscard]] bool SetInstanceNumber(TextView text);
  [[nodiscard]] const Text& PhotometricInterpretation() const {
    return photometricInterpretation_.Get();
  }
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_; }

 private:
  const CDicomImageProperties* like_ = nullptr;
  SharedText photometricInterpretation_;
  Text instanceNumber_;
};

}  // namespace quillon
