// Where the toolkit's log lines go when the server runs in somebody else's process.
#pragma once

#include <string>

namespace quillon {

// The toolkit writes its lines to standard output unless told otherwise: to the end of this file
// (8 bit, absolute), or nowhere for an empty name.
void SendToolkitLogTo(const std::string& file);

// Standard output belongs to the host: here they are appended to the file that the text value
// ToolkitLogFile of the registry's key for media creation names (absolute, or seen from the working
// directory of now), or to none. A file that cannot be opened loses the lines and is no failure.
// Throws std::bad_alloc.
void SendToolkitLogAsConfigured();

}  // namespace quillon
