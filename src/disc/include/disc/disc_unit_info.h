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
  [[nodiscard]] bool Query(const Text& uniqueId, bool queryMedia, bool forceAccess);
  // Visits the drives, which have just been enumerated, and reads the first that matches exactly,
  // with the iterator's flags. False without an error text when none matches.
  [[nodiscard]] bool Find(CDiscMaster2Iterator& drives, RecorderIdType type,
                          const Text& identifier);

  // "%s %s (Revision: %s)" with vendor, product and revision, each trimmed. False, with a sentence,
  // when nothing at all of it is known or one of them cannot be copied.
  [[nodiscard]] bool GetDeviceName(Text& out);
  // The same of the drive that a recorder is initialised for, empty when nothing is known. False
  // leaves the recorder's error text.
  [[nodiscard]] static bool ReadDeviceName(CDiscRecorder2& recorder, Text& out);
  // The same for messages: "current optical disc device" when there is no device name.
  [[nodiscard]] Text DisplayName() const;

  [[nodiscard]] bool IsDataFormatSupported() const { return drive_.isDataFormatSupported; }
  [[nodiscard]] bool CanLoadMedia() const { return drive_.canLoadMedia; }
  [[nodiscard]] LONG LegacyDeviceNumber() const { return drive_.legacyDeviceNumber; }
  [[nodiscard]] bool GetUniqueId(Text& out) const { return AssignText(out, drive_.uniqueId, 0); }
  [[nodiscard]] const Text& VendorId() const { return drive_.vendorId; }
  [[nodiscard]] const Text& ProductId() const { return drive_.productId; }
  [[nodiscard]] const Text& ProductRevision() const { return drive_.productRevision; }
  [[nodiscard]] const Text& VolumeName() const { return drive_.volumeName; }
  [[nodiscard]] const std::vector<Text>& VolumePaths() const { return drive_.volumePaths; }
  [[nodiscard]] const CImapi2EnumList& SupportedFeaturePages() const {
    return drive_.supportedFeaturePages;
  }
  [[nodiscard]] const CImapi2EnumList& CurrentFeaturePages() const {
    return drive_.currentFeaturePages;
  }
  [[nodiscard]] const CImapi2EnumList& SupportedMediaTypes() const {
    return drive_.supportedMediaTypes;
  }
  [[nodiscard]] const CImapi2EnumList& SupportedModePages() const {
    return drive_.supportedModePages;
  }
  [[nodiscard]] const CImapi2EnumList& SupportedProfiles() const {
    return drive_.supportedProfiles;
  }
  [[nodiscard]] const CImapi2EnumList& CurrentProfiles() const { return drive_.currentProfiles; }
  [[nodiscard]] const CCurrentDiscMedia& CurrentMedia() const { return drive_.currentMedia; }
  // A copy: "Cannot copy the current physical media information." when that fails.
  [[nodiscard]] bool GetCurrentMedia(CCurrentDiscMedia& out);

 private:
  struct Drive {
    bool isDataFormatSupported = false;
    bool canLoadMedia = false;
    LONG legacyDeviceNumber = 0;
    Text productId;
    Text productRevision;
    Text uniqueId;
    Text vendorId;
    Text volumeName;
    std::vector<Text> volumePaths;
    CImapi2EnumList supportedFeaturePages;
    CImapi2EnumList currentFeaturePages;
    CImapi2EnumList supportedMediaTypes;
    CImapi2EnumList supportedModePages;
    CImapi2EnumList supportedProfiles;
    CImapi2EnumList currentProfiles;
    CCurrentDiscMedia currentMedia;
  };

  [[nodiscard]] bool Read(const Text& uniqueId, bool queryMedia, bool forceAccess);
  [[nodiscard]] bool ReadTexts(CDiscRecorder2& recorder);
  [[nodiscard]] bool ReadCapabilities(CDiscRecorder2& recorder, CDiscFormat2Data& format);
  [[nodiscard]] bool ReadCodes(CDiscRecorder2& recorder, CDiscFormat2Data& format);

  Drive drive_;
};

class CDiscUnitInfoList : public CCopiedList<CDiscUnitInfo> {
 public:
  // All drives in the platform's order; with recordersOnly those that the data format supports. An
  // environment without disc mastering gives an empty list. False empties the list and leaves a
  // sentence.
  [[nodiscard]] bool QueryAll(bool recordersOnly, bool queryMedia, bool forceAccess);

 private:
  [[nodiscard]] bool AddAll(bool recordersOnly, bool queryMedia, bool forceAccess);
};

}  // namespace quillon
