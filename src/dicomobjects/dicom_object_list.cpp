#include "dicomobjects/dicom_object_list.h"

#include <algorithm>
#include <functional>
#include <new>
#include <utility>

namespace quillon {

CDicomObjectList::CDicomObjectList() { SetClassName(OLESTR("CDicomObjectList")); }

void CDicomObjectList::RemoveAll() {
  byUid_.Clear();
  byKey_.Clear();
  COwningList::RemoveAll();
}

void CDicomObjectList::RemoveLast() {
  if (GetCount() == 0) return;
  const auto last = static_cast<std::uint32_t>(GetCount() - 1);
  byUid_.Remove(last);
  byKey_.Remove(last);
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

std::uint32_t CDicomObjectList::PositionOf(const PositionIndex& index, TextView text,
                                           Field field) const {
  return index.Find(std::hash<TextView>{}(text), [&](std::uint32_t position) {
    return std::invoke(field, *At(position)) == text;
  });
}

void CDicomObjectList::EnterIn(PositionIndex& index, TextView text, Field field,
                               std::uint32_t position) {
  if (PositionOf(index, text, field) != PositionIndex::kNone) return;
  index.Add(std::hash<TextView>{}(text), position);
}

bool CDicomObjectList::Enter(std::unique_ptr<CDicomObjectProperties> properties) {
  const auto position = static_cast<std::uint32_t>(GetCount());
  try {
    Append(std::move(properties), [this, position](const CDicomObjectProperties& item) {
      const Text& uid = item.InstanceUid();
      const Text& key = item.InstanceKey();
      if (!uid.empty()) EnterIn(byUid_, uid, &CDicomObjectProperties::InstanceUid, position);
      if (!key.empty() && key != uid) {
        EnterIn(byKey_, key, &CDicomObjectProperties::InstanceKey, position);
      }
    });
    return true;
  } catch (const std::bad_alloc&) {
    // A UID that was entered before its key could not be must not lead to the next object.
    byUid_.Remove(position);
    return Fail(kMsgNoStorageForImage);
  }
}

CDicomObjectProperties* CDicomObjectList::FindByInstanceUid(TextView uid) {
  if (uid.empty()) {
    SetErrorMessage(kMsgInstanceUidInvalid);
    return nullptr;
  }
  // Past the end for none.
  return At(std::min(PositionOf(byUid_, uid, &CDicomObjectProperties::InstanceUid),
                     PositionOf(byKey_, uid, &CDicomObjectProperties::InstanceKey)));
}

CDicomObjectProperties* CDicomObjectList::FindBySopInstanceUid(TextView uid) {
  if (uid.empty()) {
    SetErrorMessage(kMsgInstanceUidInvalid);
    return nullptr;
  }
  return At(PositionOf(byUid_, uid, &CDicomObjectProperties::InstanceUid));
}

}  // namespace quillon
