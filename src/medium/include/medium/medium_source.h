// A medium as one who got it reads it: a directory or mounted disc, an image, an archive. Nothing
// is ever written. What lies there may be made to harm: names that lead outside, links, loops and
// lying sizes are told or passed over, never followed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/base_item.h"
#include "foundation/text.h"

namespace quillon {

struct MediumEntry {
  enum class Kind : std::uint8_t { File, Directory, Link, Other };

  // Below the medium's root, its parts joined with backslashes, as in a File ID; as the medium
  // spells it.
  Text path;
  std::uint64_t sizeBytes = 0;  // of a file
  Kind kind = Kind::File;
};

// One opened file of a medium, which must outlive it.
class MediumFile {
 public:
  virtual ~MediumFile() = default;
  [[nodiscard]] virtual std::uint64_t SizeBytes() const = 0;
  // The bytes [offset, offset + count). False when not all of them can be had.
  [[nodiscard]] virtual bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) = 0;
};

class MediumSource : public CBaseItem {
 public:
  // Everything on the medium but its root, directories before what they hold, in the order of the
  // medium. False, with a sentence, when a directory cannot be read or there is no end of them;
  // what was found until then stands in entries.
  [[nodiscard]] virtual bool List(std::vector<MediumEntry>& entries) = 0;
  // path: as in an entry of the kind File. Null, with a sentence, when it cannot be opened.
  [[nodiscard]] virtual std::unique_ptr<MediumFile> Open(TextView path) = 0;
};

// The medium at a path, of whatever kind lies there. Null, with a sentence in errors, when there is
// none that can be read.
// password: of a ZIP file that is encrypted; without one its files cannot be opened.
[[nodiscard]] std::unique_ptr<MediumSource> OpenMedium(TextView path, CBaseItem& errors,
                                                       const std::string& password = {});

}  // namespace quillon
