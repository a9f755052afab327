#include "platform/archive.h"

namespace quillon::platform {

struct ArchiveReader::State {};

ArchiveReader::ArchiveReader() = default;
ArchiveReader::~ArchiveReader() = default;
bool ArchiveReader::open(LPCWSTR, const std::string&) { return false; }
ArchiveReader::Step ArchiveReader::next(ArchiveEntry&) { return Step::Failed; }
bool ArchiveReader::read(void*, std::size_t) { return false; }
bool ArchiveReader::isAtSoundEnd() { return false; }
std::string ArchiveReader::reason() const { return "there is no library for ZIP files"; }

}  // namespace quillon::platform
