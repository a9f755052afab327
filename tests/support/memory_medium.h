// A medium that lies in memory.
#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <vector>

#include "medium/medium_source.h"
#include "support/dicom_bytes.h"

namespace quillon::test {

class MemoryMedium final : public MediumSource {
 public:
  std::map<Text, Bytes> files;
  std::map<Text, MediumEntry::Kind> others;
  std::map<Text, std::uint64_t> listedSizes;  // where the listing says another size
  Text unreadable;      // a file that cannot be read, although it can be opened
  int openedFiles = 0;  // so often a file was opened
  std::uint64_t readBytes = 0;

  bool List(std::vector<MediumEntry>& entries) override {
    for (const auto& [path, bytes] : files) {
      const auto listed = listedSizes.find(path);
      entries.push_back({path, listed == listedSizes.end() ? bytes.size() : listed->second,
                         MediumEntry::Kind::File});
    }
    for (const auto& [path, kind] : others) entries.push_back({path, 0, kind});
    return true;
  }
  std::unique_ptr<MediumFile> Open(TextView path) override {
    const auto found = files.find(Text(path));
    if (found == files.end()) return nullptr;
    ++openedFiles;
    return std::make_unique<File>(*this, found->second, path != unreadable);
  }

 private:
  class File final : public MediumFile {
   public:
    File(MemoryMedium& medium, const Bytes& bytes, bool isReadable)
        : medium_(medium), bytes_(bytes), isReadable_(isReadable) {}
    [[nodiscard]] std::uint64_t SizeBytes() const override { return bytes_.size(); }
    bool ReadAt(std::uint64_t offset, void* to, std::size_t count) override {
      if (!isReadable_ || offset > bytes_.size() || count > bytes_.size() - offset) return false;
      if (count > 0) std::memcpy(to, bytes_.data() + offset, count);
      medium_.readBytes += count;
      return true;
    }

   private:
    MemoryMedium& medium_;
    const Bytes& bytes_;
    bool isReadable_;
  };
};

}  // namespace quillon::test
