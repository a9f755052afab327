#include "disc/current_disc_media.h"

#include <new>

namespace quillon {
namespace {

constexpr std::int32_t kFastest = -1;
constexpr std::int32_t kCdSectorsPerSecond = 75;    // base speed of a CD
constexpr std::int32_t kDvdSectorsPerSecond = 680;  // base speed of a DVD, and of what came later

// The base speed of a physical type; 0 for a type that has none.
std::int32_t BaseSpeedOf(std::int32_t physicalType) {
  if (physicalType >= IMAPI_MEDIA_TYPE_CDROM && physicalType <= IMAPI_MEDIA_TYPE_CDRW) {
    return kCdSectorsPerSecond;
  }
  if (physicalType >= IMAPI_MEDIA_TYPE_DVDROM && physicalType <= IMAPI_MEDIA_TYPE_BDRE &&
      physicalType != IMAPI_MEDIA_TYPE_DISK) {
    return kDvdSectorsPerSecond;
  }
  return 0;
}

template <typename Number>
constexpr Number QuotientRoundedUp(Number dividend, Number divisor) {
  return dividend / divisor + (dividend % divisor != 0 ? 1 : 0);
}

}  // namespace

CCurrentDiscMedia::CCurrentDiscMedia() { SetClassName(OLESTR("CCurrentDiscMedia")); }

void CCurrentDiscMedia::Reset() { *this = CCurrentDiscMedia(); }

bool CCurrentDiscMedia::IsRewritable() const {
  switch (physicalType_.Value()) {
    case IMAPI_MEDIA_TYPE_CDRW:
    case IMAPI_MEDIA_TYPE_DVDPLUSRW:
    case IMAPI_MEDIA_TYPE_DVDDASHRW:
    case IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER:
      return true;
    default:
      return false;
  }
}

bool CCurrentDiscMedia::Query(CDiscRecorder2& recorder, CDiscFormat2Data& format, bool force) {
  Reset();
  const auto askSupport = [&] { return format.IsCurrentMediaSupported(recorder, isSupported_); };
  const bool isDone =
      CallUntilReady(format, askSupport)
          ? !isSupported_ || WithExclusiveAccess(*this, recorder, force, kClientName,
                                                 [&] { return ReadLocked(recorder, format); })
          : FailAs(format);
  return isDone || ResetAfterFailure(*this, kMsgCannotQueryMedia);
}

bool CCurrentDiscMedia::ReadLocked(CDiscRecorder2& recorder, CDiscFormat2Data& format) {
  if (!format.SetRecorder(recorder) || !format.GetMediaBlank(isBlank_)) return FailAs(format);
  return ReadCodesAndSpeeds(format) && ReadCurrentSpeedsAndSizes(format);
}

bool CCurrentDiscMedia::ReadCodesAndSpeeds(CDiscFormat2Data& format) {
  IMAPI_FORMAT2_DATA_MEDIA_STATE state{};
  if (!format.GetCurrentMediaStatus(state)) return FailAs(format);
  if (!mediaState_.Set(state)) return Fail(kMsgCannotQueryMedia);
  IMAPI_MEDIA_PHYSICAL_TYPE type{};
  if (!format.GetCurrentPhysicalMediaType(type)) return FailAs(format);
  if (!SetPhysicalType(type)) return Fail(kMsgCannotQueryMedia);
  std::vector<LONG> speeds;
  if (!format.GetSupportedWriteSpeeds(speeds)) {
    // The call's own failure, or an array of another kind.
    return FAILED(format.GetLastResult()) ? FailAs(format) : Fail(kMsgCannotGetWriteSpeeds);
  }
  if (!SetSupportedWriteSpeeds(speeds)) return false;
  IMAPI_MEDIA_WRITE_PROTECT_STATE protection{};
  if (!format.GetWriteProtectStatus(protection)) return FailAs(format);
  return writeProtectState_.Set(protection) || Fail(kMsgCannotQueryMedia);
}

bool CCurrentDiscMedia::ReadCurrentSpeedsAndSizes(CDiscFormat2Data& format) {
  LONG requested = 0;
  LONG current = 0;
  LONG total = 0;
  LONG free = 0;
  if (!format.GetRequestedWriteSpeed(requested)) return FailAs(format);
  if (!SetRequestedWriteSpeed(requested)) return false;
  if (!format.GetCurrentWriteSpeed(current)) return FailAs(format);
  if (!SetCurrentWriteSpeed(current)) return false;
  if (!format.GetTotalSectorsOnMedia(total)) return FailAs(format);
  if (!SetTotalSectors(total)) return false;
  if (!format.GetFreeSectorsOnMedia(free)) return FailAs(format);
  return SetFreeSectors(free);
}

bool CCurrentDiscMedia::SetPhysicalType(std::int32_t type) { return physicalType_.Set(type); }

bool CCurrentDiscMedia::SetRequestedWriteSpeed(std::int32_t sectorsPerSecond) {
  return StoreSpeed(requestedSpeed_, sectorsPerSecond);
}

bool CCurrentDiscMedia::SetCurrentWriteSpeed(std::int32_t sectorsPerSecond) {
  return StoreSpeed(currentSpeed_, sectorsPerSecond);
}

bool CCurrentDiscMedia::SetFreeSectors(std::int32_t sectors) {
  return StoreSectors(freeSectors_, sectors);
}

bool CCurrentDiscMedia::SetTotalSectors(std::int32_t sectors) {
  return StoreSectors(totalSectors_, sectors);
}

bool CCurrentDiscMedia::StoreSpeed(std::int32_t& target, std::int32_t sectorsPerSecond) {
  if (sectorsPerSecond < kFastest) return Fail(kMsgWriteSpeedInvalid);
  target = sectorsPerSecond;
  return true;
}

bool CCurrentDiscMedia::StoreSectors(std::int32_t& target, std::int32_t sectors) {
  if (sectors < 0) return Fail(kMsgSectorCountInvalid);
  target = sectors;
  return true;
}

bool CCurrentDiscMedia::SetSupportedWriteSpeeds(std::span<const LONG> sectorsPerSecond) {
  CWriteSpeedInfoList speeds;
  for (const LONG speed : sectorsPerSecond) {
    std::int32_t factor = 0;
    if (!GetSpeedFactor(speed, factor)) return false;
    CWriteSpeedInfo info;
    if (!info.SetWriteSpeed(speed) || !info.SetWriteFactor(factor)) return FailAs(info);
    if (!speeds.AddCopy(info)) return Fail(kMsgCannotAddWriteSpeed);
  }
  speeds_ = speeds;
  return true;
}

bool CCurrentDiscMedia::GetSpeedFactor(std::int32_t sectorsPerSecond, std::int32_t& factor) {
  if (sectorsPerSecond == 0 || sectorsPerSecond == kFastest) {
    factor = sectorsPerSecond;
    return true;
  }
  const std::int32_t base = BaseSpeedOf(physicalType_.Value());
  if (base == 0) return Fail(kMsgMediaTypeInvalid);
  factor = QuotientRoundedUp(sectorsPerSecond, base);
  return true;
}

bool CCurrentDiscMedia::EstimateRecordingTime(std::uint64_t sizeBytes, std::uint64_t& seconds) {
  seconds = 0;
  if (sizeBytes == 0) return Fail(kMsgContentSizeInvalid);
  std::int32_t speed = 0;
  if (!GetEffectiveSpeed(speed)) return false;
  if (speed <= 0) return Fail(kMsgSectorSizeInvalid);
  seconds = QuotientRoundedUp(sizeBytes, static_cast<std::uint64_t>(speed) * kSectorBytes);
  return true;
}

// The current speed or, when that is the fastest, the fastest of the supported ones.
bool CCurrentDiscMedia::GetEffectiveSpeed(std::int32_t& sectorsPerSecond) {
  if (currentSpeed_ == 0) return Fail(kMsgWriteSpeedInvalid);
  sectorsPerSecond = currentSpeed_;
  if (currentSpeed_ != kFastest) return true;
  try {
    CWriteSpeedInfoList speeds = speeds_;
    speeds.SetSorting(CWriteSpeedInfoList::SortDirection::Descending,
                      CWriteSpeedInfoList::SortKey::WriteSpeed);
    speeds.SortSpeeds();
    if (speeds.GetCount() == 0) return Fail(kMsgWriteSpeedInvalid);
    sectorsPerSecond = speeds.At(0)->WriteSpeed();
    return true;
  } catch (const std::bad_alloc&) {
    return Fail(kMsgCannotEstimateRecordingTime);
  }
}

}  // namespace quillon
