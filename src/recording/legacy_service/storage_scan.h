// Reads a structured storage into the tree of an image: storages are directories, streams files.
#pragma once

#include "image/image_tree.h"

namespace quillon::platform {

// Fills the children of directory. Every stream is opened and stays so until the tree goes away;
// what cannot be read is refused here, where it costs no disc. IMAPI_E_BADJOLIETNAME for a name
// that Joliet cannot hold as it is, IMAPI_E_DISCFULL for more directories than any CD has room for.
// On failure directory is half filled.
HRESULT scanStorage(IStorage& storage, ImageNode& directory);

// Moves the children of source below target, where files of the same name are replaced when
// replaces is set. IMAPI_E_FILEEXISTS, with nothing changed, for a file that may not be replaced
// and for a file and a directory of one name.
HRESULT mergeLegacyContent(ImageNode& source, ImageNode& target, bool replaces);

}  // namespace quillon::platform
