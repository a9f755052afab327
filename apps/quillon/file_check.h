// Judges one file before anything is copied or moved, so that no single file makes the creation of
// the file set fail half way.
#pragma once

#include <cstdint>
#include <string>

#include "object_fields.h"
#include "source_walk.h"

namespace quillon::cli {

enum class Verdict {
  Accept,
  PassOver,  // has no place in a file set
  NotDicom,  // as PassOver in a directory that is walked; a file that was named is refused
  Refuse,
};

struct FileCheck {
  Verdict verdict = Verdict::Accept;
  std::string reason;  // goes on after "PATH: "; empty when accepted
  ObjectFields fields;
  std::uint64_t sizeBytes = 0;
};

// `isMoved`: the media object will be handed this file itself and not a copy.
FileCheck checkFile(const SourceFile& file, bool isMoved);

}  // namespace quillon::cli
