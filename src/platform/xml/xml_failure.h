// Why a document could not be read or transformed, as IXMLDOMParseError tells it.
#pragma once

#include <string>

#include "platform/com.h"

namespace quillon::platform {

struct XmlFailure {
  LONG code = 0;  // 0 for none
  std::u16string reason;
  std::u16string url;         // where the document came from, empty for text
  std::u16string sourceLine;  // the line that the error is in
  LONG line = 0;              // from 1; 0 when the error has no place
  LONG column = 0;            // from 1
  LONG offset = 0;            // of the place, from the start of the document
};

}  // namespace quillon::platform
