#include "classes.h"

#include "platform/com/class_table.h"
#include "platform/imapi2.h"

using namespace quillon::platform;

extern "C" bool quillon_disc_service_classes;
bool quillon_disc_service_classes =
    RegisterBuiltInClasses({{CLSID_MsftDiscMaster2, createDiscMaster2},
                            {CLSID_MsftDiscRecorder2, createDiscRecorder2},
                            {CLSID_MsftDiscFormat2Data, createDiscFormat2Data},
                            {CLSID_MsftDiscFormat2Erase, createDiscFormat2Erase},
                            {CLSID_MsftFileSystemImage, createFileSystemImage}});
