// Locations of documents: paths as the layer's file calls take them, and file: URLs.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/com.h"

namespace quillon::platform {

// The native path of a location; empty with a sentence in reason for a URL of another kind.
std::optional<std::string> pathOfLocation(std::string_view location, std::string& reason);

// A file: URL, made absolute, from which relative references can be resolved.
std::string urlOfPath(std::string_view path);

// False with the HRESULT of the system's code and a sentence.
bool readWholeFile(const std::string& path, std::string& bytes, LONG& code, std::string& reason);

// For a file that a document names, not the user: never waits for one that is no regular file, and
// asks before each piece whether so many bytes more may be read. False with a sentence in reason;
// without one when mayRead refused.
bool readReferencedFile(const std::string& path, const std::function<bool(std::size_t)>& mayRead,
                        std::string& bytes, std::string& reason);

}  // namespace quillon::platform
