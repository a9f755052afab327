// Runs a stylesheet over a document.
#pragma once

#include <string>

#include "library.h"
#include "xml_failure.h"

namespace quillon::platform {

// The result as text, written as the stylesheet's xsl:output says. A stylesheet that is a file may
// read regular files, by import, include and document(), relative to its own place; one that was
// text, as all that come from a server, reads none. It can write nothing and reads nothing over the
// network. One that names what cannot be read fails, as does one that goes over the limits; what it
// reads counts. Both documents stay as they are. False with failure set.
bool transformDocument(const xmlDoc* source, const xmlDoc* stylesheet,
                       const TransformLimits& limits, std::u16string& text, XmlFailure& failure);

}  // namespace quillon::platform
