// What Windows calls when the DLL is loaded.
#include "module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  return quillon::Module().IsInitialised() ? TRUE : FALSE;
}
