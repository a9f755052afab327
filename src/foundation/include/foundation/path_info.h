// The four parts of one path.
#pragma once

#include "foundation/base_item.h"

namespace quillon {

class CPathInfo : public CBaseItem {
 public:
  CPathInfo();
  // Drive ("C:" or empty), directory (up to and with the last separator), file name, extension
  // (with its dot). False, with a sentence, for an empty path or one over 260 characters.
  [[nodiscard]] bool Split(TextView path);

  [[nodiscard]] const Text& Drive() const { return drive_; }
  [[nodiscard]] const Text& Directory() const { return directory_; }
  [[nodiscard]] const Text& FileName() const { return fileName_; }
  [[nodiscard]] const Text& Extension() const { return extension_; }

 private:
  Text drive_;
  Text directory_;
  Text fileName_;
  Text extension_;
};

}  // namespace quillon
