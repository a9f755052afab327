// The threads' apartments, and the memory that COM shares.
#include "apartment.h"

#include <cstdlib>

#include "platform/com/runtime.h"

namespace {

struct Apartment {
  DWORD mode = 0;
  unsigned entries = 0;
};

thread_local Apartment apartment;

}  // namespace

namespace quillon::platform {
bool isComInitialized() { return apartment.entries > 0; }
}  // namespace quillon::platform

HRESULT CoInitialize(LPVOID reserved) { return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED); }

HRESULT CoInitializeEx(LPVOID reserved, DWORD mode) {
  if (reserved != nullptr) return E_INVALIDARG;
  mode &= COINIT_APARTMENTTHREADED;
  if (apartment.entries > 0 && apartment.mode != mode) return RPC_E_CHANGED_MODE;
  apartment.mode = mode;
  return apartment.entries++ == 0 ? S_OK : S_FALSE;
}

void CoUninitialize() {
  if (apartment.entries > 0) --apartment.entries;
}

LPVOID CoTaskMemAlloc(SIZE_T sizeBytes) { return std::malloc(sizeBytes == 0 ? 1 : sizeBytes); }

LPVOID CoTaskMemRealloc(LPVOID memory, SIZE_T sizeBytes) {
  if (memory == nullptr || sizeBytes > 0)
    return std::realloc(memory, sizeBytes == 0 ? 1 : sizeBytes);
  std::free(memory);
  return nullptr;
}

void CoTaskMemFree(LPVOID memory) { std::free(memory); }
