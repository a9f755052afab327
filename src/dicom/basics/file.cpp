#include "dicom/file.h"

#include <algorithm>
#include <utility>

#include "dicom/byte_source.h"
#include "platform/win32.h"

namespace quillon {
namespace {

// The most that one call is asked to move.
constexpr std::size_t kMaxChunkBytes = 1U << 30;

DWORD chunkOf(std::size_t bytes) { return static_cast<DWORD>(std::min(bytes, kMaxChunkBytes)); }

}  // namespace

DcFile::~DcFile() { static_cast<void>(close()); }

bool DcFile::open(const char* fileName, Mode mode) {
  static_cast<void>(close());
  DWORD access = GENERIC_READ;
  DWORD disposition = OPEN_EXISTING;
  if (mode == Mode::CreateOrTruncate) {
    access = GENERIC_WRITE;
    disposition = CREATE_ALWAYS;
  } else if (mode == Mode::CreateNew) {
    access = GENERIC_WRITE;
    disposition = CREATE_NEW;
  } else if (mode == Mode::Append) {
    access = FILE_APPEND_DATA;
    disposition = OPEN_ALWAYS;
  }
  const HANDLE handle = CreateFileA(fileName, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  handle_ = handle;
  return true;
}

void DcFile::open(DcByteSource& source) {
  static_cast<void>(close());
  source_ = &source;
  sourcePosition_ = 0;
}

bool DcFile::size(std::uint64_t& sizeBytes) const {
  if (source_ != nullptr) {
    sizeBytes = source_->sizeBytes();
    return true;
  }
  LARGE_INTEGER size{};
  if (GetFileSizeEx(handle_, &size) == 0) return false;
  sizeBytes = static_cast<std::uint64_t>(size.QuadPart);
  return true;
}

bool DcFile::ask(DcFileStatus& status) const {
  if (source_ != nullptr) {
    status = {};
    status.sizeBytes = source_->sizeBytes();
    return true;
  }
  BY_HANDLE_FILE_INFORMATION data{};
  if (GetFileInformationByHandle(handle_, &data) == 0) return false;
  const auto wide = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
  status = {wide(data.nFileSizeHigh, data.nFileSizeLow),
            wide(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime),
            data.dwVolumeSerialNumber, wide(data.nFileIndexHigh, data.nFileIndexLow),
            data.nNumberOfLinks};
  return true;
}

bool DcFile::seek(std::uint64_t offset) {
  if (source_ != nullptr) {
    sourcePosition_ = offset;
    return true;
  }
  LARGE_INTEGER distance{};
  distance.QuadPart = static_cast<LONGLONG>(offset);
  return SetFilePointerEx(handle_, distance, nullptr, FILE_BEGIN) != 0;
}

bool DcFile::read(void* buffer, std::size_t lengthBytes, std::size_t& readBytes) {
  readBytes = 0;
  if (source_ != nullptr) {
    const std::uint64_t sizeBytes = source_->sizeBytes();
    const std::uint64_t left = sourcePosition_ < sizeBytes ? sizeBytes - sourcePosition_ : 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(lengthBytes, left));
    if (wanted > 0 && !source_->readAt(sourcePosition_, buffer, wanted)) return false;
    sourcePosition_ += wanted;
    readBytes = wanted;
    return true;
  }
  while (readBytes < lengthBytes) {
    DWORD got = 0;
    if (ReadFile(handle_, static_cast<char*>(buffer) + readBytes, chunkOf(lengthBytes - readBytes),
                 &got, nullptr) == 0) {
      return false;
    }
    if (got == 0) break;  // end of the file
    readBytes += got;
  }
  return true;
}

bool DcFile::write(const void* buffer, std::size_t lengthBytes) {
  std::size_t written = 0;
  while (written < lengthBytes) {
    DWORD put = 0;
    if (WriteFile(handle_, static_cast<const char*>(buffer) + written,
                  chunkOf(lengthBytes - written), &put, nullptr) == 0 ||
        put == 0) {
      return false;
    }
    written += put;
  }
  return true;
}

bool DcFile::flush() { return FlushFileBuffers(handle_) != 0; }

bool DcFile::close() {
  source_ = nullptr;
  if (handle_ == nullptr) return true;
  return CloseHandle(std::exchange(handle_, nullptr)) != 0;
}

bool DcFile::status(const char* fileName, std::uint64_t& sizeBytes) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExA(fileName, GetFileExInfoStandard, &data) == 0) return false;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return false;
  }
  sizeBytes = (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
  return true;
}

bool DcFile::isReplaceable(const char* fileName) {
  const DWORD attributes = GetFileAttributesA(fileName);
  return attributes == INVALID_FILE_ATTRIBUTES ||
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

bool DcFile::replace(const char* fileName, const char* newName) {
  return MoveFileExA(fileName, newName, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool DcFile::remove(const char* fileName) { return DeleteFileA(fileName) != 0; }

}  // namespace quillon
