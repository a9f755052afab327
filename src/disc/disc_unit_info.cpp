#include "disc/disc_unit_info.h"

#include <new>

namespace quillon {
namespace {

// Empty when nothing is known.
Text ComposeDeviceName(const CBaseItem& item, const Text& vendor, const Text& product,
                       const Text& revision) {
  const TextView parts[] = {TrimmedView(vendor), TrimmedView(product), TrimmedView(revision)};
  if (parts[0].empty() && parts[1].empty() && parts[2].empty()) return {};
  return FormatText(item.LoadMessage(kMsgDeviceName), {parts[0], parts[1], parts[2]});
}

template <typename Source>
using CodesOf = bool (Source::*)(std::vector<LONG>&);

// One list of codes of a drive: read from the source, named, stored.
template <typename Source>
bool ReadCodeList(CDiscUnitInfo& unit, Source& source, CodesOf<Source> read,
                  const CImapi2Enumerator& kind, CImapi2EnumList& list) {
  std::vector<LONG> codes;
  if (!(source.*read)(codes)) return unit.FailAs(source);
  return list.SetValues(kind, codes) || unit.Fail(kMsgCannotQueryRecorder);
}

}  // namespace

CDiscUnitInfo::CDiscUnitInfo() : CImapiItem(OLESTR("CDiscUnitInfo")) {}

CDiscUnitInfo::CDiscUnitInfo(const CDiscUnitInfo& other) : CDiscUnitInfo() { *this = other; }

CDiscUnitInfo& CDiscUnitInfo::operator=(const CDiscUnitInfo& other) {
  if (this == &other) return *this;
  // The initialisation of the COM library stays each object's own.
  CBaseItem::operator=(other);
  CKeyedItem::operator=(other);
  drive_ = other.drive_;
  return *this;
}

void CDiscUnitInfo::Reset() {
  drive_ = Drive();
  ClearError();
}

bool CDiscUnitInfo::Query(const Text& uniqueId, bool queryMedia, bool forceAccess) {
  Reset();
  return Read(uniqueId, queryMedia, forceAccess) ||
         ResetAfterFailure(*this, kMsgCannotQueryRecorder);
}

bool CDiscUnitInfo::Read(const Text& uniqueId, bool queryMedia, bool forceAccess) {
  CDiscRecorder2 recorder;
  CDiscFormat2Data format;
  const auto getActive = [&] { return recorder.GetActiveDiscRecorder(drive_.uniqueId); };
  if (!recorder.InitializeDiscRecorder(uniqueId) || !CallUntilReady(recorder, getActive)) {
    return FailAs(recorder);
  }
  if (!ReadTexts(recorder) || !ReadCapabilities(recorder, format)) return false;
  return !queryMedia || drive_.currentMedia.Query(recorder, format, forceAccess) ||
         FailAs(drive_.currentMedia);
}

bool CDiscUnitInfo::ReadTexts(CDiscRecorder2& recorder) {
  return (recorder.GetProductId(drive_.productId) &&
          recorder.GetProductRevision(drive_.productRevision) &&
          recorder.GetVendorId(drive_.vendorId) && recorder.GetVolumeName(drive_.volumeName)) ||
         FailAs(recorder);
}

bool CDiscUnitInfo::ReadCapabilities(CDiscRecorder2& recorder, CDiscFormat2Data& format) {
  if (!format.IsRecorderSupported(recorder, drive_.isDataFormatSupported)) return FailAs(format);
  if (!recorder.GetDeviceCanLoadMedia(drive_.canLoadMedia) ||
      !recorder.GetLegacyDeviceNumber(drive_.legacyDeviceNumber)) {
    return FailAs(recorder);
  }
  if (!ReadCodes(recorder, format)) return false;
  if (!recorder.GetVolumePathNames(drive_.volumePaths)) return FailAs(recorder);
  return drive_.legacyDeviceNumber >= 0 || Fail(kMsgLegacyDeviceNumberInvalid);
}

bool CDiscUnitInfo::ReadCodes(CDiscRecorder2& recorder, CDiscFormat2Data& format) {
  const CFeaturePageType feature;
  const CProfileType profile;
  return ReadCodeList(*this, recorder, &CDiscRecorder2::GetSupportedFeaturePages, feature,
                      drive_.supportedFeaturePages) &&
         ReadCodeList(*this, recorder, &CDiscRecorder2::GetCurrentFeaturePages, feature,
                      drive_.currentFeaturePages) &&
         ReadCodeList(*this, format, &CDiscFormat2Data::GetSupportedMediaTypes,
                      CPhysicalMediaType(), drive_.supportedMediaTypes) &&
         ReadCodeList(*this, recorder, &CDiscRecorder2::GetSupportedModePages, CPageType(),
                      drive_.supportedModePages) &&
         ReadCodeList(*this, recorder, &CDiscRecorder2::GetSupportedProfiles, profile,
                      drive_.supportedProfiles) &&
         ReadCodeList(*this, recorder, &CDiscRecorder2::GetCurrentProfiles, profile,
                      drive_.currentProfiles);
}

bool CDiscUnitInfo::GetDeviceName(Text& out) {
  Text product;
  Text revision;
  Text vendor;
  if (!AssignText(product, drive_.productId, 0)) return Fail(kMsgCannotGetProductId);
  if (!AssignText(revision, drive_.productRevision, 0)) return Fail(kMsgCannotGetProductRevision);
  if (!AssignText(vendor, drive_.vendorId, 0)) return Fail(kMsgCannotGetVendorId);
  out = ComposeDeviceName(*this, vendor, product, revision);
  return !out.empty() || Fail(kMsgCannotGetProductId);
}

bool CDiscUnitInfo::ReadDeviceName(CDiscRecorder2& recorder, Text& out) {
  Text vendor;
  Text product;
  Text revision;
  if (!recorder.GetVendorId(vendor) || !recorder.GetProductId(product) ||
      !recorder.GetProductRevision(revision)) {
    return false;
  }
  out = ComposeDeviceName(recorder, vendor, product, revision);
  return true;
}

Text CDiscUnitInfo::DisplayName() const {
  Text name = ComposeDeviceName(*this, drive_.vendorId, drive_.productId, drive_.productRevision);
  return name.empty() ? LoadMessage(kMsgDefaultDeviceName) : name;
}

bool CDiscUnitInfo::GetCurrentMedia(CCurrentDiscMedia& out) {
  try {
    out = drive_.currentMedia;
    return true;
  } catch (const std::bad_alloc&) {
    return Fail(kMsgCannotCopyMedia);
  }
}

bool CDiscUnitInfoList::QueryAll(bool recordersOnly, bool queryMedia, bool forceAccess) {
  RemoveAll();
  ClearError();
  if (AddAll(recordersOnly, queryMedia, forceAccess)) return true;
  RemoveAll();
  return ErrorMessage().empty() ? Fail(kMsgCannotQueryAllRecorders) : false;
}

bool CDiscUnitInfoList::AddAll(bool recordersOnly, bool queryMedia, bool forceAccess) {
  CDiscMaster2 master;
  bool isSupported = false;
  if (!master.GetIsSupportedEnvironment(isSupported)) return FailAs(master);
  if (!isSupported) return true;
  CDiscMaster2Iterator drives(queryMedia, forceAccess);
  if (!master.GetDiscDevices(drives)) return FailAs(master);
  if (!drives.Reset()) return FailAs(drives);
  while (drives.Next()) {
    Text uniqueId;
    drives.GetCurrentUniqueId(uniqueId);
    if (uniqueId.empty()) return Fail(kMsgUniqueIdInvalid);
    CDiscUnitInfo unit;
    if (!unit.Query(uniqueId, queryMedia, forceAccess)) {
      return FailAs(unit, kMsgCannotQueryGivenRecorder);
    }
    if (recordersOnly && !unit.IsDataFormatSupported()) continue;
    if (!AddCopy(unit)) return Fail(kMsgCannotAddRecorderProperties);
  }
  return !drives.AtFailure() || FailAs(drives);
}

}  // namespace quillon
