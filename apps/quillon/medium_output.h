// A file set as one file: the image of a disc, or a ZIP file. What is refused, is refused before
// anything is written.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fileset/disc_room.h"
#include "outcome.h"
#include "output_file.h"

namespace quillon::cli {

class SetSums;

struct MediumOutputOptions {
  enum class Kind : std::uint8_t { Image, Zip };

  Kind kind = Kind::Image;
  std::string path;  // absolute, or "-" for standard output
  bool isReplacing = false;
  bool isCompressing = false;               // of a ZIP file, as the next
  std::optional<std::string> passwordFile;  // its first line encrypts
};

class MediumOutput {
 public:
  using Progress = std::function<void(std::uint64_t doneBytes, std::uint64_t totalBytes)>;

  explicit MediumOutput(MediumOutputOptions options);

  // Whether it may be written there, of a file set in that root and from these sources.
  Outcome check(const std::string& root, const std::vector<std::string>& sources);
  // Whether its file system has the room.
  Outcome askRoom(const DiscRoom& room) const;
  // volume: of the image, its name. sums: those of the files, which go with them, or null. check:
  // see OutputFile.
  Outcome write(const std::string& root, const std::string& volume, SetSums* sums,
                const Progress& progress, const OutputFile::Check& check);

  // For a thread beside the one that writes, in a process that is to end: nothing stays of a file
  // that is not whole. Answers what became of it, without a stop.
  std::string abandon();

  [[nodiscard]] const MediumOutputOptions& options() const { return options_; }
  // Empty without one, and before check.
  [[nodiscard]] const std::string& password() const { return password_; }
  [[nodiscard]] bool isZip() const { return options_.kind == MediumOutputOptions::Kind::Zip; }
  // What those who get the file should know; empty for nothing.
  [[nodiscard]] std::string remark() const;

 private:
  Outcome checkPlace() const;
  Outcome checkOldFile(const std::vector<std::string>& sources) const;

  MediumOutputOptions options_;
  OutputFile output_;
  std::string directory_;
  std::string password_;
};

}  // namespace quillon::cli
