// Reads the properties of one DICOM object.
#pragma once

#include <vector>

#include <cstdint>
#include <string_view>

#include "dicomobjects/dicom_object_properties.h"
#include "dicomobjects/dicom_util.h"
#include "foundation/base_item.h"

namespace quillon {

class CDicomObjectProcessor : public CBaseItem {
 public:
  CDicomObjectProcessor();

  // Set: every missing attribute is taken as 0 or empty and the read goes on.
  void SetInstanceUidOptional(bool optional) { instanceUidOptional_ = optional; }

  // What ReadProperties asks of a data set.
  [[nodiscard]] static std::vector<DcTag> ElementsRead();

  // Loads the file into util (its pixel data deferred), then ReadProperties. Fails, with the path
  // in the sentence, for an empty path and a file that cannot be read.
  [[nodiscard]] bool ReadObjectProperties(TextView path, CDicomUtil& util,
                                          CDicomObjectProperties& properties);
  // From a file that util has loaded; its size on the disk is taken as well. The first attribute
  // that is missing (unless optional) or cannot be stored ends it with its sentence, left here.
  // Without pixel data the image values stay at their defaults. What properties held before is
  // gone.
  [[nodiscard]] bool ReadProperties(CDicomUtil& util, CDicomObjectProperties& properties);
  // UIDs of the maker's form (root, key, ".", frame index) give key, frame key and frame number;
  // any other UID is its own key. A missing UID is tolerated with the flag set, and so is one too
  // short to be told from the root; a malformed one never is.
  [[nodiscard]] bool ParseInstanceUid(CDicomUtil& util, CDicomObjectProperties& properties);
  // Bit n is set for an Overlay Bit Position of n (1 to 15) in one of the 16 overlay groups; two
  // groups with one position add up. Always true.
  [[nodiscard]] bool ComputeOverlayMask(CDicomUtil& util, std::uint16_t& mask);

 private:
  [[nodiscard]] bool ReadFileIdentity(CDicomUtil& util, CDicomObjectProperties& properties);
  [[nodiscard]] bool ReadSopClass(CDicomUtil& util, CDicomObjectProperties& properties);
  [[nodiscard]] bool ReadModality(CDicomUtil& util, CDicomObjectProperties& properties);
  [[nodiscard]] bool ReadInstanceNumber(CDicomUtil& util, CDicomObjectProperties& properties);
  [[nodiscard]] bool ReadImage(CDicomUtil& util, CDicomObjectProperties& properties);
  [[nodiscard]] bool ReadPixelDescription(CDicomUtil& util, CDicomImageProperties& image);
  [[nodiscard]] bool ReadPhotometricInterpretation(CDicomUtil& util, CDicomImageProperties& image);
  // Appended to the photometric interpretation of colour images: RGB/0.
  [[nodiscard]] bool ReadPlanarConfiguration(CDicomUtil& util, CDicomImageProperties& image);
  // A missing value is a failure with that message unless the flag is set.
  [[nodiscard]] bool ReadNumber(CDicomUtil& util, DcTag tag, UINT message, std::uint16_t& number);

  bool instanceUidOptional_ = false;
};

}  // namespace quillon
