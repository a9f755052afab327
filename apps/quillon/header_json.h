// A header as JSON.
#pragma once

#include "foundation/text.h"
#include "json_output.h"

namespace quillon::cli {

// Adds the members "charset", "code_page" and "elements", of the XML that a header is printed from;
// all null of an empty one.
void addDataSet(Json& object, TextView headerXml);

}  // namespace quillon::cli
