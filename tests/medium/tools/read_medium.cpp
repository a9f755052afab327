// Takes everything that is on a medium out to a directory, and prints what it is: kind, size and
// path, a line each. Without a directory the last byte of each file is read. Exit status 1, with
// the sentence on standard error, when something failed; the rest is there all the same.
//
//   read_medium MEDIUM [DIRECTORY]
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "medium/medium_source.h"
#include "platform/services.h"

namespace {

namespace fs = std::filesystem;
using namespace quillon;

std::string narrow(TextView text) { return NarrowText(text, FileSystemCodePage()); }

bool complain(const CBaseItem& errors) {
  std::fprintf(stderr, "%s\n", narrow(errors.ErrorMessage()).c_str());
  return false;
}

// In pieces of an odd size, so that they cross the borders of extents.
bool takeOut(MediumSource& source, const MediumEntry& entry, const fs::path& to) {
  constexpr std::size_t kPieceBytes = 10'007;
  const std::unique_ptr<MediumFile> file = source.Open(entry.path);
  if (!file) return complain(source);
  std::ofstream out(to, std::ios::binary);
  std::vector<char> piece;
  for (std::uint64_t at = 0; at < file->SizeBytes(); at += piece.size()) {
    piece.resize(
        static_cast<std::size_t>(std::min<std::uint64_t>(kPieceBytes, file->SizeBytes() - at)));
    if (!file->ReadAt(at, piece.data(), piece.size())) {
      std::fprintf(stderr, "Cannot read %s.\n", narrow(entry.path).c_str());
      return false;
    }
    out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  }
  return out.good();
}

bool hasLastByte(MediumSource& source, const MediumEntry& entry) {
  const std::unique_ptr<MediumFile> file = source.Open(entry.path);
  if (!file) return complain(source);
  char last = 0;
  if (entry.sizeBytes == 0) return true;
  if (!file->ReadAt(entry.sizeBytes - 1, &last, 1)) return false;
  std::printf("ends with %d: ", last);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  CBaseItem errors;
  const auto source = OpenMedium(WidenText(argv[1], FileSystemCodePage()), errors);
  if (!source) return complain(errors) ? 0 : 1;
  std::vector<MediumEntry> entries;
  bool isWhole = source->List(entries) || complain(*source);
  for (const MediumEntry& entry : entries) {
    constexpr char kKinds[] = {'f', 'd', 'l', 'o'};
    std::string name = narrow(entry.path);
    if (argc < 3) {
      isWhole = (entry.kind != MediumEntry::Kind::File || hasLastByte(*source, entry)) && isWhole;
    }
    std::printf("%c %llu %s\n", kKinds[static_cast<std::size_t>(entry.kind)],
                static_cast<unsigned long long>(entry.sizeBytes), name.c_str());
    if (argc < 3) continue;
    std::replace(name.begin(), name.end(), '\\', '/');
    const fs::path to = fs::path(argv[2]) / name;
    if (entry.kind == MediumEntry::Kind::Directory) fs::create_directories(to);
    if (entry.kind == MediumEntry::Kind::File) isWhole = takeOut(*source, entry, to) && isWhole;
  }
  return isWhole ? 0 : 1;
}
