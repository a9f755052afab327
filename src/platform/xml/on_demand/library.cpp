// What a library that is loaded on demand exports: the making of its class, which the build names.
// It carries a copy of the layer, as every server does, and shares objects and texts with the
// program.
#include "classes.h"

using namespace quillon::platform;

// The program registers the classes, so the file that does it for others is not linked.
extern "C" bool quillon_xml_classes;
bool quillon_xml_classes = true;

extern "C" HRESULT quillonCreateObject(REFIID riid, void** object);
HRESULT quillonCreateObject(REFIID riid, void** object) {
  return QUILLON_CREATE_OBJECT(riid, object);
}
