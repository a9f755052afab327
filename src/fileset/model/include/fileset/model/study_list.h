// The studies of one patient, keyed by Study Instance UID.
#pragma once

#include "fileset/model/series_list.h"

namespace quillon {

class CStudy : public CRecordedItem {
 public:
  CStudy();
  static std::span<const AttributeRow<CStudy>> Attributes();
  [[nodiscard]] const Text& Key() const { return studyInstanceUid_; }

  [[nodiscard]] const Text& AccessionNumber() const { return accessionNumber_; }
  [[nodiscard]] const Text& StudyDate() const { return studyDate_; }
  [[nodiscard]] const Text& Description() const { return description_; }
  [[nodiscard]] const Text& StudyTime() const { return studyTime_; }
  // "1" when the file gives none.
  [[nodiscard]] const Text& StudyId() const { return studyId_; }
  [[nodiscard]] const Text& StudyInstanceUid() const { return studyInstanceUid_; }
  [[nodiscard]] CSeriesList& Series() { return series_; }
  [[nodiscard]] const CSeriesList& Series() const { return series_; }

 private:
  Text accessionNumber_;
  Text studyDate_;
  Text description_;
  Text studyTime_;
  Text studyId_;
  Text studyInstanceUid_;
  CSeriesList series_;
};

class CStudyList : public NodeList<CStudy> {
 public:
  CStudyList();
};

}  // namespace quillon
