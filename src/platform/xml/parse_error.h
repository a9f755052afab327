// The IXMLDOMParseError of a document.
#pragma once

#include "platform/xml.h"
#include "xml_failure.h"

namespace quillon::platform {

// A snapshot: what later happens to the document does not change it.
HRESULT makeParseError(const XmlFailure& failure, IXMLDOMParseError** error);

}  // namespace quillon::platform
