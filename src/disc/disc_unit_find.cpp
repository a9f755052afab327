// Finding one drive by what identifies it.
#include <algorithm>
#include <limits>

#include "disc/disc_unit_info.h"

namespace quillon {
namespace {

// What is looked for.
struct DriveQuery {
  RecorderIdType type;
  Text identifier;
  LONG legacyNumber = 0;  // the identifier as a number, for that type
};

UINT InvalidIdentifierMessage(RecorderIdType type) {
  switch (type) {
    case RecorderIdType::LegacyDeviceNumber:
      return kMsgLegacyDeviceNumberInvalid;
    case RecorderIdType::Manufacturer:
      return kMsgManufacturerInvalid;
    case RecorderIdType::UniqueId:
      return kMsgUniqueIdInvalid;
    case RecorderIdType::VolumePath:
      return kMsgVolumePathInvalid;
    case RecorderIdType::VolumeName:
      return kMsgRecorderVolumeNameInvalid;
  }
  return kMsgRecorderIdTypeInvalid;
}

// Decimal digits only; false for anything else and for a number that does not fit.
bool ReadNumber(TextView text, LONG& number) {
  constexpr LONG kBase = 10;
  constexpr LONG kLargest = std::numeric_limits<LONG>::max();
  number = 0;
  for (const OLECHAR unit : text) {
    if (unit < OLESTR('0') || unit > OLESTR('9')) return false;
    const LONG digit = unit - OLESTR('0');
    if (number > (kLargest - digit) / kBase) return false;
    number = number * kBase + digit;
  }
  return !text.empty();
}

bool CheckQuery(DriveQuery& query) {
  if (query.identifier.empty()) return false;
  if (query.type == RecorderIdType::VolumePath) TrimText(query.identifier);
  return query.type != RecorderIdType::LegacyDeviceNumber ||
         ReadNumber(query.identifier, query.legacyNumber);
}

// Whether the drive that the recorder is initialised for is the one; false leaves the recorder's
// error text.
bool CompareDrive(CDiscRecorder2& recorder, const DriveQuery& query, bool& matches) {
  switch (query.type) {
    case RecorderIdType::LegacyDeviceNumber: {
      LONG number = 0;
      if (!recorder.GetLegacyDeviceNumber(number)) return false;
      matches = number == query.legacyNumber;
      return true;
    }
    case RecorderIdType::Manufacturer: {
      Text name;
      if (!CDiscUnitInfo::ReadDeviceName(recorder, name)) return false;
      matches = name == query.identifier;
      return true;
    }
    case RecorderIdType::VolumePath: {
      std::vector<Text> paths;
      if (!recorder.GetVolumePathNames(paths)) return false;
      matches = std::ranges::find(paths, query.identifier) != paths.end();
      return true;
    }
    case RecorderIdType::VolumeName: {
      Text name;
      if (!recorder.GetVolumeName(name)) return false;
      matches = name == query.identifier;
      return true;
    }
    case RecorderIdType::UniqueId:
      break;  // compared without a recorder
  }
  return true;
}

}  // namespace

bool CDiscUnitInfo::Find(CDiscMaster2Iterator& drives, RecorderIdType type,
                         const Text& identifier) {
  Reset();
  DriveQuery query{type, identifier};
  if (!CheckQuery(query)) return Fail(InvalidIdentifierMessage(type));
  CDiscRecorder2 recorder;
  while (drives.Next()) {
    Text uniqueId;
    drives.GetCurrentUniqueId(uniqueId);
    bool matches = false;
    if (type == RecorderIdType::UniqueId) {
      matches = uniqueId == identifier;
    } else if (!CallUntilReady(recorder,
                               [&] { return recorder.InitializeDiscRecorder(uniqueId); }) ||
               !CompareDrive(recorder, query, matches)) {
      return FailAs(recorder);
    }
    if (matches) return Query(uniqueId, drives.QueryMedia(), drives.ForceAccess());
  }
  return drives.AtFailure() ? FailAs(drives) : false;
}

}  // namespace quillon
