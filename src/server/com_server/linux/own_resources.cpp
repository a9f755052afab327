#include "own_resources.h"

#include "registrar_scripts.h"

namespace quillon {

std::string_view RegistrarScriptText(RegistrarScript script) {
  return script == RegistrarScript::AppId ? kAppIdScript : kClassScript;
}

// Nothing here reads type libraries, so the module has none: registering one would promise hosts a
// description that is not there. Late binding works from the table of the operations.
HRESULT RegisterOwnTypeLibrary() { return S_OK; }
HRESULT UnregisterOwnTypeLibrary() { return S_OK; }
UINT OwnTypeInfoCount() { return 0; }
HRESULT GetOwnTypeInfo(LCID, ITypeInfo** info) {
  *info = nullptr;
  return E_NOTIMPL;
}

}  // namespace quillon
