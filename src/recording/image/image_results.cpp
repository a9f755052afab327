#include "image/image_results.h"

#include <string>
#include <utility>

#include "platform/imapi2.h"

namespace quillon::platform {

HRESULT refuseImage(HRESULT result, std::u16string_view description, std::u16string_view subject) {
  std::u16string text(description);
  if (!subject.empty()) text.append(u": ").append(subject);
  return failWithReason(result, u"FileSystemImage", std::move(text), IID_IFileSystemImage);
}

}  // namespace quillon::platform
