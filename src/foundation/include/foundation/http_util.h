// Fetches the text behind an http or https URL with one GET request.
#pragma once

#include "foundation/base_item.h"

namespace quillon {

class CHttpUtil : public CBaseItem {
 public:
  CHttpUtil();

  // True with the body as text for a status from 200 to 299. While the server answers that it is
  // busy (409) the request is made again after 3 seconds, ten times at most. False with a sentence,
  // and out empty, for an empty URL, a request that cannot be made and any other status.
  [[nodiscard]] bool Fetch(TextView url, Text& out);
};

}  // namespace quillon
