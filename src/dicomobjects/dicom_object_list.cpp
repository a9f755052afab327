#include "dicomobjects/dicom_object_list.h"

#include <algorithm>
#include <new>
#include <utility>

namespace quillon {

CDicomObjectList::CDicomObjectList() { SetClassName(OLESTR("CDicomObjectList")); }

void CDicomObjectList::RemoveAll() {
  byUid_.clear();
  byKey_.clear();
  COwningList::RemoveAll();
}

void CDicomObjectList::RemoveLast() {
  if (GetCount() == 0) return;
  const auto isLast = [position = GetCount() - 1](const auto& entry) {
    return entry.second == position;
  };
  std::erase_if(byUid_, isLast);
  std::erase_if(byKey_, isLast);
  COwningList::RemoveLast();
}

bool CDicomObjectList::AddObject(TextView path) {
  std::unique_ptr<CDicomObjectProperties> item(new (std::nothrow) CDicomObjectProperties());
  if (item == nullptr) return Fail(kMsgNoStorageForImage);
  CDicomUtil util;
  CDicomObjectProcessor processor;
  if (!processor.ReadObjectProperties(path, util, *item)) return FailAs(processor);
  return Enter(std::move(item));
}

CDicomObjectProperties* CDicomObjectList::AddObject(CDicomUtil& util, bool instanceUidOptional) {
  std::unique_ptr<CDicomObjectProperties> item(new (std::nothrow) CDicomObjectProperties());
  if (item == nullptr) {
    Fail(kMsgNoStorageForImage);
    return nullptr;
  }
  CDicomObjectProcessor processor;
  processor.SetInstanceUidOptional(instanceUidOptional);
  // Objects of one series differ in little.
  item->ExpectLike(GetCount() == 0 ? nullptr : At(GetCount() - 1));
  const bool isRead = processor.ReadProperties(util, *item);
  item->ExpectLike(nullptr);
  if (!isRead) {
    FailAs(processor);
    return nullptr;
  }
  return Enter(std::move(item)) ? At(GetCount() - 1) : nullptr;
}

bool CDicomObjectList::Enter(std::unique_ptr<CDicomObjectProperties> properties) {
  const std::size_t position = GetCount();
  try {
    Append(std::move(properties), [this, position](const CDicomObjectProperties& item) {
      // Nothing is replaced: the first object of a UID or key stays the one that is found.
      if (!item.InstanceUid().empty()) byUid_.emplace(item.SharedInstanceUid(), position);
      if (!item.InstanceKey().empty() && item.InstanceKey() != item.InstanceUid()) {
        byKey_.emplace(item.SharedInstanceKey(), position);
      }
    });
    return true;
  } catch (const std::bad_alloc&) {
    // A UID that was entered before its key could not be must not lead to the next object.
    std::erase_if(byUid_, [position](const auto& entry) { return entry.second == position; });
    return Fail(kMsgNoStorageForImage);
  }
}

CDicomObjectProperties* CDicomObjectList::FindByInstanceUid(TextView uid) {
  if (uid.empty()) {
    SetErrorMessage(kMsgInstanceUidInvalid);
    return nullptr;
  }
  std::size_t position = GetCount();
  for (const Index* index : {&byUid_, &byKey_}) {
    const auto found = index->find(uid);
    if (found != index->end()) position = std::min(position, found->second);
  }
  return At(position);
}

CDicomObjectProperties* CDicomObjectList::FindBySopInstanceUid(TextView uid) {
  if (uid.empty()) {
    SetErrorMessage(kMsgInstanceUidInvalid);
    return nullptr;
  }
  const auto found = byUid_.find(uid);
  return found == byUid_.end() ? nullptr : At(found->second);
}

}  // namespace quillon
