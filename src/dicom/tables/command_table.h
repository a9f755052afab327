// Names of the commands by their Command Field (0000,0100).
#pragma once

#include <array>
#include <cstdint>

namespace quillon {

struct CommandRow {
  std::uint16_t field;
  const char* name;
};

// clang-format off
inline constexpr std::array<CommandRow, 24> kCommandTable{{
    {0xFFFF, "Generic IOD"},
    {0x0FFF, "C-CANCEL Request"},
    {0x0030, "C-ECHO Request"},
    {0x8030, "C-ECHO Response"},
    {0x0020, "C-FIND Request"},
    {0x8020, "C-FIND Response"},
    {0x0010, "C-GET Request"},
    {0x8010, "C-GET Response"},
    {0x0021, "C-MOVE Request"},
    {0x8021, "C-MOVE Response"},
    {0x0001, "C-STORE Request"},
    {0x8001, "C-STORE Response"},
    {0x0130, "N-ACTION Request"},
    {0x8130, "N-ACTION Response"},
    {0x0140, "N-CREATE Request"},
    {0x8140, "N-CREATE Response"},
    {0x0150, "N-DELETE Request"},
    {0x8150, "N-DELETE Response"},
    {0x0100, "N-EVENT Request"},
    {0x8100, "N-EVENT Response"},
    {0x0110, "N-GET Request"},
    {0x8110, "N-GET Response"},
    {0x0120, "N-SET Request"},
    {0x8120, "N-SET Response"},
}};
// clang-format on

}  // namespace quillon
