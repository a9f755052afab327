// A stream that can do nothing yet: tests override the methods that matter to them.
#pragma once

#include "platform/com/com_object.h"
#include "platform/com/refusing.h"

namespace quillon::test {

using StubStream = ComObject<Refusing<IStream>, IID_IStream, IID_ISequentialStream>;

}  // namespace quillon::test
