// Late binding: names to identifiers, and calls by identifier with variants for arguments. Codes
// are those of automation.
#pragma once

#include "server/com_server/quillon_media_rw.h"

namespace quillon {

// Names are compared without case. The first names an operation, those after it its parameters.
// What has no identifier gets DISPID_UNKNOWN, and the call answers DISP_E_UNKNOWNNAME.
[[nodiscard]] HRESULT FindDispatchIds(REFIID riid, LPOLESTR* names, UINT count, DISPID* ids);

// Calls the operation on object. Arguments are converted to the parameters' types; the out
// parameter may be left away, or be given by reference (to its own type or to a VARIANT) and is
// then written when the operation answers S_OK. result, which may be null, receives the out value.
//
// Answers what the operation answers (S_OK, S_FALSE), or DISP_E_EXCEPTION when that is a failure,
// with exception filled in. DISP_E_UNKNOWNINTERFACE, DISP_E_MEMBERNOTFOUND, DISP_E_BADPARAMCOUNT,
// DISP_E_PARAMNOTOPTIONAL, DISP_E_PARAMNOTFOUND, DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW: nothing was
// called; badArgument names the place in params->rgvarg where there is one.
[[nodiscard]] HRESULT InvokeOperation(IQuillonMediaRW& object, DISPID id, REFIID riid, WORD flags,
                                      DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                                      UINT* badArgument);

}  // namespace quillon
