#include "com/built_in_classes.h"

#include "platform/com/class_table.h"

namespace quillon::platform {

void registerBuiltInClasses() {}

}  // namespace quillon::platform
