// The header of a data set for a terminal.
#pragma once

#include "foundation/text.h"

namespace quillon {

// Makes of the XML that CDicomUtil::GetHeaderXml writes what resources/stylesheets/text.xsl makes
// of it, to the last character: tag, VR, name and value in columns, the items of a sequence below
// it, two columns further in. Takes about a fiftieth of the instructions, and needs no XML library.
Text HeaderTextOf(TextView headerXml);

}  // namespace quillon
