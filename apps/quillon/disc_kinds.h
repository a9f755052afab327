// The kinds of disc that people buy, and sizes as people say them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

struct DiscKind {
  std::string_view keyword;  // as in quillon disc
  std::string_view name;
  std::uint64_t sectors;  // of 2048 bytes, of the usual blank disc; 0 for a pressed one
};

// The smallest ones first.
const std::vector<DiscKind>& discKinds();

// What a kind that recorders tell is called: "CD-R". "disc" for one that is not in the table.
std::string discName(std::string_view keyword);

// The kinds that hold so much, by their keywords.
std::vector<std::string_view> kindsThatHold(std::uint64_t sectors);
// The same for people: "CD-R, CD-RW (703 MB); DVD-R ...". Empty when there is none.
std::string textOfKindsThatHold(std::uint64_t sectors);

inline constexpr std::uint64_t kMegabyte = std::uint64_t{1} << 20;

// Whole megabytes: of what something needs, and of what there is.
std::string neededText(std::uint64_t bytes);  // rounded up
std::string roomText(std::uint64_t bytes);    // rounded down

}  // namespace quillon::cli
