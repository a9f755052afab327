#include "portable_data.h"

#include <utility>

#include "file_set_order.h"
#include "file_set_plan.h"
#include "foundation/file_system_flush.h"
#include "pages/header_page.h"
#include "pages/page_xml.h"
#include "pages/readme_text.h"
#include "path_join.h"
#include "platform/services.h"

namespace quillon {

namespace {

// Headers that the pages of a plan keep. A usual set has less than a hundredth of it.
constexpr std::size_t kMostKeptBytes = std::size_t{16} << 20;

Text Today() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return NumberText((now.wYear * 100LL + now.wMonth) * 100 + now.wDay);
}

Text WithoutEndSeparator(Text path) {
  while (EndsInSeparator(path)) path.pop_back();
  return path;
}

}  // namespace

PortableData::PortableData(CFileUtil& files, const FileSetOptions& options,
                           const FileSetPlaces& places, const Institution& institution)
    : files_(files), options_(options), places_(places), institution_(institution) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

Text PortableData::InPages(TextView name) const {
  return Text(kPagesDirectory).append(OLESTR("\\")).append(name);
}

bool PortableData::Plan(const CPatientList& patients, const Text& root, const Text& objects,
                        const PlannedFileSet& planned, const OtherContents& content) {
  root_ = root;
  planned_ = &planned;
  directory_ = root_;
  // The longest name that there is.
  Text longest = root_;
  if (!JoinPath(longest, InPages(StudyPageName(1)), *this)) return false;
  if (!JoinPath(directory_, kPagesDirectory, *this)) return false;
  objectDirectory_ = WithoutEndSeparator(objects.substr(root.size()));
  if (!CheckNames(objects, content)) return false;
  stylesheets_ = std::make_unique<PageStylesheets>();
  if (!stylesheets_->Load(options_.pageStylesheets)) return FailAs(*stylesheets_);
  MediumModel medium = ModelOf(patients);
  AddPage(InPages(kPageStyleName), stylesheets_->Style());
  if (!AddStudyPages(medium) || !AddIndex(medium)) return false;
  if (readmeOfOthers_.empty()) AddPage(kReadmeName, ReadmeText(medium));
  room_.AddDirectory();
  return true;
}

bool PortableData::CheckNames(const Text& objects, const OtherContents& content) {
  const Text objectPlace = ComparablePath(objects);
  for (const Text& name : {directory_, root_ + kReadmeName, root_ + kIndexPageName}) {
    // Pages of an earlier set would ride along with this one.
    const bool isThere = !options_.emptiesRoot && files_.PathExists(name);
    if (isThere || IsAtOrBelow(objectPlace, ComparablePath(name))) {
      return Fail(kMsgPageNameTaken, {name});
    }
  }
  return !content.HasContent() || CheckContent(content);
}

bool PortableData::CheckContent(const OtherContents& content) {
  const Text pages = ComparablePath(directory_);
  const Text readme = ComparablePath(root_ + kReadmeName);
  const Text index = ComparablePath(root_ + kIndexPageName);
  for (const Text& file : content.Files()) {
    const Text path = ComparablePath(file);
    if (path == readme) {
      readmeOfOthers_ = file.substr(file.find_last_of(OLESTR("\\/")) + 1);
    } else if (path == index) {
      isIndexOfOthers_ = true;
    } else if (IsAtOrBelow(path, pages) || IsAtOrBelow(path, readme) || IsAtOrBelow(path, index)) {
      return Fail(kMsgPageNameTaken, {file});
    }
  }
  CBaseItem sentence;
  if (!readmeOfOthers_.empty()) remarks_.push_back(LoadMessage(kMsgReadmeOfOtherContent));
  if (isIndexOfOthers_) {
    sentence.Fail(kMsgIndexOfOtherContent, {InPages(kIndexPageName)});
    remarks_.push_back(sentence.ErrorMessage());
  }
  // Of several the first.
  for (const Text& destination : content.Destinations()) {
    if (!otherContentDirectory_.empty() || !destination.starts_with(root_)) continue;
    otherContentDirectory_ = WithoutEndSeparator(destination.substr(root_.size()));
  }
  return true;
}

