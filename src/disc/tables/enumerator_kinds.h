// One table for each kind of code.
#pragma once

#include "disc/imapi2_enumerator.h"

namespace quillon {

extern const EnumeratorKind kFsiFileSystemsKind;
extern const EnumeratorKind kMediaStateKind;
extern const EnumeratorKind kWriteProtectStateKind;
extern const EnumeratorKind kPhysicalMediaTypeKind;
extern const EnumeratorKind kPageTypeKind;
extern const EnumeratorKind kProfileTypeKind;
extern const EnumeratorKind kFeaturePageTypeKind;

}  // namespace quillon
