// Counted text. The 4 bytes before the first unit hold the length in bytes without the terminator,
// so a text may hold zeros; a 16-bit zero follows it. A null pointer is the empty text.
#pragma once

#include "platform/win32/types.h"

using BSTR = OLECHAR*;

extern "C" {

BSTR SysAllocString(const OLECHAR* text);  // null for null
// A null text leaves the units undefined; null when memory runs out.
BSTR SysAllocStringLen(const OLECHAR* text, UINT units);
BSTR SysAllocStringByteLen(LPCSTR bytes, UINT lengthBytes);
// Frees the old text and answers TRUE; on FALSE the old one is still there. The new text may lie
// within the old one. A null text makes the text null, with a length one of undefined units.
int SysReAllocString(BSTR* bstr, const OLECHAR* text);
int SysReAllocStringLen(BSTR* bstr, const OLECHAR* text, UINT units);
void SysFreeString(BSTR bstr);
UINT SysStringLen(BSTR bstr);
UINT SysStringByteLen(BSTR bstr);

}  // extern "C"
