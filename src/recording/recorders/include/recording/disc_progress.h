// Linux only: how far a disc operation is. The disc-mastering interfaces report through events that
// a program has to sink; a program of this layer sets one function instead.
#pragma once

#include <cstdint>
#include <functional>

namespace quillon::platform {

enum class DiscStage { Erasing, Writing, Closing };

struct DiscProgress {
  DiscStage stage = DiscStage::Writing;
  std::uint64_t sectorsDone = 0;
  std::uint64_t sectorsTotal = 0;
};

using DiscProgressCallback = std::function<void(const DiscProgress&)>;

// Sets the function that every erase and write of the process tells how far it is: at the start and
// the end of each stage, and at most about ten times a second in between, on the thread that
// writes. An empty function ends the reports. Takes effect with the next operation.
void SetDiscProgress(DiscProgressCallback callback);

}  // namespace quillon::platform
