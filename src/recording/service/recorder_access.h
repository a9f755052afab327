// From the interface to the recorder behind it.
#pragma once

#include "recorders/recorder.h"

namespace quillon::platform {

// The recorder of an IDiscRecorder2 object of this layer, owned by that object; null for an object
// of another make and for one that has not been initialised.
Recorder* recorderOf(IDiscRecorder2* object);

}  // namespace quillon::platform
