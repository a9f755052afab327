// Directories and files of an image that is being put together, as objects.
#pragma once

#include <memory>

#include "image/image_tree.h"
#include "platform/imapi2.h"

namespace quillon::platform {

// What the image and its items share: they live as long as the last of them.
struct ImageState {
  ImageSettings settings;
  std::shared_ptr<ImageNode> root;
};

// S_OK, or what creating the object fails with.
HRESULT makeDirectoryItem(std::shared_ptr<ImageState> state, std::shared_ptr<ImageNode> node,
                          IFsiDirectoryItem** item);
// A directory item or a file item.
HRESULT makeItem(std::shared_ptr<ImageState> state, std::shared_ptr<ImageNode> node,
                 IFsiItem** item);

}  // namespace quillon::platform
