#include "support/object_maker.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

#include "support/temp_dir.h"

namespace quillon::test {

namespace {

// Under the arc that anyone may use with a random number of 128 bits.
constexpr std::string_view kUidRoot = "2.25.171263508";

struct KindRow {
  ObjectKind kind;
  std::string_view modality;
  std::string_view sopClassUid;
};
// clang-format off
constexpr KindRow kKinds[] = {
    {ObjectKind::Ct,           "CT", "1.2.840.10008.5.1.4.1.1.2"},
    {ObjectKind::Mr,           "MR", "1.2.840.10008.5.1.4.1.1.4"},
    {ObjectKind::Cr,           "CR", "1.2.840.10008.5.1.4.1.1.1"},
    {ObjectKind::Sr,           "SR", "1.2.840.10008.5.1.4.1.1.88.11"},
    {ObjectKind::Presentation, "PR", "1.2.840.10008.5.1.4.1.1.11.1"},
    {ObjectKind::KeyObject,    "KO", "1.2.840.10008.5.1.4.1.1.88.59"},
};
// clang-format on

const KindRow& rowOf(ObjectKind kind) {
  return *std::find_if(std::begin(kKinds), std::end(kKinds),
                       [kind](const KindRow& row) { return row.kind == kind; });
}

// Elements are put in the order of the modules they belong to and come out in tag order.
class Elements {
 public:
  explicit Elements(Syntax syntax) : syntax_(syntax) {}

  Elements& text(std::uint32_t tag, std::string_view vr, std::string_view value) {
    map_[tag] = DataSetBytes(syntax_).text(tag, vr, value).take();
    return *this;
  }
  Elements& us(std::uint32_t tag, const std::vector<std::uint16_t>& values,
               std::string_view vr = "US") {
    map_[tag] = DataSetBytes(syntax_).us(tag, values, vr).take();
    return *this;
  }
  Elements& sl(std::uint32_t tag, const std::vector<std::uint32_t>& values) {
    map_[tag] = DataSetBytes(syntax_).ul(tag, values, "SL").take();
    return *this;
  }
  Elements& sequence(std::uint32_t tag,
                     const std::vector<std::function<void(Elements&)>>& items = {}) {
    DataSetBytes bytes(syntax_);
    bytes.beginSequence(tag);
    for (const auto& fill : items) {
      Elements item(syntax_);
      fill(item);
      bytes.beginItem().append(item.take()).endItem();
    }
    map_[tag] = bytes.endSequence().take();
    return *this;
  }
  // A sequence of one code.
  Elements& code(std::uint32_t tag, std::string_view value, std::string_view scheme,
                 std::string_view meaning) {
    return sequence(tag, {[&](Elements& item) {
                      item.text(0x00080100, "SH", value)
                          .text(0x00080102, "SH", scheme)
                          .text(0x00080104, "LO", meaning);
                    }});
  }
  [[nodiscard]] Bytes take() const {
    std::size_t size = 0;
    for (const auto& [tag, bytes] : map_) size += bytes.size();
    Bytes all;
    all.reserve(size);
    for (const auto& [tag, bytes] : map_) all.insert(all.end(), bytes.begin(), bytes.end());
    return all;
  }

