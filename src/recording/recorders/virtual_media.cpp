// What the record of a virtual disc says, in the terms of the interfaces.
#include "virtual_recorder.h"

namespace quillon::platform {
namespace {

constexpr DWORD bit(IMAPI_FORMAT2_DATA_MEDIA_STATE state) { return static_cast<DWORD>(state); }
constexpr DWORD bit(IMAPI_MEDIA_WRITE_PROTECT_STATE state) { return static_cast<DWORD>(state); }

DWORD stateBits(const DiscRecord& record, const MediaFacts& facts) {
  DWORD bits = facts.isOverwritable ? bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_OVERWRITE_ONLY) : 0;
  if (record.isBlank()) {
    bits |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK);
  } else if (record.state == DiscState::Appendable) {
    if (!facts.isOverwritable) bits |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_APPENDABLE);
  } else {
    bits |= bit(record.state == DiscState::Finalised ? IMAPI_FORMAT2_DATA_MEDIA_STATE_FINALIZED
                                                     : IMAPI_FORMAT2_DATA_MEDIA_STATE_DAMAGED);
    if (facts.isErasable) bits |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_ERASE_REQUIRED);
  }
  if (facts.writeProtect != 0) bits |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED);
  if (record.type->rewriting == Rewriting::Never) {
    bits |= bit(IMAPI_FORMAT2_DATA_MEDIA_STATE_UNSUPPORTED_MEDIA);
  }
  return bits;
}

std::uint32_t freeSectors(const DiscRecord& record) {
  if (record.isBlank()) return record.capacitySectors;
  if (record.state != DiscState::Appendable) return 0;
  const std::uint64_t taken =
      std::uint64_t{record.usedSectors} + std::uint64_t{record.type->sessionSectors};
  return taken < record.capacitySectors ? record.capacitySectors - static_cast<std::uint32_t>(taken)
                                        : 0;
}

}  // namespace

MediaFacts factsOf(const DiscRecord& record) {
  const DiscType& type = *record.type;
  MediaFacts facts;
  facts.present = true;
  facts.physicalType = type.physicalType;
  facts.isOverwritable = type.rewriting == Rewriting::InPlace;
  facts.isErasable = facts.isOverwritable || type.rewriting == Rewriting::Erased;
  if (type.rewriting == Rewriting::Never) {
    facts.writeProtect = bit(IMAPI_WRITEPROTECTED_READ_ONLY_MEDIA);
  } else if (record.isProtected) {
    facts.writeProtect = bit(IMAPI_WRITEPROTECTED_BY_MEDIA_SPECIFIC_REASON);
  }
  facts.state = stateBits(record, facts);
  // A drive does not tell a disc that was erased quickly from a new one, unless its sectors can be
  // read at any time: there it is the missing file system that says so.
  facts.isPhysicallyBlank = record.state == DiscState::Blank ||
                            (record.state == DiscState::Erased && !facts.isOverwritable);
  facts.isHeuristicallyBlank = record.isBlank();
  facts.totalSectors = record.capacitySectors;
  facts.freeSectors = freeSectors(record);
  facts.readableSectors = record.isBlank() ? 0 : record.usedSectors;
  facts.writeSpeeds = type.writeSpeeds;
  return facts;
}

}  // namespace quillon::platform
