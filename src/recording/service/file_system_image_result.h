// A finished image: how large it is, and its stream.
#pragma once

#include "image/image_layout.h"
#include "platform/imapi2.h"

namespace quillon::platform {

HRESULT makeImageResult(std::shared_ptr<const ImageLayout> layout, IFileSystemImageResult** result);

}  // namespace quillon::platform
