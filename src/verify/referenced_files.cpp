#include "verify/referenced_files.h"

#include <new>
#include <string>
#include <unordered_set>
#include <utility>

#include "dicom_dir_file.h"
#include "directory_records.h"
#include "fileset/root_names.h"
#include "findings.h"
#include "medium_index.h"
#include "verify/verify_medium.h"
#include "whole_file.h"

namespace quillon {

bool FindReferencedFiles(MediumSource& medium, std::vector<ReferencedFile>& files,
                         CBaseItem& errors) try {
  files.clear();
  std::vector<MediumEntry> entries;
  if (!medium.List(entries)) return errors.FailAs(medium);
  MediumIndex index(std::move(entries));
  const auto found = index.FindInRoot(kDicomDirName);
  std::string bytes;
  VerifyReport report;
  Findings findings(report);
  if (!found || !ReadWhole(medium, index.Entries()[*found].path, kMaxFileBytes, bytes)) {
    errors.SetErrorMessage(OLESTR("There is no DICOMDIR that can be read."));
    return false;
  }
  DicomDirFile dicomDir(std::move(bytes));
  if (!dicomDir.Read(findings)) {
    errors.SetErrorMessage(OLESTR("There is no record in the DICOMDIR that can be read."));
    return false;
  }
  std::unordered_set<Text> seen;
  DirectoryRecords records(dicomDir, nullptr, findings, report, [&](const FileRecord& record) {
    auto entry = index.Find(record.path);
    if (!entry) entry = index.FindFolded(record.path);
    const bool isThere = entry && index.Entries()[*entry].kind == MediumEntry::Kind::File;
    const Text& path = isThere ? index.Entries()[*entry].path : record.path;
    if (seen.insert(path).second) files.push_back({path, isThere});
    return true;
  });
  static_cast<void>(records.Walk());  // nothing ends it
  return true;
} catch (const std::bad_alloc&) {
  errors.SetErrorMessage(OLESTR("There is not enough memory to read the DICOMDIR."));
  return false;
}

}  // namespace quillon
