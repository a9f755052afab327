// The enumerators of the legacy service.
#pragma once

#include "com/list_enumerator.h"
#include "platform/imapi.h"

namespace quillon::platform {

inline bool giveFormat(const IID& element, IID* target) {
  *target = element;
  return true;
}
inline bool giveRecorder(const ComPtr<IDiscRecorder>& element, IDiscRecorder** target) {
  *target = ComPtr<IDiscRecorder>(element).Detach();
  return true;
}

using RecorderEnumerator = ListEnumerator<IEnumDiscRecorders, IID_IEnumDiscRecorders,
                                          ComPtr<IDiscRecorder>, IDiscRecorder*, giveRecorder>;
using FormatEnumerator =
    ListEnumerator<IEnumDiscMasterFormats, IID_IEnumDiscMasterFormats, IID, IID, giveFormat>;

}  // namespace quillon::platform
