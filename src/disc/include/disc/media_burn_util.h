// CMediaBurnUtil: asks the shell whether the machine has a drive that records.
#pragma once

#include "disc/legacy_item.h"
#include "platform/imapi.h"

namespace quillon {

class CMediaBurnUtil : public CLegacyItem<ICDBurn> {
 public:
  CMediaBurnUtil();

  // False for an answer of no, without a sentence, and for a failed question, with one.
  [[nodiscard]] bool HasRecordableDrive();
};

}  // namespace quillon
