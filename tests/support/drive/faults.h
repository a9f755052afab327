#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "sense.h"
#include "text_table.h"

namespace emulated {

// What the lines of faults.txt make of a drive; how often each has struck stands in state.txt.
//   <COMMAND NAME> = sense [once] [after n]   that command fails, from its n+1st on; "once": only
//   then write = sector sense [once]               WRITE that reaches the sector; read: READ
//   read_changed = sector                          READ gives another byte there than was written
//   likewise blank, format, eject, close, sync = sense [once] [after n] pulled = sector the disc is
//   gone when a WRITE or READ reaches it slow = milliseconds                       each command;
//   slow_write: each WRITE becoming_ready = n                        not ready until TEST UNIT
//   READY has been asked n times busy_polls = n                            likewise after BLANK and
//   FORMAT UNIT mounted = yes    permission = no    unmount = no | denied
class Faults {
 public:
  Faults(const TextTable& plan, TextTable& state) : plan_(plan), state_(state) {}

  // For the command under its own name and the short one ("" for none).
  Sense ofCommand(std::string_view name, std::string_view shortName);
  // For "write" or "read" of the sectors from first on. The first sector that cannot be had goes
  // to reached; those before it were.
  Sense ofSectors(std::string_view name, std::int64_t first, std::int64_t count,
                  std::int64_t& reached);
  // What READ gives where "read_changed" is planned.
  void changeRead(std::int64_t first, std::int64_t count, std::uint8_t* data) const;
  // Whether a transfer that ends there meets what "pulled" or "unplugged" is planned for.
  bool meets(std::string_view name, std::int64_t end) const;
  std::int64_t number(std::string_view name) const { return plan_.number(name); }

 private:
  Sense strike(const TextTable::Line& line, const std::vector<std::string>& words,
               std::size_t senseAt);

  const TextTable& plan_;
  TextTable& state_;
};

}  // namespace emulated
