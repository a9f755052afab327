#include "classes.h"

#include "platform/com/class_table.h"
#include "platform/xml.h"

using namespace quillon;
using namespace quillon::platform;

extern "C" bool quillon_xml_classes;
bool quillon_xml_classes = RegisterBuiltInClasses(
    {{kClsidDomDocument, createDomDocument}, {kClsidXmlHttp, createHttpRequest}});
