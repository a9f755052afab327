#include "faults.h"

#include <algorithm>
#include <cstdlib>

namespace emulated {

Sense Faults::strike(const TextTable::Line& line, const std::vector<std::string>& words,
                     std::size_t senseAt) {
  const std::optional<Sense> sense =
      words.size() > senseAt ? senseOf(words[senseAt]) : std::nullopt;
  if (!sense) return kGood;
  const std::string counter = "met " + line.first + " " + line.second;
  const std::int64_t metBefore = state_.number(counter);
  state_.set(counter, metBefore + 1);
  const auto after = std::find(words.begin(), words.end(), "after");
  const bool countsOn = after != words.end() && after + 1 != words.end();
  const std::int64_t first = countsOn ? std::strtoll((after + 1)->c_str(), nullptr, 10) : 0;
  const bool isOnce = std::find(words.begin(), words.end(), "once") != words.end();
  const bool strikes = isOnce ? metBefore == first : metBefore >= first;
  return strikes ? *sense : kGood;
}

Sense Faults::ofCommand(std::string_view name, std::string_view shortName) {
  for (const TextTable::Line& line : plan_.lines()) {
    if (line.first != name && (shortName.empty() || line.first != shortName)) continue;
    const Sense sense = strike(line, wordsOf(line.second), 0);
    if (!sense.isGood()) return sense;
  }
  return kGood;
}

Sense Faults::ofSectors(std::string_view name, std::int64_t first, std::int64_t count,
                        std::int64_t& reached) {
  for (const TextTable::Line& line : plan_.lines()) {
    if (line.first != name) continue;
    const std::vector<std::string> words = wordsOf(line.second);
    const std::int64_t sector = std::strtoll(words.empty() ? "-1" : words[0].c_str(), nullptr, 10);
    if (sector < first || sector >= first + count) continue;
    const Sense sense = strike(line, words, 1);
    if (sense.isGood()) continue;
    reached = sector;
    return sense;
  }
  return kGood;
}

void Faults::changeRead(std::int64_t first, std::int64_t count, std::uint8_t* data) const {
  constexpr std::int64_t kSector = 2048;
  const std::int64_t sector = plan_.number("read_changed", -1);
  if (sector >= first && sector < first + count) data[(sector - first) * kSector + 1000] ^= 1;
}

bool Faults::meets(std::string_view name, std::int64_t end) const {
  const std::int64_t sector = plan_.number(name, -1);
  return sector >= 0 && sector < end;
}

}  // namespace emulated
