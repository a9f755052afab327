// What the handles of files and of enumerations point at.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/win32/files.h"

namespace quillon::platform {

// Every handle starts with its kind, so that one of another kind is refused, not misread.
enum class HandleKind : std::uint32_t { File = 0x46494C45, Find = 0x46494E44, Closed = 0 };

struct HandleBase {
  explicit HandleBase(HandleKind k) : kind(k) {}
  HandleKind kind;
};

struct FileHandle : HandleBase {
  FileHandle() : HandleBase(HandleKind::File) {}
  int descriptor = -1;
  // What the handle was opened for; the descriptor may be able to do more.
  bool mayRead = false;
  bool mayWrite = false;
  // Of a file that was opened to be read alone: what opening saw of it, for the question that comes
  // right behind it. Gone with that question or the first read.
  std::optional<struct stat> seenAtOpening;
  // Directory of a file that this handle made and whose name may not be on the disk yet.
  std::string unsyncedDirectory;
};

struct FindHandle : HandleBase {
  FindHandle() : HandleBase(HandleKind::Find) {}
  // Entries are looked at through the open directory: the caller may change the working directory
  // between two of them.
  int directory = -1;
  std::vector<std::string> names;
  std::size_t next = 0;
};

// Null, with the last error 6, for a handle of another kind.
FileHandle* fileOf(HANDLE handle);
FindHandle* findOf(HANDLE handle);

}  // namespace quillon::platform
