// The names of the operating system that the product calls: on Windows its own headers, on Linux
// the declarations of this layer. This header and com.h are the only places that ask which.
#pragma once

#ifdef _WIN32
// All of Windows' headers are read before the first #undef: some define inline functions that still
// need the macros.
#include <windows.h>

#include <comdef.h>
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#include <propidl.h>
#include <shlobj.h>

#include "platform/win32/unclaim_names.h"
#else
#include "platform/win32/errors.h"
#include "platform/win32/files.h"
#include "platform/win32/registry.h"
#include "platform/win32/system.h"
#include "platform/win32/text.h"
#include "platform/win32/types.h"
#endif
