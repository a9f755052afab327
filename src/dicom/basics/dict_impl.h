// What the dictionary holds besides its constant tables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "dicom/dict.h"
#include "log_sink.h"

namespace quillon {

struct DcDict::Impl {
  static constexpr std::size_t kUidSlots = 256;

  Impl();
  void append(DcDictUidDef def);
  [[nodiscard]] const DcDictUidDef* find(DcUid id) const;
  [[nodiscard]] const DcDictUidDef* find(std::string_view uid) const;

  DcLogOwner log;
  std::vector<DcDictUidDef> uids;  // in slot order
  // Slots counted from 1; 0 is a free place. The table by text is open-addressed and at most a
  // quarter full.
  std::array<std::uint16_t, kUidSlots + 1> slotById{};
  std::array<std::uint16_t, 4 * kUidSlots> slotByText{};
  std::uint32_t largestId = 0;
  std::uint16_t uidCounter = 1;
};

}  // namespace quillon
