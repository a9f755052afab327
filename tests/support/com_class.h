// Classes of the tests' own in the process's class table.
#pragma once

#include <functional>

#include "platform/com.h"

namespace quillon::test {

// Makes one object and answers the interface asked for.
using CreateObject = std::function<HRESULT(REFIID, void**)>;

// Answers what CoRevokeClassObject takes. Windows finds the class only from the apartment that has
// registered it, and of two registrations takes either: register a class once, where it is created.
DWORD registerClass(REFCLSID clsid, CreateObject create);

// Hides a class that the layer itself offers, so that creating it fails.
class HiddenClass {
 public:
  explicit HiddenClass(REFCLSID clsid);
  ~HiddenClass();
  HiddenClass(const HiddenClass&) = delete;
  HiddenClass& operator=(const HiddenClass&) = delete;

 private:
  DWORD cookie_ = 0;
};

}  // namespace quillon::test
