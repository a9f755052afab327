// Registrar scripts: what a server writes into the registry, as a tree of keys.
//
//   HKCR
//   {
//     NoRemove CLSID              kept on unregistration; the keys below are gone through
//     {
//       ForceRemove '%CLSID%' = s 'Default value'    replaced whole on registration
//       {
//         Key = s 'Default value of a subkey'
//         val Name = s 'named value'
//       }
//     }
//   }
//
// Words end at white space; texts in apostrophes ('' is an apostrophe) may hold anything. %NAME%
// stands for a replacement value in either. A key without a prefix is made when it is missing, and
// removed with all below it on unregistration.
#pragma once

#include <span>
#include <string_view>

#include "foundation/text.h"

namespace quillon {

struct Replacement {
  TextView name;
  Text value;
};

enum class ScriptUse {
  Register,    // undone when it fails
  Renew,       // over a registration that works, and does so still when it fails
  Unregister,  // what is not there need not be removed
};

// E_FAIL for a text that is no script, nothing has happened then; otherwise the registry's code.
[[nodiscard]] HRESULT RunRegistrarScript(std::string_view script, ScriptUse use,
                                         std::span<const Replacement> replacements);

}  // namespace quillon
