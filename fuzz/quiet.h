// Hostile input logs a line for nearly every byte: not wanted on the fuzzer's output.
#pragma once

#include "dicom/dict.h"
#include "dicom/elem.h"
#include "dicom/log.h"

namespace quillon::fuzz {

inline bool quiet() {
  theDictionary();
  for (int level = 0; level < kDcLogLevels; ++level) {
    dcTheLog()->enable(static_cast<DcLogLevel>(level), false);
  }
  return true;
}

}  // namespace quillon::fuzz
