// The read-only stream over one file.
#include <algorithm>
#include <limits>
#include <new>
#include <vector>

#include "directory_storage.h"
#include "platform/com/com_object.h"
#include "storage_stat.h"

namespace quillon::platform {
namespace {

constexpr ULONG kCopyBlockBytes = 65536;

class FileStream final : public ComObject<IStream, IID_IStream, IID_ISequentialStream> {
 public:
  FileStream(std::u16string path, std::uint64_t position)
      : path_(std::move(path)), position_(position) {}

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

  HRESULT STDMETHODCALLTYPE CopyTo(IStream* target, ULARGE_INTEGER length, ULARGE_INTEGER* read,
                                   ULARGE_INTEGER* written) override {
    std::uint64_t in = 0;
    std::uint64_t out = 0;
    const HRESULT hr = copyTo(target, length.QuadPart, in, out);
    if (read != nullptr) read->QuadPart = in;
    if (written != nullptr) written->QuadPart = out;
    return hr;
  }

  HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flag) override {
    return statOfPath(path_, flag, stat);
  }

  HRESULT STDMETHODCALLTYPE Clone(IStream** copy) override {
    if (copy == nullptr) return STG_E_INVALIDPOINTER;
    *copy = new (std::nothrow) FileStream(path_, position_);
    return *copy == nullptr ? E_OUTOFMEMORY : S_OK;
  }

  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Revert() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG* written) override {
    if (written != nullptr) *written = 0;
    return STG_E_ACCESSDENIED;
  }
  HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return STG_E_ACCESSDENIED; }
  HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
    return STG_E_INVALIDFUNCTION;
  }
  HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
    return STG_E_INVALIDFUNCTION;
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

  HRESULT copyTo(IStream* target, std::uint64_t length, std::uint64_t& in, std::uint64_t& out) {
    if (target == nullptr) return STG_E_INVALIDPOINTER;
    std::vector<std::uint8_t> block(kCopyBlockBytes);
    while (in < length) {
      const auto wanted = static_cast<ULONG>(std::min<std::uint64_t>(block.size(), length - in));
      ULONG got = 0;
      const HRESULT hr = Read(block.data(), wanted, &got);
      if (FAILED(hr)) return hr;
      in += got;
      ULONG put = 0;
      if (got > 0) {
        const HRESULT wrote = target->Write(block.data(), got, &put);
        out += put;
        if (FAILED(wrote)) return wrote;
      }
      if (got < wanted) break;
    }
    return S_OK;
  }

  std::u16string path_;
  std::uint64_t position_;
  HANDLE file_ = INVALID_HANDLE_VALUE;
};

}  // namespace

HRESULT openFileStream(std::u16string path, IStream** stream) {
  *stream = new (std::nothrow) FileStream(std::move(path), 0);
  return *stream == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // namespace quillon::platform
