#include "discmastering/image/image_results.h"

#include <string>
#include <utility>

#include "discmastering/com_answers.h"
#include "platform/imapi2.h"

namespace quillon::platform {

HRESULT refuseImage(HRESULT result, std::u16string_view description, std::u16string_view subject) {
  std::u16string text(description);
  if (!subject.empty()) text.append(u": ").append(subject);
  describeFailure({result, std::move(text)}, IID_IFileSystemImage, u"FileSystemImage");
  return result;
}

std::u16string_view viewOf(BSTR text) {
  return text == nullptr ? std::u16string_view() : std::u16string_view(text, SysStringLen(text));
}

}  // namespace quillon::platform
