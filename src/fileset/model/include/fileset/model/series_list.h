// The series of one study, keyed by Series Instance UID.
#pragma once

#include "dicomobjects/dicom_object_list.h"
#include "fileset/model/node_list.h"

namespace quillon {

class CSeries : public CRecordedItem {
 public:
  CSeries();
  static std::span<const AttributeRow<CSeries>> Attributes();
  [[nodiscard]] const Text& Key() const { return seriesInstanceUid_; }

  [[nodiscard]] const Text& SeriesDate() const { return seriesDate_; }
  [[nodiscard]] const Text& SeriesInstanceUid() const { return seriesInstanceUid_; }
  [[nodiscard]] const Text& Modality() const { return modality_; }
  [[nodiscard]] const Text& SeriesNumber() const { return seriesNumber_; }
  // No key of a record: pages tell it.
  [[nodiscard]] const Text& Description() const { return description_; }
  void SetDescription(Text description) { description_ = std::move(description); }
  [[nodiscard]] CDicomObjectList& Images() { return images_; }
  [[nodiscard]] const CDicomObjectList& Images() const { return images_; }

 private:
  Text seriesDate_;
  Text seriesInstanceUid_;
  Text modality_;
  Text seriesNumber_;
  Text description_;
  CDicomObjectList images_;
};

class CSeriesList : public NodeList<CSeries> {
 public:
  CSeriesList();
};

}  // namespace quillon
