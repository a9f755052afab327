#include "pages/page_xml.h"

#include <algorithm>
#include <string_view>

#include "charset/character_set.h"
#include "dicomobjects/xml_text.h"
#include "pages/person_name.h"
#include "software.h"

namespace quillon {

namespace {

// What turns the order of the characters behind it, also beyond the value it stands in, and what
// ends a line where people see none.
constexpr bool IsUnfitToShow(OLECHAR unit) {
  return (unit >= 0x7F && unit <= 0x9F) || (unit >= 0x2028 && unit <= 0x202E) ||
         (unit >= 0x2066 && unit <= 0x2069);
}

// A path as the reference to it in a page.
Text Reference(TextView path) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "-._~/";
  Text reference;
  for (const char c : NarrowText(path, CP_UTF8)) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isLetter = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
                          (byte >= '0' && byte <= '9');
    if (c == '\\') {
      reference += OLESTR('/');
    } else if (isLetter || kPlain.find(c) != std::string_view::npos) {
      reference += static_cast<OLECHAR>(byte);
    } else {
      reference += OLESTR('%');
      reference += static_cast<OLECHAR>(kHex[byte >> 4]);
      reference += static_cast<OLECHAR>(kHex[byte & 15]);
    }
  }
  return reference;
}

// The texts of a node by its character set, where they are not read yet.
class NodeTexts {
 public:
  explicit NodeTexts(const CRecordedItem& node) : terms_(node.CharacterSetOfBytes()) {}
  [[nodiscard]] Text Read(const Text& text, ValueForm form = ValueForm::Values) const {
    if (terms_.empty()) return text;
    return CharacterSet(terms_).DecodeJoined(NarrowText(text, CP_ACP), form);
  }

 private:
  const std::string& terms_;
};

class Writer {
 public:
  Text Take() { return std::move(xml_); }

  void Begin(std::string_view name) {
    Close();
    Put("<");
    Put(name);
    isOpen_ = true;
  }
  // Of the element that has begun; an empty value has no attribute.
  void Attribute(std::string_view name, TextView value) {
    if (value.empty()) return;
    Put(" ");
    Put(name);
    Put("=\"");
    xml_ += Shown(value);
    Put("\"");
  }
  void Attribute(std::string_view name, std::uint64_t number) {
    Attribute(name, NumberText(static_cast<long long>(number)));
  }
  void Content(TextView text) {
    Put(">");
    isOpen_ = false;
    xml_ += Shown(text);
  }
  void End(std::string_view name) {
    if (isOpen_) {
      Put("/>\n");
      isOpen_ = false;
      return;
    }
    Put("</");
    Put(name);
    Put(">\n");
  }

 private:
  static Text Shown(TextView value) {
    Text text(value);
    for (OLECHAR& unit : text) {
      if (IsUnfitToShow(unit)) unit = OLESTR(' ');
    }
    EscapeXmlText(text);
    return text;
  }
  void Close() {
    if (isOpen_) Put(">\n");
    isOpen_ = false;
  }
  void Put(std::string_view ascii) { xml_.append(ascii.begin(), ascii.end()); }

  Text xml_{OLESTR("<?xml version=\"1.0\"?>\n")};
  bool isOpen_ = false;
};

// Of all series of a study, each once.
Text Modalities(const StudyOnMedium& study) {
  std::vector<TextView> seen;
  Text text;
  for (const SeriesOnMedium& one : study.series) {
    const TextView modality = one.series->Modality();
    if (modality.empty() || std::ranges::find(seen, modality) != seen.end()) continue;
    if (!seen.empty()) text += OLESTR(", ");
    text += modality;
    seen.push_back(modality);
  }
  return text;
}

class PageWriter {
 public:
  // isBelow: the page lies in the directory of the pages.
  PageWriter(const MediumModel& medium, bool isBelow) : medium_(medium), isBelow_(isBelow) {}

  Text Index() {
    BeginMedium("index");
    for (const PatientOnMedium& patient : medium_.patients) {
      BeginPatient(patient);
      for (const StudyOnMedium& study : patient.studies) {
        BeginStudy(study);
        xml_.End("study");
      }
      xml_.End("patient");
    }
    xml_.End("medium");
    return xml_.Take();
  }

  Text Study(const PatientOnMedium& patient, const StudyOnMedium& study) {
    BeginMedium("study");
    BeginPatient(patient);
    BeginStudy(study);
    for (const SeriesOnMedium& series : study.series) PutSeries(series);
    xml_.End("study");
    xml_.End("patient");
    xml_.End("medium");
    return xml_.Take();
  }

 private:
  // References from this page.
  [[nodiscard]] Text InRoot(TextView name) const {
    return isBelow_ ? Text(OLESTR("../")).append(name) : Text(name);
  }
  [[nodiscard]] Text InPages(TextView name) const {
    return isBelow_ ? Text(name) : Text(kPagesDirectory).append(OLESTR("/")).append(name);
  }

