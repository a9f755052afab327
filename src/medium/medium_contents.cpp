#include "medium/medium_contents.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <unordered_map>

#include "dicom/elem_list.h"
#include "dicom/read_file.h"
#include "dicom/tags.h"
#include "dicomobjects/decoded_text.h"
#include "medium/medium_bytes.h"

namespace quillon {
namespace {

constexpr std::uint64_t kMagicAt = 128;
constexpr std::array<char, 4> kMagic{'D', 'I', 'C', 'M'};

const DcTagSet& WantedElements() {
  static const DcTagSet tags({
      tags::kSpecificCharacterSet,
      tags::kSopClassUid,
      tags::kSopInstanceUid,
      tags::kStudyDate,
      tags::kAccessionNumber,
      tags::kModality,
      tags::kStudyDescription,
      tags::kSeriesDescription,
      tags::kPatientsName,
      tags::kPatientId,
      tags::kPatientsBirthDate,
      tags::kPatientsSex,
      tags::kStudyInstanceUid,
      tags::kSeriesInstanceUid,
      tags::kStudyId,
      tags::kSeriesNumber,
  });
  return tags;
}

bool IsMarkedAsDicom(MediumFile& file) {
  std::array<char, kMagic.size()> magic{};
  return file.SizeBytes() >= kMagicAt + magic.size() &&
         file.ReadAt(kMagicAt, magic.data(), magic.size()) && magic == kMagic;
}

// Decodes the texts of one data set.
class Texts {
 public:
  explicit Texts(const DcElemList& dataSet) : dataSet_(dataSet), set_(CharacterSetOf(dataSet)) {}

  [[nodiscard]] Text operator()(DcTag tag) const {
    const DcElem* element = dataSet_.find(tag);
    return element == nullptr ? Text() : DecodedText(*element, set_);
  }

 private:
  const DcElemList& dataSet_;
  CharacterSet set_;
};

// The listing under way: each node is found by its key, and stands in the order of coming.
class Listing {
 public:
  explicit Listing(MediumContents& contents) : contents_(contents) {}

  void Add(const DcElemList& dataSet, std::uint64_t bytes) {
    ++contents_.objects;
    contents_.bytes += bytes;
    const Texts texts(dataSet);
    const Text studyUid = texts(tags::kStudyInstanceUid);
    if (studyUid.empty()) {
      ++contents_.withoutStudy;
      return;
    }
    const Text seriesUid = texts(tags::kSeriesInstanceUid);
    const Text patientKey = texts(tags::kPatientsName) + OLECHAR{0} + texts(tags::kPatientId);
    const Text studyKey = patientKey + OLECHAR{0} + studyUid;
    const Text seriesKey = studyKey + OLECHAR{0} + texts(tags::kSeriesInstanceUid);
    PatientContents& patient =
        Find(patients_, patientKey, contents_.patients, [&] { return NewPatient(texts); });
    StudyContents& study =
        Find(studies_, studyKey, patient.studies, [&] { return NewStudy(texts); });
    SeriesContents& series =
        Find(series_, seriesKey, study.series, [&] { return NewSeries(texts); });
    ++series.objects;
    series.bytes += bytes;
  }

  void Sort() {
    const auto number = [](const Text& text) { return std::pair(text.size(), text); };
    for (PatientContents& patient : contents_.patients) {
      for (StudyContents& study : patient.studies) {
        std::ranges::stable_sort(
            study.series, {}, [&](const SeriesContents& series) { return number(series.number); });
      }
      std::ranges::stable_sort(patient.studies, {}, &StudyContents::date);
    }
    std::ranges::stable_sort(contents_.patients, {}, [](const PatientContents& patient) {
      return std::tie(patient.name, patient.id);
    });
  }

 private:
  // From the key to the place among the siblings.
  using Places = std::unordered_map<Text, std::size_t>;

  template <typename Node, typename Make>
  static Node& Find(Places& places, const Text& key, std::vector<Node>& nodes, const Make& make) {
    const auto [place, isNew] = places.try_emplace(key, nodes.size());
    if (isNew) nodes.push_back(make());
    return nodes[place->second];
  }

  static PatientContents NewPatient(const Texts& texts) {
    return {texts(tags::kPatientsName),
            texts(tags::kPatientId),
            texts(tags::kPatientsBirthDate),
            texts(tags::kPatientsSex),
            {}};
  }
  StudyContents NewStudy(const Texts& texts) {
    ++contents_.studies;
    return {texts(tags::kStudyInstanceUid), texts(tags::kStudyDate),        texts(tags::kStudyId),
            texts(tags::kAccessionNumber),  texts(tags::kStudyDescription), {}};
  }
  SeriesContents NewSeries(const Texts& texts) {
    ++contents_.series;
    return {texts(tags::kSeriesInstanceUid), texts(tags::kModality), texts(tags::kSeriesNumber),
            texts(tags::kSeriesDescription)};
  }

  MediumContents& contents_;
  Places patients_;
  Places studies_;
  Places series_;
};

}  // namespace

bool ListContents(MediumSource& medium, const ListingProgress& progress, MediumContents& contents,
                  CBaseItem& errors) {
  contents = {};
  std::vector<MediumEntry> entries;
  if (!medium.List(entries)) return errors.FailAs(medium);
  Listing listing(contents);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (progress) progress(i, entries.size());
    const MediumEntry& entry = entries[i];
    if (entry.kind != MediumEntry::Kind::File) continue;
    const auto file = medium.Open(entry.path);
    if (file == nullptr) {
      contents.unreadable.push_back(entry.path);
      continue;
    }
    if (!IsMarkedAsDicom(*file)) {
      ++contents.otherFiles;
      continue;
    }
    MediumBytes bytes(*file);
    DcFileMetaInfo metaInfo;
    DcElemList dataSet;
    const std::string name = NarrowText(entry.path, CP_UTF8);
    const DcCode code = dirReadFile(bytes, name.c_str(), metaInfo, dataSet, nullptr, nullptr,
                                    nullptr, &WantedElements());
    if (metaInfo.sopClass == DcUid::MediaStorageDirectory) {
      ++contents.otherFiles;
    } else if (code != kDcOk) {
      contents.unreadable.push_back(entry.path);
    } else {
      listing.Add(dataSet, file->SizeBytes());
    }
  }
  listing.Sort();
  return true;
}

}  // namespace quillon
