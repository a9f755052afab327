// One delivery of a finished file set: to the disc in the first recorder or to a directory.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::cli {

class MediaJob;

struct WriteOptions {
  std::optional<std::string> root;
  std::optional<std::string> target;  // a directory instead of a disc
  std::optional<std::string> volume;
  bool isOverwriting = false;
  bool isSimulating = false;
  bool hasFullErase = false;
  bool isEjecting = true;
  bool isKeeping = false;
  bool showsProgress = true;
};

struct WriteResult {
  std::string root;
  std::optional<std::string> target;
  std::string volume;
  bool isSimulated = false;
  bool isWritten = false;
  bool isKept = false;  // the file set is still in its root
  std::optional<std::string> error;
  std::vector<std::string> remarks;
};

// Why such a delivery cannot be, as far as that is known before there is a file set: a sentence.
// Nothing is changed.
std::optional<std::string> reasonNotToWrite(const WriteOptions& options,
                                            const std::vector<std::string>& sources);

// The file set stays when it could not be written, when that is wanted and after a test run;
// otherwise it is wiped at the end. The job may be the one that created it.
WriteResult writeFileSet(const WriteOptions& options, MediaJob& job);

}  // namespace quillon::cli
