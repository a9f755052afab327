// The names of COM and automation that the product calls: on Windows its own headers (win32.h has
// brought them in), on Linux the declarations of this layer.
#pragma once

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/com/bstr.h"
#include "platform/com/com_error.h"
#include "platform/com/dispatch.h"
#include "platform/com/error_info.h"
#include "platform/com/guid.h"
#include "platform/com/runtime.h"
#include "platform/com/safearray.h"
#include "platform/com/shell.h"
#include "platform/com/storage.h"
#include "platform/com/stream.h"
#include "platform/com/unknown.h"
#include "platform/com/variant.h"
#endif

#include "platform/com/com_ptr.h"
