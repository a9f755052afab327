// The files of resources/stylesheets that make pages, as they are.
#pragma once

namespace quillon {

extern const char* const kShippedPagesXsl;
extern const char* const kShippedHtmlXsl;
extern const char* const kShippedPagesCss;

}  // namespace quillon
