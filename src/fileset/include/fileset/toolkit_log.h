// Where the toolkit's log lines go when the server runs in somebody else's process.
#pragma once

namespace quillon {

// The toolkit writes its lines to standard output unless told otherwise. That belongs to the host:
// here they are appended to the file that the text value ToolkitLogFile of the registry's key for
// media creation names (absolute, or seen from the working directory of now), or to none. A file
// that cannot be opened loses the lines and is no failure. Throws std::bad_alloc.
void SendToolkitLogAsConfigured();

}  // namespace quillon
