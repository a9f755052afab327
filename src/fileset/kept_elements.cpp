#include "kept_elements.h"

#include <array>

#include "dicom/tags.h"
#include "dicomobjects/dicom_object_processor.h"
#include "fileset/record_rows.h"

namespace quillon {

namespace {

// What no record has as a key: where an object belongs, how its texts are to be read, what stands
// in for a key that it lacks, what tells which part of it goes into the record, and what pages
// tell.
constexpr std::array kOthers{
    tags::kSpecificCharacterSet,
    tags::kSopClassUid,
    tags::kSopInstanceUid,
    tags::kStudyDate,
    tags::kSeriesDate,
    tags::kAcquisitionDate,
    tags::kContentDate,
    tags::kStudyTime,
    tags::kSeriesTime,
    tags::kAcquisitionTime,
    tags::kContentTime,
    tags::kContentCreatorsName,
    tags::kVerifyingObserverSequence,
    tags::kMimeTypeOfEncapsulatedDocument,
    tags::kSeriesDescription,
};

}  // namespace

const DcTagSet& KeptElements() {
  static const DcTagSet elements(KeptTags());
  return elements;
}

std::vector<DcTag> KeptTags() {
  std::vector<DcTag> tags = AllRecordKeys();
  const std::vector<DcTag> ofProperties = CDicomObjectProcessor::ElementsRead();
  tags.insert(tags.end(), kOthers.begin(), kOthers.end());
  tags.insert(tags.end(), ofProperties.begin(), ofProperties.end());
  return tags;
}

}  // namespace quillon