// In the order of the walk that has planned the objects.
MediumModel PortableData::ModelOf(const CPatientList& patients) const {
  MediumModel medium;
  std::size_t object = 0;
  std::size_t studyNumber = 0;
  for (std::size_t p = 0; p < patients.GetCount(); ++p) {
    PatientOnMedium& patient = medium.patients.emplace_back();
    patient.patient = patients.At(p);
    for (const CStudy* one : Ordered<CStudy>(patient.patient->Studies(), options_)) {
      StudyOnMedium& study = patient.studies.emplace_back();
      study.study = one;
      study.page = StudyPageName(++studyNumber);
      for (const CSeries* member : Ordered<CSeries>(one->Series(), options_)) {
        SeriesOnMedium& series = study.series.emplace_back();
        series.series = member;
        series.objects = Ordered<CDicomObjectProperties>(member->Images(), options_);
        series.firstObject = object;
        object += series.objects.size();
      }
    }
  }
  medium.objectsOfNoPatient = patients.TopLevelObjects().GetCount();
  medium.bytes = planned_->bytes;
  medium.number = options_.mediumNumber;
  medium.count = options_.mediumCount;
  medium.fileIdOf = [this](std::size_t i) { return planned_->objects[i].FileId(); };
  medium.objectDirectory = objectDirectory_;
  medium.otherContentDirectory = otherContentDirectory_;
  medium.indexIsBelow = isIndexOfOthers_;
  if (!readmeOfOthers_.empty()) medium.readme = readmeOfOthers_;
  medium.origin = {institution_.name, institution_.address,    institution_.phone,
                   institution_.web,  institution_.disclaimer, Today()};
  return medium;
}

bool PortableData::AddStudyPages(MediumModel& medium) {
  for (PatientOnMedium& patient : medium.patients) {
    for (StudyOnMedium& study : patient.studies) {
      for (SeriesOnMedium& series : study.series) AddHeaderPage(series, study.page);
      std::string page;
      if (!stylesheets_->RenderPage(StudyPageXml(medium, patient, study), page)) {
        return FailAs(*stylesheets_);
      }
      AddPage(InPages(study.page), std::move(page));
    }
  }
  return true;
}

// One object with an odd header must not keep the medium from being made.
void PortableData::AddHeaderPage(SeriesOnMedium& series, const Text& above) {
  if (series.objects.empty()) return;
  const Text& source = planned_->objects[series.firstObject].source.Get();
  std::string bytes;
  if (!MakeHeaderPage(source, options_.characterSet, above, *stylesheets_, bytes)) {
    CBaseItem sentence;
    sentence.Fail(kMsgNoHeaderPage, {source});
    remarks_.push_back(sentence.ErrorMessage());
    return;
  }
  series.headerPage = HeaderPageName(++headers_);
  Count(bytes.size());
  Page page{InPages(series.headerPage), {}, series.firstObject, above};
  if (keptBytes_ + bytes.size() <= kMostKeptBytes) {
    keptBytes_ += bytes.size();
    page.bytes = std::move(bytes);
  }
  pages_.push_back(std::move(page));
}

bool PortableData::AddIndex(const MediumModel& medium) {
  std::string page;
  if (!stylesheets_->RenderPage(IndexPageXml(medium), page)) return FailAs(*stylesheets_);
  AddPage(isIndexOfOthers_ ? InPages(kIndexPageName) : Text(kIndexPageName), std::move(page));
  return true;
}

void PortableData::AddPage(Text path, std::string bytes) {
  Count(bytes.size());
  pages_.push_back({std::move(path), std::move(bytes), 0, {}});
}

void PortableData::Count(std::size_t bytes) {
  bytesOnDisk_ += RoundedToBlocks(bytes);
  room_.AddFile(bytes);
}

bool PortableData::Write() {
  FileSystemFlush flush(places_.rootDirectory);
  for (const Page& page : pages_) {
    std::string remade;
    if (page.bytes.empty() && !RemakeHeader(page, remade)) return false;
    const std::string& bytes = page.bytes.empty() ? remade : page.bytes;
    if (!files_.WriteData(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                          static_cast<std::uint32_t>(bytes.size()), root_ + page.path, flush)) {
      return FailAs(files_);
    }
  }
  return files_.FlushAll(flush) || FailAs(files_);
}

bool PortableData::RemakeHeader(const Page& page, std::string& bytes) {
  const Text object = root_ + planned_->objects[page.object].FileId();
  return MakeHeaderPage(object, options_.characterSet, page.above, *stylesheets_, bytes) ||
         Fail(kMsgNoHeaderPage, {object});
}

}  // namespace quillon
