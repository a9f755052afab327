// CTarnImapiVersion: which generation of the operating system's disc-mastering service is there.
#pragma once

#include "foundation/base_item.h"

namespace quillon {

enum class DiscMasteringGeneration : LONG { None = 0, Legacy = 1, Current = 2 };

class CTarnImapiVersion : public CBaseItem {
 public:
  // The one of the process, made on the first call.
  static CTarnImapiVersion& Instance();

  // Asks anew each time: a service may come and go while the process runs. False with None, and
  // without a sentence, when there is neither. The calling thread has initialised COM.
  [[nodiscard]] bool Detect(DiscMasteringGeneration& generation);

 private:
  CTarnImapiVersion();
};

}  // namespace quillon
