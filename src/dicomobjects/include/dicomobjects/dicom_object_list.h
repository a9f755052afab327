// The objects of one series, in the order in which they were added, found by index.
#pragma once

#include <memory>

#include "dicomobjects/dicom_object_processor.h"
#include "dicomobjects/dicom_object_properties.h"
#include "foundation/base_list.h"
#include "foundation/position_index.h"

namespace quillon {

class CDicomObjectList : public COwningList<CDicomObjectProperties> {
 public:
  CDicomObjectList();
  void RemoveAll() override;
  void RemoveLast() override;

  // Reads one file and appends its properties. False, with a sentence, and the list is as before.
  [[nodiscard]] bool AddObject(TextView path);
  // The same from a file that util has loaded already: nothing is read again. instanceUidOptional
  // as in CDicomObjectProcessor. Answers the object, null on failure.
  [[nodiscard]] CDicomObjectProperties* AddObject(CDicomUtil& util, bool instanceUidOptional);
  // First object whose full SOP Instance UID or instance key equals uid; null when there is none,
  // with a sentence when uid is empty.
  CDicomObjectProperties* FindByInstanceUid(TextView uid);
  // By the full SOP Instance UID alone. An object split out of another has that one's UID as its
  // key, so only this tells whether the other is in the list as well.
  CDicomObjectProperties* FindBySopInstanceUid(TextView uid);

 private:
  // What came in or moved past the index would not be found.
  using CBaseList::Add;
  using CBaseList::Sort;

  using Field = const Text& (CDicomObjectProperties::*)() const;

  // Position of the object that was entered with the text, else kNone.
  [[nodiscard]] std::uint32_t PositionOf(const PositionIndex& index, TextView text,
                                         Field field) const;
  // Of several objects with one text the first one is found.
  void EnterIn(PositionIndex& index, TextView text, Field field, std::uint32_t position);
  // Appends the object and enters it in the index.
  [[nodiscard]] bool Enter(std::unique_ptr<CDicomObjectProperties> properties);

  PositionIndex byUid_;
  PositionIndex byKey_;  // keys that differ from the object's UID
};

}  // namespace quillon
