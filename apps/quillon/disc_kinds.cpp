#include "disc_kinds.h"

#include <algorithm>

#include "fileset/disc_room.h"

namespace quillon::cli {

namespace {

std::string megabytes(std::uint64_t count) { return std::to_string(count) + " MB"; }

}  // namespace

const std::vector<DiscKind>& discKinds() {
  // clang-format off
  static const std::vector<DiscKind> kinds{
      //       keyword      name          sectors
      DiscKind{"cd-rom",    "CD-ROM",            0},
      DiscKind{"dvd-rom",   "DVD-ROM",           0},
      DiscKind{"bd-rom",    "BD-ROM",            0},
      DiscKind{"cd-r",      "CD-R",         359849},
      DiscKind{"cd-rw",     "CD-RW",        359849},
      DiscKind{"dvd-ram",   "DVD-RAM",     2236704},
      DiscKind{"dvd+r",     "DVD+R",       2295104},
      DiscKind{"dvd+rw",    "DVD+RW",      2295104},
      DiscKind{"dvd-r",     "DVD-R",       2298496},
      DiscKind{"dvd-rw",    "DVD-RW",      2298496},
      DiscKind{"dvd-r-dl",  "DVD-R DL",    4171712},
      DiscKind{"dvd+r-dl",  "DVD+R DL",    4173824},
      DiscKind{"dvd+rw-dl", "DVD+RW DL",   4173824},
      DiscKind{"bd-re",     "BD-RE",      11826176},
      DiscKind{"bd-r",      "BD-R",       12219392},
  };
  // clang-format on
  return kinds;
}

std::string discName(std::string_view keyword) {
  const auto& kinds = discKinds();
  const auto found = std::find_if(kinds.begin(), kinds.end(),
                                  [&](const DiscKind& kind) { return kind.keyword == keyword; });
  return found == kinds.end() ? "disc" : std::string(found->name);
}

std::vector<std::string_view> kindsThatHold(std::uint64_t sectors) {
  std::vector<std::string_view> keywords;
  for (const DiscKind& kind : discKinds()) {
    if (kind.sectors > 0 && kind.sectors >= sectors) keywords.push_back(kind.keyword);
  }
  return keywords;
}

std::string textOfKindsThatHold(std::uint64_t sectors) {
  std::string text;
  const DiscKind* before = nullptr;
  const auto endGroup = [&] {
    if (before == nullptr) return;
    text +=
        " (" + megabytes((before->sectors * kDiscSectorBytes + kMegabyte / 2) / kMegabyte) + ")";
  };
  for (const DiscKind& kind : discKinds()) {
    if (kind.sectors == 0 || kind.sectors < sectors) continue;
    const bool isSameSize = before != nullptr && before->sectors == kind.sectors;
    if (!isSameSize) endGroup();
    if (before != nullptr) text += isSameSize ? ", " : "; ";
    text += kind.name;
    before = &kind;
  }
  endGroup();
  return text;
}

std::string neededText(std::uint64_t bytes) {
  return megabytes(bytes / kMegabyte + (bytes % kMegabyte != 0 ? 1 : 0));
}

std::string roomText(std::uint64_t bytes) { return megabytes(bytes / kMegabyte); }

}  // namespace quillon::cli
