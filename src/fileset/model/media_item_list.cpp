#include "fileset/model/media_item_list.h"

#include <algorithm>
#include <memory>
#include <new>

namespace quillon {

CMediaItem::CMediaItem() { SetClassName(OLESTR("CMediaItem")); }

CMediaItemList::CMediaItemList() { SetClassName(OLESTR("CMediaItemList")); }

bool CMediaItemList::AddItem(const CMediaItem& item) {
  try {
    Append(std::make_unique<CMediaItem>(item), [](const CMediaItem&) {});
    return true;
  } catch (const std::bad_alloc&) {
    return Fail(kMsgNoStorageForMediaItem);
  }
}

bool CMediaItemList::Contains(TextView path) const {
  if (path.empty()) return false;
  return std::ranges::any_of(items_, [path](const CBaseItem* item) {
    return static_cast<const CMediaItem*>(item)->Path() == path;
  });
}

}  // namespace quillon
