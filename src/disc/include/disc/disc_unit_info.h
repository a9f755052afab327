// The properties of one optical drive, with the medium in it, and the list of all drives.
#pragma once

#include <vector>

#include "disc/current_disc_media.h"

namespace quillon {

// What a drive is found by; the numbers are those that the disc writer takes.
enum class RecorderIdType : std::int32_t {
  LegacyDeviceNumber = 0,
  Manufacturer = 1,  // the device name
  UniqueId = 2,
  VolumePath = 3,
  VolumeName = 4,
};

class CDiscUnitInfo : public CImapiItem, public CKeyedItem {
 public:
  CDiscUnitInfo();
  CDiscUnitInfo(const CDiscUnitInfo& other);
  CDiscUnitInfo& operator=(const CDiscUnitInfo& other);

  void Reset();
  // Reads the drive, and with queryMedia its medium (forceAccess: locked by force). False resets
  // and leaves a sentence.
  bool Query(const Text& uniqueId, bool queryMedia, bool forceAccess);
  // Visits the drives, which have just been enumerated, and reads the first that matches exactly,
  // with the iterator's flags. False without an error text when none matches.
  bool Find(CDiscMaster2Iterator& drives, RecorderIdType type, const Text& identifier);

  // "%s %s (Revision: %s)" with vendor, product and revision, each trimmed. False, with a sentence,
  // when nothing at all is known.
  bool GetDeviceName(Text& out);
  // The same for messages: "current optical disc device" when there is no device name.
  [[nodiscard]] Text DisplayName() const;

  [[nodiscard]] bool IsDataFormatSupported() const { return isDataFormatSupported_; }
  [[nodiscard]] bool CanLoadMedia() const { return canLoadMedia_; }
  [[nodiscard]] LONG LegacyDeviceNumber() const { return legacyDeviceNumber_; }
  [[nodiscard]] bool GetUniqueId(Text& out) const;
  [[nodiscard]] const Text& VendorId() const { return vendorId_; }
  [[nodiscard]] const Text& ProductId() const { return productId_; }
  [[nodiscard]] const Text& ProductRevision() const { return productRevision_; }
  [[nodiscard]] const Text& VolumeName() const { return volumeName_; }
  [[nodiscard]] const std::vector<Text>& VolumePaths() const { return volumePaths_; }
  [[nodiscard]] const CImapi2EnumList& SupportedFeaturePages() const { return supportedFeatures_; }
  [[nodiscard]] const CImapi2EnumList& CurrentFeaturePages() const { return currentFeatures_; }
  [[nodiscard]] const CImapi2EnumList& SupportedMediaTypes() const { return supportedMediaTypes_; }
  [[nodiscard]] const CImapi2EnumList& SupportedModePages() const { return supportedModePages_; }
  [[nodiscard]] const CImapi2EnumList& SupportedProfiles() const { return supportedProfiles_; }
  [[nodiscard]] const CImapi2EnumList& CurrentProfiles() const { return currentProfiles_; }
  [[nodiscard]] const CCurrentDiscMedia& CurrentMedia() const { return currentMedia_; }
  // A copy: "Cannot copy the current physical media information." when that fails.
  bool GetCurrentMedia(CCurrentDiscMedia& out);

 private:
  bool ReadAll(const Text& uniqueId, bool queryMedia, bool forceAccess);
  bool ReadTexts(CDiscRecorder2& recorder);
  bool ReadCapabilities(CDiscRecorder2& recorder, CDiscFormat2Data& format);
  template <typename Source>
  bool ReadCodes(Source& source, bool (Source::*read)(std::vector<LONG>&),
                 const CImapi2Enumerator& kind, CImapi2EnumList& list);
  bool CheckIdentifier(RecorderIdType type, const Text& identifier, LONG& legacyNumber);
  bool Matches(CDiscRecorder2& recorder, const Text& uniqueId, RecorderIdType type,
               const Text& identifier, LONG legacyNumber, bool& matches);

  bool isDataFormatSupported_ = false;
  bool canLoadMedia_ = false;
  LONG legacyDeviceNumber_ = 0;
  Text productId_;
  Text productRevision_;
  Text uniqueId_;
  Text vendorId_;
  Text volumeName_;
  std::vector<Text> volumePaths_;
  CImapi2EnumList supportedFeatures_;
  CImapi2EnumList currentFeatures_;
  CImapi2EnumList supportedMediaTypes_;
  CImapi2EnumList supportedModePages_;
  CImapi2EnumList supportedProfiles_;
  CImapi2EnumList currentProfiles_;
  CCurrentDiscMedia currentMedia_;
};

class CDiscUnitInfoList : public CCopiedList<CDiscUnitInfo> {
 public:
  // All drives in the platform's order; with recordersOnly those that the data format supports. An
  // environment without disc mastering gives an empty list. False empties the list and leaves a
  // sentence.
  bool QueryAll(bool recordersOnly, bool queryMedia, bool forceAccess);

 private:
  bool AddAll(bool recordersOnly, bool queryMedia, bool forceAccess);
};

}  // namespace quillon