 private:
  Syntax syntax_;
  std::map<std::uint32_t, Bytes> map_;
};

std::string number(int value) { return std::to_string(value); }

// The image that a report, presentation state or key object document of the same study speaks of.
ObjectDescription referencedImage(const ObjectDescription& d) {
  ObjectDescription image;
  image.kind = ObjectKind::Ct;
  image.patient = d.patient;
  image.study = d.study;
  return image;
}

void putSopReference(Elements& item, const ObjectDescription& image) {
  item.text(0x00081150, "UI", sopClassUidOf(image.kind))
      .text(0x00081155, "UI", instanceUidOf(image));
}

void putPatientAndStudy(Elements& e, const ObjectDescription& d) {
  e.text(0x00100010, "PN", d.patientName.empty() ? "PATIENT^" + number(d.patient) : d.patientName)
      .text(0x00100020, "LO", d.patientId.empty() ? "ID" + number(d.patient) : d.patientId)
      .text(0x00100030, "DA", d.patientBirthDate)
      .text(0x00100040, "CS", d.patientSex)
      .text(0x00101010, "AS", d.patientAge)
      .text(0x0020000D, "UI", studyUidOf(d))
      .text(0x00080020, "DA", d.studyDate)
      .text(0x00080030, "TM", "101500")
      .text(0x00080050, "SH", "ACC" + number(d.patient) + "-" + number(d.study))
      .text(0x00080090, "PN", "REFERRING^PHYSICIAN")
      .text(0x00081030, "LO", d.studyDescription)
      .text(0x00200010, "SH", "STUDY" + number(d.study));
}

void putSeriesAndSop(Elements& e, const ObjectDescription& d) {
  const KindRow& row = rowOf(d.kind);
  e.text(0x00080005, "CS", "ISO_IR 100")
      .text(0x00080016, "UI", row.sopClassUid)
      .text(0x00080018, "UI", instanceUidOf(d))
      .text(0x00080021, "DA", d.studyDate)
      .text(0x00080031, "TM", "102000")
      .text(0x00080060, "CS", row.modality)
      .text(0x00080070, "LO", "Sample Maker")
      .text(0x0008103E, "LO", std::string(row.modality) + " series " + number(d.series))
      .text(0x00081090, "LO", "Model 1")
      .text(0x00181000, "LO", "1001")
      .text(0x00181020, "LO", "1.0")
      .text(0x0020000E, "UI", seriesUidOf(d))
      .text(0x00200011, "IS", number(d.series))
      .text(0x00200013, "IS", number(d.instance))
      .text(0x00080023, "DA", d.studyDate)
      .text(0x00080033, "TM", "103000");
}

void putPixels(Elements& e, const ObjectDescription& d) {
  std::vector<std::uint16_t> pixels;
  pixels.reserve(static_cast<std::size_t>(d.rows) * static_cast<std::size_t>(d.columns));
  for (int row = 0; row < d.rows; ++row) {
    for (int column = 0; column < d.columns; ++column) {
      pixels.push_back(static_cast<std::uint16_t>((row * 16 + column + d.instance) & 0x0FFF));
    }
  }
  e.us(0x00280002, {1})
      .text(0x00280004, "CS", "MONOCHROME2")
      .us(0x00280010, {static_cast<std::uint16_t>(d.rows)})
      .us(0x00280011, {static_cast<std::uint16_t>(d.columns)})
      .us(0x00280100, {16})
      .us(0x00280101, {12})
      .us(0x00280102, {11})
      .us(0x00280103, {0})
      .text(0x00281050, "DS", "2048")
      .text(0x00281051, "DS", "4096")
      .us(0x7FE00010, pixels, "OW");
}

void putImagePlane(Elements& e, const ObjectDescription& d) {
  e.text(0x00185100, "CS", "HFS")
      .text(0x00180050, "DS", "5")
      .text(0x00180088, "DS", "5")
      .text(0x00200012, "IS", "1")
      .text(0x00200032, "DS", "-120\\-120\\" + number(5 * d.instance))
      .text(0x00200037, "DS", "1\\0\\0\\0\\1\\0")
      .text(0x00200052, "UI", studyUidOf(d) + ".9999")
      .text(0x00201040, "LO", "")
      .text(0x00201041, "DS", number(5 * d.instance))
      .text(0x00280030, "DS", "0.9375\\0.9375");
}

void putCt(Elements& e, const ObjectDescription& d) {
  putImagePlane(e, d);
  e.text(0x00080008, "CS", "ORIGINAL\\PRIMARY\\AXIAL")
      .text(0x00080022, "DA", d.studyDate)
      .text(0x00080032, "TM", "102500")
      .text(0x00180015, "CS", "ABDOMEN")
      .text(0x00180022, "CS", "HELICAL MODE")
      .text(0x00180060, "DS", "120")
      .text(0x00180090, "DS", "240")
      .text(0x00181100, "DS", "240")
      .text(0x00181120, "DS", "0")
      .text(0x00181130, "DS", "110")
      .text(0x00181150, "IS", "700")
      .text(0x00181151, "IS", "250")
      .text(0x00181210, "SH", "STANDARD")
      .text(0x00281052, "DS", "-1024")
      .text(0x00281053, "DS", "1")
      .text(0x00281054, "LO", "HU");
}

void putMr(Elements& e, const ObjectDescription& d) {
  putImagePlane(e, d);
  e.text(0x00080008, "CS", "ORIGINAL\\PRIMARY\\OTHER")
      .text(0x00180015, "CS", "BRAIN")
      .text(0x00180020, "CS", "SE")
      .text(0x00180021, "CS", "NONE")
      .text(0x00180022, "CS", "")
      .text(0x00180023, "CS", "2D")
      .text(0x00180080, "DS", "500")
      .text(0x00180081, "DS", "15")
      .text(0x00180087, "DS", "1.5")
      .text(0x00180091, "IS", "1");
}

void putCr(Elements& e, const ObjectDescription&) {
  e.text(0x00080008, "CS", "ORIGINAL\\PRIMARY")
      .text(0x00180015, "CS", "CHEST")
      .text(0x00180060, "DS", "90")
      .text(0x00185101, "CS", "PA")
      .text(0x00181164, "DS", "0.2\\0.2")
      .text(0x00200020, "CS", "L\\F");
}

// First item: a code that modifies the title, or a text under another relationship.
void putFirstContentItem(Elements& item, const ObjectDescription& d) {
  item.text(0x0040A010, "CS", d.relationshipType);
  if (d.relationshipType == "HAS CONCEPT MOD") {
    item.text(0x0040A040, "CS", "CODE");
    if (d.kind == ObjectKind::KeyObject) {
      item.code(0x0040A043, "113011", "DCM", "Document Title Modifier")
          .code(0x0040A168, "113015", "DCM", "Series");
    } else {
      item.code(0x0040A043, "121049", "DCM", "Language of Content Item and Descendants")
          .code(0x0040A168, "en", "RFC5646", "English");
    }
  } else {
    item.text(0x0040A040, "CS", "TEXT")
        .code(0x0040A043, "121071", "DCM", "Finding")
        .text(0x0040A160, "UT", "Nothing to remark");
  }
}

void putEvidence(Elements& e, const ObjectDescription& image) {
  e.sequence(0x0040A375, {[&](Elements& study) {
               study.text(0x0020000D, "UI", studyUidOf(image))
                   .sequence(0x00081115, {[&](Elements& series) {
                               series.text(0x0020000E, "UI", seriesUidOf(image))
                                   .sequence(0x00081199,
                                             {[&](Elements& sop) { putSopReference(sop, image); }});
                             }});
             }});
}

void putSr(Elements& e, const ObjectDescription& d) {
  e.sequence(0x00081111)
      .sequence(0x0040A372)
      .text(0x0040A040, "CS", "CONTAINER")
      .text(0x0040A050, "CS", "SEPARATE")
      .text(0x0040A491, "CS", "COMPLETE")
      .text(0x0040A493, "CS", d.verificationFlag)
      .code(0x0040A043, "121060", "DCM", "History")
      .sequence(0x0040A730, {[&](Elements& first) { putFirstContentItem(first, d); },
                             [&](Elements& second) {
                               second.text(0x0040A010, "CS", "CONTAINS")
                                   .text(0x0040A040, "CS", "TEXT")
                                   .code(0x0040A043, "121060", "DCM", "History")
                                   .text(0x0040A160, "UT", "Sample report");
                             }});
  if (d.verificationFlag == "VERIFIED") {
    // Stands in the sequence by the standard; the directory record wants it beside the flag, and
    // many makers write both.
    e.text(0x0040A030, "DT", "20090305120000")
        .sequence(0x0040A073, {[](Elements& observer) {
                    observer.text(0x0040A027, "LO", "Sample Hospital")
                        .text(0x0040A030, "DT", "20090305120000")
                        .text(0x0040A075, "PN", "VERIFYING^OBSERVER")
                        .sequence(0x0040A088);
                  }});
  }
}

void putKeyObject(Elements& e, const ObjectDescription& d) {
  const ObjectDescription image = referencedImage(d);
  e.sequence(0x00081111)
      .text(0x0040A040, "CS", "CONTAINER")
      .text(0x0040A050, "CS", "SEPARATE")
      .code(0x0040A043, "113013", "DCM", "Best In Set")
      .sequence(0x0040A504, {[](Elements& item) {
                  item.text(0x00080105, "CS", "DCMR").text(0x0040DB00, "CS", "2010");
                }})
      .sequence(0x0040A730, {[&](Elements& first) { putFirstContentItem(first, d); },
                             [&](Elements& second) {
                               second.text(0x0040A010, "CS", "CONTAINS")
                                   .text(0x0040A040, "CS", "IMAGE")
                                   .sequence(0x00081199,
                                             {[&](Elements& sop) { putSopReference(sop, image); }});
                             }});
  putEvidence(e, image);
}

void putPresentation(Elements& e, const ObjectDescription& d) {
  const ObjectDescription image = referencedImage(d);
  e.text(0x00200060, "CS", "")
      .text(0x00700080, "CS", "PRESENTATION")
      .text(0x00700081, "LO", "Sample presentation state")
      .text(0x00700082, "DA", d.studyDate)
      .text(0x00700083, "TM", "110000")
      .text(0x00700084, "PN", "CREATOR^CONTENT")
      .sequence(0x00081115, {[&](Elements& series) {
                  series.text(0x0020000E, "UI", seriesUidOf(image))
                      .sequence(0x00081140, {[&](Elements& sop) { putSopReference(sop, image); }});
                }})
      .sequence(0x0070005A, {[](Elements& area) {
                  area.sl(0x00700052, {1, 1})
                      .sl(0x00700053, {16, 16})
                      .text(0x00700100, "CS", "SCALE TO FIT")
                      .text(0x00700102, "IS", "1\\1");
                }})
      .text(0x20500020, "CS", "IDENTITY");
}

// Private elements in several blocks, of the value types that fill real headers.
void putExtraElements(Elements& e, int count) {
  constexpr int kPerBlock = 60;
  for (int i = 0; i < count; ++i) {
    const auto group = static_cast<std::uint32_t>(0x0009 + 2 * (i / kPerBlock)) << 16;
    const int place = i % kPerBlock;
    if (place == 0) {
      e.text(group | 0x0010, "LO", "SAMPLE MAKER " + number(i / kPerBlock + 1));
      continue;
    }
    const std::uint32_t tag = group | static_cast<std::uint32_t>(0x1000 + place);
    switch (place % 6) {
      case 0:
        e.text(tag, "DS", "0.9375\\1.5\\" + number(i));
        break;
      case 1:
        e.text(tag, "LO", "private value " + number(i));
        break;
      case 2:
        e.us(tag, {static_cast<std::uint16_t>(i), 2, 3});
        break;
      case 3:
        e.text(tag, "UI", "2.25.171263509." + number(i));
        break;
      case 4:
        e.text(tag, "IS", number(i));
        break;
      default:
        e.text(tag, "SH", "code " + number(i));
        break;
    }
  }
}

std::string_view transferSyntaxUid(Syntax syntax) {
  switch (syntax) {
    case Syntax::ImplicitLittle:
      return kImplicitLittleUid;
    case Syntax::ExplicitBig:
      return kExplicitBigUid;
    case Syntax::ExplicitLittle:
      break;
  }
  return kExplicitLittleUid;
}

}  // namespace

std::string studyUidOf(const ObjectDescription& d) {
  if (!d.studyUid.empty()) return d.studyUid;
  return std::string(kUidRoot) + "." + number(d.patient) + "." + number(d.study);
}

std::string seriesUidOf(const ObjectDescription& d) {
  if (!d.seriesUid.empty()) return d.seriesUid;
  return std::string(kUidRoot) + "." + number(d.patient) + "." + number(d.study) + "." +
         number(d.series);
}

std::string instanceUidOf(const ObjectDescription& d) {
  if (!d.instanceUid.empty()) return d.instanceUid;
  return std::string(kUidRoot) + "." + number(d.patient) + "." + number(d.study) + "." +
         number(d.series) + "." + number(d.instance);
}

std::string sopClassUidOf(ObjectKind kind) { return std::string(rowOf(kind).sopClassUid); }

Bytes makeObject(const ObjectDescription& d) {
  Elements e(d.syntax);
  putPatientAndStudy(e, d);
  putSeriesAndSop(e, d);
  switch (d.kind) {
    case ObjectKind::Ct:
      putCt(e, d);
      break;
    case ObjectKind::Mr:
      putMr(e, d);
      break;
    case ObjectKind::Cr:
      putCr(e, d);
      break;
    case ObjectKind::Sr:
      putSr(e, d);
      break;
    case ObjectKind::Presentation:
      putPresentation(e, d);
      break;
    case ObjectKind::KeyObject:
      putKeyObject(e, d);
      break;
  }
  const bool isImage =
      d.kind == ObjectKind::Ct || d.kind == ObjectKind::Mr || d.kind == ObjectKind::Cr;
  if (isImage) putPixels(e, d);
  putExtraElements(e, d.extraElements);
  return dicomFile(e.take(), sopClassUidOf(d.kind), instanceUidOf(d), transferSyntaxUid(d.syntax));
}

void makeObjectFile(const std::filesystem::path& file, const ObjectDescription& d) {
  writeBytes(file, makeObject(d));
}

std::vector<std::filesystem::path> makeSampleTree(const std::filesystem::path& directory) {
  struct Row {
    const char* directory;
    ObjectKind kind;
    int patient, study, series, count;
  };
  // clang-format off
  constexpr Row kSeries[] = {
      {"DOE/CT1", ObjectKind::Ct,           1, 1, 1, 3},
      {"DOE/CT2", ObjectKind::Ct,           1, 1, 2, 2},
      {"DOE/SR",  ObjectKind::Sr,           1, 1, 3, 1},
      {"DOE/PR",  ObjectKind::Presentation, 1, 1, 4, 1},
      {"DOE/KO",  ObjectKind::KeyObject,    1, 1, 5, 1},
      {"DOE/MR",  ObjectKind::Mr,           1, 2, 1, 2},
      {"ROE/CR",  ObjectKind::Cr,           2, 1, 1, 1},
  };
  // clang-format on
  std::vector<std::filesystem::path> files;
  for (const Row& row : kSeries) {
    for (int instance = 1; instance <= row.count; ++instance) {
      ObjectDescription d;
      d.kind = row.kind;
      d.patient = row.patient;
      d.study = row.study;
      d.series = row.series;
      d.instance = instance;
      d.patientName = row.patient == 1 ? "DOE^JOHN" : "ROE^JANE";
      d.patientId = row.patient == 1 ? "12345" : "67890";
      d.patientSex = row.patient == 1 ? "M" : "F";
      if (row.study == 2) d.studyDate = "20090410";
      char name[16];
      std::snprintf(name, sizeof name, "IM%05d", instance);
      files.push_back(directory / row.directory / name);
      makeObjectFile(files.back(), d);
    }
  }
  return files;
}

}  // namespace quillon::test
