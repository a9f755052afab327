// The page with the header of one object.
#pragma once

#include <string>

#include "foundation/text.h"
#include "pages/page_stylesheets.h"

namespace quillon {

// Of the file at path; above: the page that it leads back to. False, without a page, for a file
// that has changed beyond reading or has a header too large for a page that people can use.
[[nodiscard]] bool MakeHeaderPage(const Text& path, const std::string& characterSet,
                                  const Text& above, PageStylesheets& stylesheets,
                                  std::string& page);

}  // namespace quillon
