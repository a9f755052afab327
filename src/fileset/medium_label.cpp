#include "medium_label.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "institution.h"
#include "path_join.h"

namespace quillon {

namespace {

// clang-format off
constexpr LabelText kPatientName      {kMsgLabelPatientName,      OLESTR("Patient Name:  ")};
constexpr LabelText kPatient          {kMsgLabelPatient,          OLESTR("Patient")};
constexpr LabelText kPatientId        {kMsgLabelPatientId,        OLESTR("Patient ID:  ")};
constexpr LabelText kBirthDate        {kMsgLabelBirthDate,        OLESTR("Birth Date:  ")};
constexpr LabelText kStudyDate        {kMsgLabelStudyDate,        OLESTR("Study Date:  ")};
constexpr LabelText kMultipleStudies  {kMsgLabelMultipleStudies,  OLESTR("Multiple Studies")};
constexpr LabelText kMultiplePatients {kMsgLabelMultiplePatients, OLESTR("Multiple Patients")};
constexpr LabelText kDisc             {kMsgLabelDisc,             OLESTR("Disc ")};
constexpr LabelText kCreationDate     {kMsgLabelCreationDate,     OLESTR("Fileset Creation Date:  ")};
constexpr LabelText kCreator          {kMsgLabelCreator,          OLESTR("Fileset Creator:  Quillon")};
constexpr LabelText kContent          {kMsgLabelContent,          OLESTR("Fileset Content:  ")};
constexpr LabelText kDicomOnly        {kMsgLabelDicomOnly,        OLESTR("DICOM ONLY")};
constexpr LabelText kInstitution      {kMsgLabelInstitution,      OLESTR("Institution:  ")};
constexpr LabelText kAddress          {kMsgLabelAddress,          OLESTR("Address:  ")};
constexpr LabelText kPhone            {kMsgLabelPhone,            OLESTR("Phone:  ")};
constexpr LabelText kWeb              {kMsgLabelWeb,              OLESTR("Web:  ")};
constexpr LabelText kDisclaimer       {kMsgLabelDisclaimer,       OLESTR("Disclaimer:  ")};
constexpr LabelText kDicomPlusWeb     {kMsgLabelDicomPlusWeb,     OLESTR("DICOM PLUS WEB")};
// clang-format on

constexpr const OLECHAR* kDateFormat = OLESTR("dd MMM yyyy");
constexpr std::size_t kDateChars = 8;  // YYYYMMDD

// The digits at the beginning, as a decimal number.
WORD LeadingNumber(TextView text) {
  unsigned number = 0;
  for (const OLECHAR unit : text) {
    if (unit < OLESTR('0') || unit > OLESTR('9')) break;
    number = number * 10 + static_cast<unsigned>(unit - OLESTR('0'));
  }
  return static_cast<WORD>(number);
}

// A date of the form YYYYMMDD, today for an empty one. Empty when there is no such date.
std::optional<Text> FormatDate(TextView date, const OLECHAR* format) {
  SYSTEMTIME time{};
  if (date.empty()) {
    GetLocalTime(&time);
  } else {
    if (date.size() < kDateChars) return std::nullopt;
    time.wYear = LeadingNumber(date.substr(0, 4));
    time.wMonth = LeadingNumber(date.substr(4, 2));
    time.wDay = LeadingNumber(date.substr(6, 2));
  }
  std::array<OLECHAR, 64> text;
  const int units = GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &time, format, text.data(),
                                   static_cast<int>(text.size()));
  if (units <= 1) return std::nullopt;
  return Text(text.data(), static_cast<std::size_t>(units) - 1);
}

}  // namespace

MediumLabel::MediumLabel(bool leavesOutBadDates, bool hasPages)
    : leavesOutBadDates_(leavesOutBadDates), hasPages_(hasPages) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

