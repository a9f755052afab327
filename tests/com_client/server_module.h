// The server as a library, beside the way through CoCreateInstance: its exports, its class factory.
#pragma once

#include "values.h"

namespace quillon::client {

class ServerModule {
 public:
  ServerModule() = default;
  ServerModule(const ServerModule&) = delete;
  ServerModule& operator=(const ServerModule&) = delete;

  // False when the library is not there, or lacks one of the four exports.
  bool Load(const std::string& path);

  HRESULT CanUnload() const { return canUnloadNow_(); }
  HRESULT Register() const { return register_(); }
  HRESULT Unregister() const { return unregister_(); }
  HRESULT ClassObject(REFCLSID clsid, REFIID riid, void** object) const {
    return getClassObject_(clsid, riid, object);
  }

 private:
  HRESULT(STDAPICALLTYPE* canUnloadNow_)() = nullptr;
  HRESULT(STDAPICALLTYPE* register_)() = nullptr;
  HRESULT(STDAPICALLTYPE* unregister_)() = nullptr;
  HRESULT(STDAPICALLTYPE* getClassObject_)(REFCLSID, REFIID, void**) = nullptr;
};

// Makes an object a part of an outer one and asks it for its identity; the steps' results.
std::string aggregate(const ServerModule& module);

// The keys and values that registration writes, with the module's path as $MODULE.
std::string registryListing();

// What the type library in a module says, in the form of operationTable; the failure otherwise.
std::string typeLibraryTable(const std::string& path);

}  // namespace quillon::client
