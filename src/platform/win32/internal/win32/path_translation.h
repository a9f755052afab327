// Turns a path as the product writes it into the native one. The one place that knows drives.
//
//   X:\rest    the drive directory of X and the rest. Drive directories are $QUILLON_DRIVES/x, by
//              default $XDG_DATA_HOME/quillon/drives/x (with ~/.local/share for XDG_DATA_HOME).
//              Drive C is made on first use; another drive exists when its directory or a link of
//              that name does.
//   X:, X:rest below the working directory when that is on drive X, else below the drive directory
//   \rest      below the directory of the drive that the working directory is on, else native
//   /rest, //server/share, \\server\share, relative paths: native
//
// In what follows "\" becomes "/".
//
// What Windows makes of names is not done here, because the files are there and their users mean
// them: a dot or space at the end of a name stays, NUL and COM1 are names like others, so are those
// with : * ? " < > and |, and a path may be longer than 260 units. Where a medium must not have
// such a name, the product itself refuses it.
#pragma once

#include <string>
#include <string_view>

#include "platform/win32/types.h"

namespace quillon::platform {

struct NativePath {
  std::string text;
  // Length of the drive directory's name at the start of text, 0 for a path without a drive.
  std::size_t driveLength = 0;
  char drive = 0;  // its letter, in capitals

  [[nodiscard]] const char* c_str() const { return text.c_str(); }
  // The directory that the last part lies in ("." for a bare name); empty for an empty path and for
  // a drive itself.
  [[nodiscard]] std::string parent() const;
};

NativePath translatePath(std::string_view bytes);
// A null text is an empty path, which no call finds.
NativePath translatePath(LPCWSTR wide);

// The working directory as it was entered: what "C:" and a leading "\" depend on, and what ".."
// leads back out of. After a link was entered, the kernel's ".." would lead to the parent of the
// link's target instead, out of the tree that is being walked.
NativePath workingDirectory();

}  // namespace quillon::platform
