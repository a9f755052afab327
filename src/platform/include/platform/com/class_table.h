// Linux only: the classes that the layer itself offers.
#pragma once

#include "platform/com/guid.h"
#include "platform/com/unknown.h"

namespace quillon::platform {

// Makes one object and answers the interface asked for, or E_NOINTERFACE and null. The classes of
// the layer do not aggregate: the table has refused an outer object before.
using CreateObject = HRESULT (*)(REFIID riid, void** object);

// Registers a class for the life of the process; the newest registration of a CLSID wins. Classes
// of the layer itself are registered in com/built_in_classes.cpp.
void RegisterBuiltInClass(REFCLSID clsid, CreateObject create);

}  // namespace quillon::platform
