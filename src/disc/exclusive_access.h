// Locks a drive around some work; it is unlocked whatever the work's outcome is.
#pragma once

#include "disc/tarnimapiutil.h"

namespace quillon {

// work answers false with owner's error text set. A drive that cannot be unlocked is a failure too,
// whose text serves only when the work has left none.
template <typename Work>
[[nodiscard]] bool WithExclusiveAccess(CBaseItem& owner, CDiscRecorder2& recorder, bool force,
                                       const Text& clientName, const Work& work) {
  if (!recorder.AcquireExclusiveAccess(force, clientName)) return owner.FailAs(recorder);
  bool done = false;
  try {
    done = work();
  } catch (...) {  // out of memory: the drive would stay locked
    static_cast<void>(recorder.ReleaseExclusiveAccess());
    throw;
  }
  if (recorder.ReleaseExclusiveAccess()) return done;
  return owner.ErrorMessage().empty() ? owner.FailAs(recorder) : false;
}

}  // namespace quillon
