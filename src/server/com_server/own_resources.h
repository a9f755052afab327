// What the module carries beside its code: the registrar scripts and, on Windows, the type library.
#pragma once

#include <string_view>

#include "server/com_server/quillon_media_rw.h"

namespace quillon {

enum class RegistrarScript { AppId, Class };

// The script's text, in ASCII; empty when the module has none.
std::string_view RegistrarScriptText(RegistrarScript script);

// S_OK where there is no type library, or none is registered.
[[nodiscard]] HRESULT RegisterOwnTypeLibrary();
[[nodiscard]] HRESULT UnregisterOwnTypeLibrary();
// How many type descriptions the object has (0 or 1), and the one of the interface.
UINT OwnTypeInfoCount();
[[nodiscard]] HRESULT GetOwnTypeInfo(LCID lcid, ITypeInfo** info);

}  // namespace quillon
