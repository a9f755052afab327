// The classes DOMDocument and XMLHTTP for a program that seldom makes one: the libraries that they
// stand on take longer to load than most of what it does, so they come with the first object. Takes
// the place of classes.cpp, by defining the same symbol.
#include <dlfcn.h>

#include "platform/com/class_table.h"
#include "platform/win32.h"
#include "platform/xml.h"
#include "win32/own_library.h"

using namespace quillon;
using namespace quillon::platform;

namespace {

// Null when it cannot be loaded.
CreateObject fromLibrary(const char* name) {
  void* const library = openOwnLibrary(name).handle;
  if (library == nullptr) return nullptr;
  return reinterpret_cast<CreateObject>(::dlsym(library, "quillonCreateObject"));
}

HRESULT create(CreateObject creator, REFIID riid, void** object) {
  if (creator != nullptr) return creator(riid, object);
  SetLastError(ERROR_MOD_NOT_FOUND);
  return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
}

HRESULT createDom(REFIID riid, void** object) {
  static const CreateObject creator = fromLibrary("libquillon_xml.so");
  return create(creator, riid, object);
}

HRESULT createHttp(REFIID riid, void** object) {
  static const CreateObject creator = fromLibrary("libquillon_http.so");
  return create(creator, riid, object);
}

}  // namespace

extern "C" bool quillon_xml_classes;
bool quillon_xml_classes =
    RegisterBuiltInClasses({{kClsidDomDocument, createDom}, {kClsidXmlHttp, createHttp}});
