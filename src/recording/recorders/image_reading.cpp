#include "recorders/image_reading.h"

#include <algorithm>

#include "recorders/disc_operations.h"
#include "recorders/progress.h"

namespace quillon::platform {

std::size_t blockAt(std::uint64_t position, std::uint64_t total) {
  return static_cast<std::size_t>(std::min<std::uint64_t>(kRunBlockBytes, total - position));
}

DiscResult takeBlock(const WriteRequest& request, std::vector<char>& block, std::size_t wanted) {
  std::size_t got = 0;
  while (got < wanted) {
    if (areOperationsStopped()) return E_IMAPI_REQUEST_CANCELLED;
    ULONG read = 0;
    const HRESULT hr =
        request.image->Read(block.data() + got, static_cast<ULONG>(wanted - got), &read);
    if (FAILED(hr)) return hr;
    if (read == 0) {
      return {E_IMAPI_DF2DATA_STREAM_NOT_SUPPORTED,
              u"The stream ended before the size that it had given."};
    }
    got += read;
  }
  return S_OK;
}

DiscResult testRun(const WriteRequest& request) {
  std::vector<char> block(kRunBlockBytes);
  const std::uint64_t total = request.sectors * kSectorBytes;
  ProgressReporter progress(request.progress, DiscStage::Writing, request.sectors);
  for (std::uint64_t position = 0; position < total;) {
    const std::size_t bytes = blockAt(position, total);
    DiscResult result = takeBlock(request, block, bytes);
    if (result.failed()) return result;
    position += bytes;
    progress.reach(position / kSectorBytes);
  }
  return S_OK;
}

}  // namespace quillon::platform
