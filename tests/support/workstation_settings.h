// What a workstation tells the server through its surroundings, for the life of one object: the
// registry's key for media creation, at first missing, and the directory for temporary files.
#pragma once

#include <filesystem>
#include <string>

namespace quillon::test {

// On Linux the registry is a file in the given directory; on Windows the key is deleted at the end.
class MediaCreationKey {
 public:
  explicit MediaCreationKey(const std::filesystem::path& directory);
  ~MediaCreationKey();
  MediaCreationKey(const MediaCreationKey&) = delete;
  MediaCreationKey& operator=(const MediaCreationKey&) = delete;

  // Each makes the key anew, with the one value.
  void setOtherContent(const std::filesystem::path& directory) const;
  void setText(const std::string& name, const std::filesystem::path& value) const;
  void setNumber(const std::string& name, unsigned value) const;
  void setWithoutValue() const;
  void remove() const;

 private:
  std::filesystem::path file_;
};

class TemporaryFilesIn {
 public:
  explicit TemporaryFilesIn(const std::filesystem::path& directory);
  ~TemporaryFilesIn();
  TemporaryFilesIn(const TemporaryFilesIn&) = delete;
  TemporaryFilesIn& operator=(const TemporaryFilesIn&) = delete;

 private:
  std::filesystem::path before_;
};

}  // namespace quillon::test
