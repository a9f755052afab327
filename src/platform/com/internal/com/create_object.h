// Makes an object for the class table.
#pragma once

#include "com/method_results.h"

namespace quillon::platform {

template <typename Class>
HRESULT createObject(REFIID riid, void** object) {
  return withoutExceptions([&] {
    ComPtr<Class> made;
    made.Attach(new Class);
    return made->QueryInterface(riid, object);
  });
}

}  // namespace quillon::platform