  void BeginMedium(std::string_view page) {
    xml_.Begin("medium");
    xml_.Attribute("page", WidenText(page, CP_ACP));
    xml_.Attribute("index",
                   medium_.indexIsBelow ? InPages(kIndexPageName) : InRoot(kIndexPageName));
    xml_.Attribute("readme", InRoot(Reference(medium_.readme)));
    xml_.Attribute("style", InPages(kPageStyleName));
    if (!medium_.otherContentDirectory.empty()) {
      xml_.Attribute("other-content-name", medium_.otherContentDirectory);
      xml_.Attribute("other-content", InRoot(Reference(medium_.otherContentDirectory)));
    }
    xml_.Attribute("objects-in", medium_.objectDirectory);
    if (medium_.count > 1) {
      xml_.Attribute("disc", medium_.number);
      xml_.Attribute("discs", medium_.count);
    }
    xml_.Attribute("created", medium_.origin.created);
    xml_.Attribute("software", SoftwareName());
    const MediumTotals totals = TotalsOf(medium_);
    xml_.Attribute("patients", totals.patients);
    PutTotals(totals);
    xml_.Attribute("bytes", medium_.bytes);
    const MediumOrigin& origin = medium_.origin;
    xml_.Begin("institution");
    xml_.Attribute("name", origin.institution);
    xml_.Attribute("address", origin.address);
    xml_.Attribute("phone", origin.phone);
    xml_.Attribute("web", origin.web);
    xml_.Attribute("disclaimer", origin.disclaimer);
    xml_.End("institution");
  }

  void PutTotals(const MediumTotals& totals) {
    xml_.Attribute("studies", totals.studies);
    xml_.Attribute("series", totals.series);
    xml_.Attribute("objects", totals.objects);
  }

  void BeginPatient(const PatientOnMedium& one) {
    const CPatient& patient = *one.patient;
    const NodeTexts texts(patient);
    const Text name = texts.Read(patient.Name(), ValueForm::PersonNames);
    xml_.Begin("patient");
    xml_.Attribute("id", texts.Read(patient.PatientId()));
    xml_.Attribute("birth-date", patient.BirthDate());
    xml_.Attribute("sex", patient.Sex());
    PutTotals(TotalsOf(one));
    xml_.Begin("name");
    xml_.Attribute("value", name);
    for (const NameGroup& group : ReadableName(name)) {
      xml_.Begin("group");
      xml_.Attribute("form", WidenText(group.form, CP_ACP));
      xml_.Content(group.text);
      xml_.End("group");
    }
    xml_.End("name");
  }

  void BeginStudy(const StudyOnMedium& one) {
    const CStudy& study = *one.study;
    const NodeTexts texts(study);
    xml_.Begin("study");
    xml_.Attribute("href", InPages(one.page));
    xml_.Attribute("uid", study.StudyInstanceUid());
    xml_.Attribute("date", study.StudyDate());
    xml_.Attribute("time", study.StudyTime());
    xml_.Attribute("description", texts.Read(study.Description()));
    xml_.Attribute("accession", texts.Read(study.AccessionNumber()));
    xml_.Attribute("id", texts.Read(study.StudyId()));
    xml_.Attribute("modalities", Modalities(one));
    const MediumTotals totals = TotalsOf(one);
    xml_.Attribute("series", totals.series);
    xml_.Attribute("objects", totals.objects);
  }

  void PutSeries(const SeriesOnMedium& one) {
    const CSeries& series = *one.series;
    xml_.Begin("series");
    xml_.Attribute("number", series.SeriesNumber());
    xml_.Attribute("uid", series.SeriesInstanceUid());
    xml_.Attribute("modality", series.Modality());
    xml_.Attribute("date", series.SeriesDate());
    xml_.Attribute("description", NodeTexts(series).Read(series.Description()));
    xml_.Attribute("objects", one.objects.size());
    if (!one.headerPage.empty()) xml_.Attribute("header", InPages(one.headerPage));
    for (std::size_t i = 0; i < one.objects.size(); ++i) {
      const CDicomObjectProperties& object = *one.objects[i];
      xml_.Begin("object");
      xml_.Attribute("file", medium_.fileIdOf(one.firstObject + i));
      xml_.Attribute("number", object.InstanceNumber());
      xml_.Attribute("uid", object.InstanceUid());
      xml_.Attribute("class", object.SopClassName());
      xml_.End("object");
    }
    xml_.End("series");
  }

  const MediumModel& medium_;
  bool isBelow_;
  Writer xml_;
};

}  // namespace

Text IndexPageXml(const MediumModel& medium) {
  return PageWriter(medium, medium.indexIsBelow).Index();
}

Text StudyPageXml(const MediumModel& medium, const PatientOnMedium& patient,
                  const StudyOnMedium& study) {
  return PageWriter(medium, /*isBelow=*/true).Study(patient, study);
}

}  // namespace quillon
