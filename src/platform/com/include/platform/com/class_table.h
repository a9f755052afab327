// Linux only: the classes that this code itself offers.
#pragma once

#include <initializer_list>

#include "platform/com/guid.h"
#include "platform/com/unknown.h"

namespace quillon::platform {

// Makes one object and answers the interface asked for, or E_NOINTERFACE and null. The classes do
// not aggregate: the table has refused an outer object before.
using CreateObject = HRESULT (*)(REFIID riid, void** object);

struct BuiltInClass {
  CLSID clsid;
  CreateObject create;
};

// Registers classes for the life of the process; the newest registration of a CLSID wins. A folder
// with classes has one file, classes.cpp, that does it for a constant, when the program starts.
// Answers true, always.
bool RegisterBuiltInClasses(std::initializer_list<BuiltInClass> classes);

}  // namespace quillon::platform
