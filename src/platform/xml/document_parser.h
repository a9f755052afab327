// Reads XML from text, bytes and files. Nothing but the named file is read: external entities and
// document types are refused or left alone, and there is no network. Entities that a document
// declares itself are replaced, within the parser's bound on how far they may grow.
#pragma once

#include <string>
#include <string_view>

#include "library.h"
#include "xml_failure.h"

namespace quillon::platform {

// Reads text as what it is: an encoding that its declaration names is not looked at. Null with
// failure set for what is not well-formed.
XmlDocument parseText(std::u16string_view text, XmlFailure& failure);

// Reads a file, named by a path as the layer's file calls take it or by a file: URL.
XmlDocument parseFile(std::u16string_view location, XmlFailure& failure);

// For a stylesheet that names another document while it is compiled or run: uri is already put
// together with the place of the stylesheet. What is read counts against the limits of the running
// call. Null with a sentence in reason, or none when the call has refused.
XmlDocument loadReferencedDocument(const char* uri, xmlDict* dictionary, std::string& reason);

}  // namespace quillon::platform
