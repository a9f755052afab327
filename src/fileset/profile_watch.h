// What the application profiles of a job ask of it: the elements that its files are read for, the
// keys that its records have beside the usual ones, and what was found against them so far. Nothing
// is kept of an object that meets them.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/file_meta_info.h"
#include "dicom/tag_set.h"
#include "fileset/planned_file_set.h"
#include "fileset/profile_report.h"
#include "fileset/record_rows.h"

namespace quillon {

class ProfileWatch {
 public:
  explicit ProfileWatch(const std::vector<const Profile*>& profiles);

  // With those that every file is read for.
  [[nodiscard]] const DcTagSet& Elements() const { return elements_; }
  // The row of a record with the keys of the profiles. Whether they have values is not its matter.
  [[nodiscard]] const RecordRow& RowOf(const RecordRow& row) const;

  // An object that was added.
  void Look(const SharedText& source, const DcFileMetaInfo& metaInfo, const DcElemList& dataSet);
  // What is known of the set as a whole: the reports are complete then.
  void Conclude(const PlannedFileSet& planned);
  [[nodiscard]] std::span<const ProfileReport> Reports() const { return concluded_; }

 private:
  struct ExtendedRow {
    std::vector<RecordKey> keys;
    RecordRow row;
  };
  // Violations of one profile, by rule.
  using RuleCounts = std::map<std::string, std::uint64_t, std::less<>>;

  void AddKeys(const Profile& profile);
  void Note(std::size_t profile, const SharedText& source, const std::string& rule,
            const std::string& found);

  DcTagSet elements_;
  std::map<DcDirRecType, ExtendedRow> rows_;
  std::vector<ProfileReport> reports_;  // of the objects
  std::vector<RuleCounts> ruleCounts_;
  std::vector<ProfileReport> concluded_;
};

}  // namespace quillon
