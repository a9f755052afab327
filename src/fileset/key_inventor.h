// Values for required keys that objects do not have, the same ones that dcmmkdir invents, and a
// modality: a viewer that finds none would take the medium for damaged.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "dicom/dir_rec.h"
#include "foundation/text.h"

namespace quillon {

// For one file set.
class KeyInventor {
 public:
  // A Patient ID of the file set, which no other patient may get.
  void NotePatientId(TextView id) { patientIds_.insert(NarrowText(id, CP_ACP)); }
  // Gives the record a value for each of the keys that it has none for, as far as there can be one:
  // a numbered Patient ID or Study ID, Series Number and Instance Number counted through the file
  // set, today and now for the study.
  void Invent(DcDirRec& record, const std::vector<DcTag>& missing);

 private:
  std::set<std::string> patientIds_;
  unsigned patients_ = 0;
  unsigned studies_ = 0;
  unsigned series_ = 0;
  unsigned instances_ = 1;
};

// A study without date or time gets those of the series, the acquisition or the content, whichever
// the object has first.
void TakeOtherTimes(DcDirRec& record, const DcElemList& dataSet, const std::vector<DcTag>& missing);
// A study without an ID has "1".
void GiveUsualStudyId(DcDirRec& record, const std::vector<DcTag>& missing);

}  // namespace quillon
