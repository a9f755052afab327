#include "disc/imapi_version.h"

#include "platform/imapi.h"
#include "platform/imapi2.h"

namespace quillon {
namespace {

template <typename Interface>
bool CanCreate(REFCLSID clsid, REFIID iid) {
  ComPtr<Interface> probe;
  return SUCCEEDED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, iid,
                                    probe.PutVoid()));
}

}  // namespace

CTarnImapiVersion::CTarnImapiVersion() { SetClassName(OLESTR("CTarnImapiVersion")); }

CTarnImapiVersion& CTarnImapiVersion::Instance() {
  static CTarnImapiVersion instance;
  return instance;
}

bool CTarnImapiVersion::Detect(DiscMasteringGeneration& generation) {
  generation = DiscMasteringGeneration::None;
  if (CanCreate<IDiscMaster2>(CLSID_MsftDiscMaster2, IID_IDiscMaster2)) {
    generation = DiscMasteringGeneration::Current;
  } else if (CanCreate<IDiscMaster>(CLSID_MSDiscMasterObj, IID_IDiscMaster)) {
    generation = DiscMasteringGeneration::Legacy;
  }
  return generation != DiscMasteringGeneration::None;
}

}  // namespace quillon
