#include "com/built_in_classes.h"

#include "discmastering/image/file_system_image.h"
#include "discmastering/imapi2_classes.h"
#include "discmastering/legacy/legacy_classes.h"
#include "platform/com/class_table.h"
#include "platform/imapi.h"
#include "platform/imapi2.h"
#include "platform/xml.h"
#include "xml/dom_document.h"
#include "xml/http_request.h"

namespace quillon::platform {

void registerBuiltInClasses() {
  RegisterBuiltInClass(kClsidDomDocument, createDomDocument);
  RegisterBuiltInClass(kClsidXmlHttp, createHttpRequest);
  RegisterBuiltInClass(CLSID_MsftDiscMaster2, createDiscMaster2);
  RegisterBuiltInClass(CLSID_MsftDiscRecorder2, createDiscRecorder2);
  RegisterBuiltInClass(CLSID_MsftDiscFormat2Data, createDiscFormat2Data);
  RegisterBuiltInClass(CLSID_MsftDiscFormat2Erase, createDiscFormat2Erase);
  RegisterBuiltInClass(CLSID_MsftFileSystemImage, createFileSystemImage);
  RegisterBuiltInClass(CLSID_MSDiscMasterObj, createLegacyDiscMaster);
  RegisterBuiltInClass(CLSID_CDBurn, createShellBurner);
}

}  // namespace quillon::platform
