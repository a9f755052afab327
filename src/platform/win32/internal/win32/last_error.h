// What an errno of Linux is called on Windows.
#pragma once

#include "platform/win32/errors.h"
#include "win32/path_translation.h"

namespace quillon::platform {

// The code that an errno stands for whatever the call was; what the table does not know becomes
// ERROR_INVALID_FUNCTION.
DWORD codeOfErrno(int error);

// The code for a call on a path: a missing last part is 2, a missing or unusable directory above it
// 3. May look at the disk, so error is passed in.
DWORD codeOfErrno(int error, const NativePath& path);

// Sets the last error and answers FALSE, so that a failing call can end with it.
BOOL failWith(DWORD code);
BOOL failWithErrno(int error);
BOOL failWithErrno(int error, const NativePath& path);

}  // namespace quillon::platform
