#include "classes.h"

#include "platform/com/class_table.h"
#include "platform/imapi.h"

using namespace quillon::platform;

extern "C" bool quillon_legacy_disc_service_classes;
bool quillon_legacy_disc_service_classes = RegisterBuiltInClasses(
    {{CLSID_MSDiscMasterObj, createLegacyDiscMaster}, {CLSID_CDBurn, createShellBurner}});
