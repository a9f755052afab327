// The medium in one drive, as it was when it was queried. Sectors have 2048 bytes.
#pragma once

#include <span>

#include "disc/imapi2_enumerator.h"
#include "disc/tarnimapiutil.h"
#include "disc/write_speed_info.h"

namespace quillon {

// How a query ends that fails: its object is reset and keeps the sentence of what failed, or the
// fallback when nothing has left one. Always false.
template <typename Item>
bool ResetAfterFailure(Item& item, UINT fallback) {
  const Text reason = item.ErrorMessage();
  item.Reset();
  if (reason.empty()) return item.Fail(fallback);
  item.CBaseItem::SetErrorMessage(reason);
  return false;
}

class CCurrentDiscMedia : public CBaseItem {
 public:
  CCurrentDiscMedia();

  void Reset();  // enumerators undefined, counts 0, flags false, no error text
  // Reads the medium in the drive that recorder is initialised for; locks the drive (by force if
  // wanted) and unlocks it whatever happens. A medium that the data format does not support is
  // success, with nothing but IsSupported read. False resets and leaves a sentence.
  [[nodiscard]] bool Query(CDiscRecorder2& recorder, CDiscFormat2Data& format, bool force);

  [[nodiscard]] bool IsSupported() const { return isSupported_; }
  [[nodiscard]] bool IsBlank() const { return isBlank_; }
  // CD-RW, DVD+RW, DVD-RW and DVD+RW dual layer.
  [[nodiscard]] bool IsRewritable() const;

  [[nodiscard]] const CMediaState& MediaState() const { return mediaState_; }
  [[nodiscard]] const CPhysicalMediaType& PhysicalType() const { return physicalType_; }
  [[nodiscard]] const CWriteProtectState& WriteProtectState() const { return writeProtectState_; }
  [[nodiscard]] const CWriteSpeedInfoList& SupportedWriteSpeeds() const { return speeds_; }
  [[nodiscard]] std::int32_t RequestedWriteSpeed() const { return requestedSpeed_; }
  [[nodiscard]] std::int32_t CurrentWriteSpeed() const { return currentSpeed_; }
  [[nodiscard]] std::int32_t FreeSectors() const { return freeSectors_; }
  [[nodiscard]] std::int32_t TotalSectors() const { return totalSectors_; }

  [[nodiscard]] bool SetPhysicalType(std::int32_t type);
  // -1 (the fastest) or not negative: "The write speed value is invalid.".
  [[nodiscard]] bool SetRequestedWriteSpeed(std::int32_t sectorsPerSecond);
  [[nodiscard]] bool SetCurrentWriteSpeed(std::int32_t sectorsPerSecond);
  // Not negative: "The number of sectors value is invalid.".
  [[nodiscard]] bool SetFreeSectors(std::int32_t sectors);
  [[nodiscard]] bool SetTotalSectors(std::int32_t sectors);
  // Replaces the supported speeds; false for a speed that is negative or has no factor.
  [[nodiscard]] bool SetSupportedWriteSpeeds(std::span<const LONG> sectorsPerSecond);

  // The multiple of the base speed of the medium's type, rounded up; 0 for 0 and -1 for -1. "The
  // media type value is invalid." for a type that has no base speed.
  [[nodiscard]] bool GetSpeedFactor(std::int32_t sectorsPerSecond, std::int32_t& factor);
  // Seconds, rounded up, at the current speed, or at the fastest supported one.
  [[nodiscard]] bool EstimateRecordingTime(std::uint64_t sizeBytes, std::uint64_t& seconds);

 private:
  [[nodiscard]] bool ReadLocked(CDiscRecorder2& recorder, CDiscFormat2Data& format);
  [[nodiscard]] bool ReadCodesAndSpeeds(CDiscFormat2Data& format);
  [[nodiscard]] bool ReadCurrentSpeedsAndSizes(CDiscFormat2Data& format);
  [[nodiscard]] bool GetEffectiveSpeed(std::int32_t& sectorsPerSecond);
  [[nodiscard]] bool StoreSpeed(std::int32_t& target, std::int32_t sectorsPerSecond);
  [[nodiscard]] bool StoreSectors(std::int32_t& target, std::int32_t sectors);

  bool isSupported_ = false;
  bool isBlank_ = false;
  CMediaState mediaState_;
  CPhysicalMediaType physicalType_;
  CWriteProtectState writeProtectState_;
  CWriteSpeedInfoList speeds_;
  std::int32_t requestedSpeed_ = 0;
  std::int32_t currentSpeed_ = 0;
  std::int32_t freeSectors_ = 0;
  std::int32_t totalSectors_ = 0;
};

}  // namespace quillon
