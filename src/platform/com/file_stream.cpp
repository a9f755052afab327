// The read-only stream over one file.
#include <limits>
#include <new>

#include "directory_storage.h"
#include "platform/com/com_object.h"
#include "platform/com/refusing.h"
#include "storage_stat.h"

namespace quillon::platform {
namespace {

class FileStream final : public ComObject<Refusing<IStream>, IID_IStream, IID_ISequentialStream> {
 public:
  explicit FileStream(std::u16string path) : path_(std::move(path)) {}

  HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG length, ULONG* read) override {
    if (read != nullptr) *read = 0;
    if (buffer == nullptr) return STG_E_INVALIDPOINTER;
    if (const HRESULT hr = open(); FAILED(hr)) return hr;
    DWORD got = 0;
    if (ReadFile(file_, buffer, length, &got, nullptr) == FALSE) {
      const HRESULT hr = storageResult(GetLastError());
      close();
      return hr;
    }
    position_ += got;
    if (read != nullptr) *read = got;
    if (got < length) close();
    return got < length ? S_FALSE : S_OK;
  }

  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                 ULARGE_INTEGER* newPosition) override {
    std::uint64_t base = 0;
    if (origin == STREAM_SEEK_CUR) {
      base = position_;
    } else if (origin == STREAM_SEEK_END) {
      STATSTG stat{};
      if (const HRESULT hr = Stat(&stat, STATFLAG_NONAME); FAILED(hr)) return hr;
      base = stat.cbSize.QuadPart;
    } else if (origin != STREAM_SEEK_SET) {
      return STG_E_INVALIDFUNCTION;
    }
    const auto distance = static_cast<std::uint64_t>(move.QuadPart);
    const std::uint64_t target = base + distance;
    const bool isBackwards = move.QuadPart < 0;
    if (isBackwards ? target > base : target < base) return STG_E_INVALIDFUNCTION;
    if (target > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return STG_E_INVALIDFUNCTION;
    }
    if (target != position_) close();
    position_ = target;
    if (newPosition != nullptr) newPosition->QuadPart = position_;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flag) override {
    return statOfPath(path_, flag, stat);
  }

 private:
  ~FileStream() override { close(); }

  HRESULT open() {
    if (file_ != INVALID_HANDLE_VALUE) return S_OK;
    file_ = CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                        FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file_ == INVALID_HANDLE_VALUE) return storageResult(GetLastError());
    LARGE_INTEGER distance{};
    distance.QuadPart = static_cast<LONGLONG>(position_);
    if (position_ == 0 || SetFilePointerEx(file_, distance, nullptr, FILE_BEGIN) != FALSE) {
      return S_OK;
    }
    close();
    return STG_E_SEEKERROR;
  }

  void close() {
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
    file_ = INVALID_HANDLE_VALUE;
  }

  std::u16string path_;
  std::uint64_t position_ = 0;
  HANDLE file_ = INVALID_HANDLE_VALUE;
};

}  // namespace

HRESULT openFileStream(std::u16string path, IStream** stream) {
  *stream = new (std::nothrow) FileStream(std::move(path));
  return *stream == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // namespace quillon::platform
