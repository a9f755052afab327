#include "verify/verify_medium.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "dicom/elem.h"
#include "dicom_dir_file.h"
#include "directory_records.h"
#include "file_check.h"
#include "fileset/root_names.h"
#include "findings.h"
#include "medium_index.h"
#include "profiles/profile_check.h"
#include "sums_file.h"
#include "whole_file.h"

namespace quillon {

namespace {

constexpr std::uint64_t kMaxSumsBytes = std::uint64_t{256} << 20;
constexpr std::uint64_t kMaxLabelBytes = std::uint64_t{1} << 20;

// Values are looked at as they stand in the files, whatever their form.
class UncheckedValues {
 public:
  UncheckedValues() : wereChecked_(dcValueChecking()) {
    static_cast<void>(dcSetValueChecking(false));
  }
  ~UncheckedValues() { static_cast<void>(dcSetValueChecking(wereChecked_)); }
  UncheckedValues(const UncheckedValues&) = delete;
  UncheckedValues& operator=(const UncheckedValues&) = delete;

 private:
  bool wereChecked_;
};

bool IsReadable(OLECHAR unit) {
  return unit >= OLESTR(' ') ? unit != 0x7F && (unit < 0xD800 || unit > 0xF8FF)
                             : IsWhiteSpace(unit);
}

// Ours is UTF-16 little endian; labels of others may be ASCII or what the system has.
bool IsText(std::string_view bytes) {
  if (bytes.size() % 2 == 0 && bytes.find('\0') != std::string_view::npos) {
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      const auto low = static_cast<unsigned char>(bytes[i]);
      const auto high = static_cast<unsigned char>(bytes[i + 1]);
      if (!IsReadable(static_cast<OLECHAR>(high << 8 | low))) return false;
    }
    return true;
  }
  return std::ranges::all_of(bytes,
                             [](char c) { return IsReadable(static_cast<unsigned char>(c)); });
}

class Verification {
 public:
  Verification(MediumSource& medium, const VerifyOptions& options, VerifyReport& report,
               std::vector<MediumEntry> entries)
      : medium_(medium),
        options_(options),
        report_(report),
        findings_(report),
        index_(std::move(entries)) {}

  // False when the caller stopped it.
  [[nodiscard]] bool Run(const Text& whatWasNotListed);

 private:
  void CheckMediumKind();
  void CheckRootFiles();
  void ReadSums();
  // False when there is none that can be read.
  [[nodiscard]] bool ReadDicomDir(std::string& bytes);

  MediumSource& medium_;
  const VerifyOptions& options_;
  VerifyReport& report_;
  Findings findings_;
  MediumIndex index_;
  SumsFile sums_;
  bool isCaseIgnored_ = false;
};

void Verification::CheckMediumKind() {
  const Profile* profile = options_.profile;
  if (profile == nullptr || options_.mediumKind.empty() ||
      TakesMedium(*profile, options_.mediumKind)) {
    return;
  }
  findings_.Add(
      Fault::ProfileMediumDiffers, {},
      {WideBytes(profile->name), WideBytes(MediumRule(*profile)), WideBytes(options_.mediumKind)});
}

void Verification::CheckRootFiles() {
  if (index_.FindInRoot(kUnfinishedMarkName)) {
    findings_.Add(Fault::Unfinished, {kUnfinishedMarkName, {}});
  }
  const auto label = index_.FindInRoot(kLabelFileName);
  if (!label) return;
  std::string text;
  if (!ReadWhole(medium_, index_.Entries()[*label].path, kMaxLabelBytes, text) || !IsText(text)) {
    findings_.Add(Fault::LabelUnreadable, {kLabelFileName, {}});
  }
}

void Verification::ReadSums() {
  const auto found = options_.checksSums ? index_.FindInRoot(kSumsFileName) : std::nullopt;
  if (!found) return;
  std::string text;
  if (ReadWhole(medium_, index_.Entries()[*found].path, kMaxSumsBytes, text)) {
    sums_.Read(text, index_, findings_);
  } else {
    findings_.Add(Fault::SumsUnreadable, {kSumsFileName, {}});
  }
}

bool Verification::ReadDicomDir(std::string& bytes) {
  const auto found = index_.FindInRoot(kDicomDirName);
  if (!found) {
    findings_.Add(Fault::DicomDirMissing, InDicomDir());
    return false;
  }
  const MediumEntry& entry = index_.Entries()[*found];
  isCaseIgnored_ = entry.path != kDicomDirName;
  if (isCaseIgnored_) findings_.Add(Fault::DicomDirName, InDicomDir(), {entry.path});
  if (entry.kind == MediumEntry::Kind::File && entry.sizeBytes > kMaxFileBytes) {
    findings_.Add(Fault::DicomDirTooLarge, InDicomDir());
    return false;
  }
  if (entry.kind != MediumEntry::Kind::File ||
      !ReadWhole(medium_, entry.path, kMaxFileBytes, bytes)) {
    findings_.Add(Fault::DicomDirUnreadable, InDicomDir());
    return false;
  }
  return true;
}

bool Verification::Run(const Text& whatWasNotListed) {
  if (!whatWasNotListed.empty()) {
    findings_.Add(Fault::ListingIncomplete, {}, {whatWasNotListed});
  }
  CheckMediumKind();
  CheckRootFiles();
  ReadSums();
  std::string bytes;
  const bool hasDicomDir = ReadDicomDir(bytes);
  FileCheck files(medium_, index_, sums_, options_, isCaseIgnored_, findings_, report_);
  // Without records nothing says which files belong to the file set.
  bool hasRecords = false;
  if (hasDicomDir) {
    DicomDirFile dicomDir(std::move(bytes));
    hasRecords = dicomDir.Read(findings_);
    DirectoryRecords records(dicomDir, options_.profile, findings_, report_,
                             [&](const FileRecord& record) { return files.CheckNamed(record); });
    if (hasRecords && !records.Walk()) return false;
  }
  return files.CheckOthers(hasRecords);
}

}  // namespace

bool VerifyMedium(MediumSource& medium, const VerifyOptions& options, VerifyReport& report,
                  CBaseItem& errors) try {
  report = VerifyReport();
  std::vector<MediumEntry> entries;
  const bool isListed = medium.List(entries);
  if (!isListed && entries.empty()) return errors.FailAs(medium);
  const UncheckedValues unchecked;
  Verification verification(medium, options, report, std::move(entries));
  if (verification.Run(isListed ? Text() : medium.ErrorMessage())) return true;
  errors.SetErrorMessage(OLESTR("The verification was stopped."));
  return false;
} catch (const std::bad_alloc&) {
  errors.SetErrorMessage(OLESTR("There is not enough memory to verify the medium."));
  return false;
}

}  // namespace quillon
