#include "com/built_in_classes.h"

#include "platform/com/class_table.h"
#include "platform/xml.h"
#include "xml/dom_document.h"
#include "xml/http_request.h"

namespace quillon::platform {

void registerBuiltInClasses() {
  RegisterBuiltInClass(kClsidDomDocument, createDomDocument);
  RegisterBuiltInClass(kClsidXmlHttp, createHttpRequest);
}

}  // namespace quillon::platform
