// Whether the calling thread has initialised COM.
#pragma once

namespace quillon::platform {
bool isComInitialized();
}
