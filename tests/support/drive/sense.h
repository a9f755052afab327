#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace emulated {

// How a command ended: sense key, additional sense code and its qualifier; all 0 when it succeeded.
struct Sense {
  std::uint8_t key = 0;
  std::uint8_t code = 0;
  std::uint8_t qualifier = 0;

  bool isGood() const { return key == 0; }
  bool operator==(const Sense&) const = default;
};

constexpr Sense kGood{};
constexpr Sense kMediumError{0x03, 0x11, 0x00};          // unrecovered read error
constexpr Sense kUnknownCommand{0x05, 0x20, 0x00};       // invalid command operation code
constexpr Sense kBadAddress{0x05, 0x21, 0x00};           // logical block address out of range
constexpr Sense kBadWriteAddress{0x05, 0x21, 0x02};      // invalid address for write
constexpr Sense kBadCommandField{0x05, 0x24, 0x00};      // invalid field in the command
constexpr Sense kBadParameter{0x05, 0x26, 0x00};         // invalid field in the parameter list
constexpr Sense kBadSequence{0x05, 0x2C, 0x00};          // command sequence error
constexpr Sense kIncompatibleMedium{0x05, 0x30, 0x00};   // incompatible medium installed
constexpr Sense kUnreadableMedium{0x05, 0x30, 0x02};     // cannot read: incompatible format
constexpr Sense kUnwritableMedium{0x05, 0x30, 0x05};     // cannot write: incompatible format
constexpr Sense kUnformattableMedium{0x05, 0x30, 0x06};  // cannot format: incompatible medium
constexpr Sense kRemovalPrevented{0x05, 0x53, 0x02};     // medium removal prevented
constexpr Sense kWrongTrackMode{0x05, 0x64, 0x00};       // illegal mode for this track
constexpr Sense kIncompleteTrack{0x05, 0x72, 0x03};      // incomplete track in session
constexpr Sense kBecomingReady{0x02, 0x04, 0x01};
constexpr Sense kNoMedium{0x02, 0x3A, 0x00};
constexpr Sense kNoMediumTrayClosed{0x02, 0x3A, 0x01};
constexpr Sense kNoMediumTrayOpen{0x02, 0x3A, 0x02};
constexpr Sense kMediumChanged{0x06, 0x28, 0x00};

// "5/21/02", numbers in hexadecimal; "ok" for kGood.
std::string textOf(Sense sense);
std::optional<Sense> senseOf(std::string_view text);

}  // namespace emulated
