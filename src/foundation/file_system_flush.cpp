#include "foundation/file_system_flush.h"

#include "file_identity.h"
#include "platform/services.h"

namespace quillon {

namespace {

HANDLE OpenDirectory(const Text& directory) {
  if (!kFlushesFileSystems) return INVALID_HANDLE_VALUE;
  return CreateFileW(directory.c_str(), GENERIC_READ,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

}  // namespace

FileSystemFlush::FileSystemFlush(TextView directory)
    : directory_(directory), handle_(OpenDirectory(directory_)) {
  FileIdentity identity;
  if (handle_.IsOpen() && ReadIdentity(handle_.Get(), identity)) {
    volume_ = identity.volume;
  } else {
    static_cast<void>(handle_.Close());  // nothing was done with it
  }
}

bool FileSystemFlush::Covers(HANDLE file) const {
  FileIdentity identity;
  return IsPossible() && ReadIdentity(file, identity) && identity.volume == volume_;
}

bool FileSystemFlush::Flush() { return FlushFileSystem(handle_.Get()) != FALSE; }

}  // namespace quillon
