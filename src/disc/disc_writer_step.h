// How every step of the disc writer ends a failure.
#pragma once

#include "disc/disc_writer.h"

namespace quillon {

// step answers false with the writer's error text set, or without one: then the summary message,
// with the device's name, stands for it. A failed step leaves nothing staged and no object held.
template <typename Step>
bool CTarnDiscWriter::RunStep(UINT summary, const Step& step) {
  ClearError();
  if (step()) return true;
  if (ErrorMessage().empty()) FailForDevice(summary);
  ReleaseAll();
  return false;
}

}  // namespace quillon
