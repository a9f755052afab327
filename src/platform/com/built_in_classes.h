// The classes that the layer offers by itself.
#pragma once

namespace quillon::platform {

// Called once, before the table is first searched. The names in its body are what makes the linker
// take the classes out of the static library: a class that is not named here would not be in it.
void registerBuiltInClasses();

}  // namespace quillon::platform