bool MediumLabel::Compose(const CPatientList& patients) {
  text_.clear();
  leftOut_.clear();
  const std::optional<Text> today = FormatDate({}, kDateFormat);
  if (!today) return Fail(kMsgCannotGetDate);
  if (patients.GetCount() > 1) {
    AppendLine(kMultiplePatients);
  } else if (!AppendPatient(*patients.At(0))) {
    return false;
  }
  if (count_ > 1) {
    AppendLine(kDisc, NumberText(number_) + OLESTR(" of ") + NumberText(count_));
  }
  AppendLine(kCreationDate, *today);
  AppendLine(kCreator);
  AppendLine(kContent, Lookup(hasPages_ ? kDicomPlusWeb : kDicomOnly));
  return AppendInstitution();
}

bool MediumLabel::AppendPatient(const CPatient& patient) {
  Text name = patient.Name().empty() ? patient.PatientId() : patient.Name();
  if (name.empty()) name = Lookup(kPatient);
  std::replace(name.begin(), name.end(), OLESTR('^'), OLESTR(' '));
  AppendLine(kPatientName, name);
  if (!patient.PatientId().empty()) AppendLine(kPatientId, patient.PatientId());
  if (!AppendDate(kBirthDate, patient.BirthDate())) return false;
  const CStudyList& studies = patient.Studies();
  if (studies.GetCount() > 1) {
    AppendLine(kMultipleStudies);
    return true;
  }
  if (studies.GetCount() == 0) return Fail(kMsgNoStudiesForPatient);
  return AppendDate(kStudyDate, studies.At(0)->StudyDate());
}

// Behind the lines that every label has, so that these stand where they always stood.
bool MediumLabel::AppendInstitution() {
  Institution institution;
  if (!ReadInstitution(institution, *this)) return false;
  const std::pair<const LabelText&, Text&> lines[] = {{kInstitution, institution.name},
                                                      {kAddress, institution.address},
                                                      {kPhone, institution.phone},
                                                      {kWeb, institution.web},
                                                      {kDisclaimer, institution.disclaimer}};
  for (const auto& [title, value] : lines) {
    // A line end in a value begins no line of its own.
    std::ranges::replace_if(
        value, [](OLECHAR unit) { return unit < OLESTR(' '); }, OLESTR(' '));
    if (!value.empty()) AppendLine(title, value);
  }
  return true;
}

void MediumLabel::AppendLine(const LabelText& title, TextView value) {
  if (!text_.empty()) text_ += OLESTR('\n');
  text_ += Lookup(title);
  text_ += value;
}

bool MediumLabel::AppendDate(const LabelText& title, TextView date) {
  if (date.size() != kDateChars) return true;
  const std::optional<Text> shown = FormatDate(date, kDateFormat);
  if (!shown) {
    if (!leavesOutBadDates_) return Fail(kMsgCannotGetDate);
    leftOut_.push_back(Lookup(title).append(date));
    return true;
  }
  AppendLine(title, *shown);
  return true;
}

Text MediumLabel::Lookup(const LabelText& text) const {
  const Text ofTable = LoadMessage(text.message);
  return ofTable.empty() ? Text(text.builtIn) : ofTable;
}

bool WriteLabelFile(const Text& label, TextView rootDirectory, CFileUtil& files,
                    CBaseItem& errors) {
  Text path(rootDirectory);
  if (!JoinBelow(path, kLabelFileName, errors)) return false;
  const Text text = label + OLESTR('\n');
  CBuffer buffer;
  if (buffer.Allocate(static_cast<std::uint32_t>(text.size() * 2)) != 0) {
    return errors.Fail(kMsgNoStorageForLabel);
  }
  std::uint8_t* out = buffer.GetData();
  for (const OLECHAR unit : text) {
    *out++ = static_cast<std::uint8_t>(unit & 0xFF);
    *out++ = static_cast<std::uint8_t>(unit >> 8);
  }
  return files.WriteBuffer(buffer, path, /*append=*/false) || errors.FailAs(files);
}

}  // namespace quillon
