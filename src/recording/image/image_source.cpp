#include "image/image_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "image/image_results.h"
#include "image/image_time.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

HRESULT unreadable(const LayoutEntry& entry) {
  return refuseImage(IMAPI_E_DATA_STREAM_READ_FAILURE, u"The file cannot be read",
                     wideFromNative(entry.source.path));
}

HRESULT changed(const LayoutEntry& entry) {
  return refuseImage(IMAPI_E_DATA_STREAM_INCONSISTENCY,
                     u"The file has changed since it was added to the image",
                     wideFromNative(entry.source.path));
}

bool isAsAdded(int descriptor, const LayoutEntry& entry) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
         static_cast<std::uint64_t>(status.st_size) == entry.size &&
         status.st_mtim.tv_sec == entry.source.modified.tv_sec &&
         status.st_mtim.tv_nsec == entry.source.modified.tv_nsec;
}

// After its last byte. The stream has nothing more to give; one that holds a file open lets go of
// it when it has said so.
bool streamIsAsAdded(const LayoutEntry& entry) {
  std::uint8_t beyond = 0;
  ULONG got = 0;
  return SUCCEEDED(entry.source.stream->Read(&beyond, 1, &got)) && got == 0 &&
         isStreamAsAdded(entry.source, entry.size);
}

HRESULT readStream(const LayoutEntry& entry, std::uint64_t offset, std::uint8_t* buffer,
                   std::uint32_t length) {
  IStream& stream = *entry.source.stream;
  LARGE_INTEGER position{};
  position.QuadPart = static_cast<LONGLONG>(offset);
  if (FAILED(stream.Seek(position, STREAM_SEEK_SET, nullptr))) return unreadable(entry);
  std::uint32_t done = 0;
  while (done < length) {
    ULONG got = 0;
    if (FAILED(stream.Read(buffer + done, length - done, &got))) return unreadable(entry);
    if (got == 0) return changed(entry);
    done += got;
  }
  return offset + length < entry.size || streamIsAsAdded(entry) ? S_OK : changed(entry);
}

}  // namespace

bool isStreamAsAdded(const FileSource& source, std::uint64_t size) {
  if (source.modified.tv_sec == 0) return true;
  STATSTG stat{};
  if (FAILED(source.stream->Stat(&stat, STATFLAG_NONAME))) return false;
  const timespec modified = timeSpecOfFileTime(stat.mtime);
  return stat.cbSize.QuadPart == size && modified.tv_sec == source.modified.tv_sec &&
         modified.tv_nsec == source.modified.tv_nsec;
}

HRESULT SourceReader::read(const LayoutEntry& entry, std::uint64_t offset, std::uint8_t* buffer,
                           std::uint32_t length) {
  if (entry.source.stream) return readStream(entry, offset, buffer, length);
  const HRESULT hr = readFile(entry, offset, buffer, length);
  if (FAILED(hr)) close();
  return hr;
}

HRESULT SourceReader::readFile(const LayoutEntry& entry, std::uint64_t offset, std::uint8_t* buffer,
                               std::uint32_t length) {
  if (const HRESULT hr = open(entry); FAILED(hr)) return hr;
  std::uint32_t done = 0;
  while (done < length) {
    const ssize_t got =
        ::pread(descriptor_, buffer + done, length - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return unreadable(entry);
    if (got == 0) return changed(entry);
    done += static_cast<std::uint32_t>(got);
  }
  if (offset + length < entry.size) return S_OK;
  // A file that somebody wrote to while it was read may be half old, half new.
  if (!isAsAdded(descriptor_, entry)) return changed(entry);
  close();
  return S_OK;
}

HRESULT SourceReader::open(const LayoutEntry& entry) {
  if (open_ == &entry) return S_OK;
  close();
  descriptor_ = ::open(entry.source.path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor_ < 0) return unreadable(entry);
  open_ = &entry;
  return isAsAdded(descriptor_, entry) ? S_OK : changed(entry);
}

void SourceReader::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
  open_ = nullptr;
}

}  // namespace quillon::platform
