// What UIDs stand for, for those who read a header: the standard's names of storage classes and
// transfer syntaxes, and of others what the dictionary says.
#pragma once

#include "foundation/text.h"

namespace quillon {

// Empty for a UID that is not known: most of them are instances.
Text UidName(TextView uid);

}  // namespace quillon
