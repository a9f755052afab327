// The series of one study, keyed by Series Instance UID.
#pragma once

#include "dicom/elem_list.h"
#include "dicomobjects/dicom_object_list.h"
#include "fileset/model/key_index.h"
#include "foundation/base_list.h"

namespace quillon {

class CSeries : public CBaseItem {
 public:
  CSeries();

  [[nodiscard]] const Text& SeriesDate() const { return seriesDate_; }
  [[nodiscard]] const Text& SeriesInstanceUid() const { return seriesInstanceUid_; }
  [[nodiscard]] const Text& Modality() const { return modality_; }
  [[nodiscard]] const Text& SeriesNumber() const { return seriesNumber_; }
  [[nodiscard]] CDicomObjectList& Images() { return images_; }
  [[nodiscard]] const CDicomObjectList& Images() const { return images_; }

 private:
  friend class CSeriesList;

  Text seriesDate_;
  Text seriesInstanceUid_;
  Text modality_;
  Text seriesNumber_;
  CDicomObjectList images_;
};

class CSeriesList : public COwningList<CSeries> {
 public:
  CSeriesList();
  void RemoveAll() override;
  void RemoveLast() override;

  // The first series with exactly this UID; null when there is none, with a sentence when the UID
  // is empty.
  CSeries* FindBySeriesInstanceUid(TextView uid);
  // Appends a series with the attributes of the data set. False, with a sentence, leaves the list
  // as it was.
  [[nodiscard]] bool AddSeries(const DcElemList* dataSet);

 private:
  KeyIndex<CSeries> byUid_;
};

}  // namespace quillon
