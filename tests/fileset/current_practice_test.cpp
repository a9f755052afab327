// What a file set is like when it follows the field of today.
#include <gtest/gtest.h>

#include <set>

#include "builder_job.h"
#include "dicom_dir_bytes.h"
#include "fileset/model/patient_list.h"

namespace quillon::test {
namespace {

constexpr std::uint32_t kCharacterSet = 0x00080005;
constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kInstanceUid = 0x00080018;

struct PracticeJob : BuilderJob {
  PracticeJob() { builder.currentPractice = true; }

  // A CT object with these texts.
  fs::path addText(const std::string& name, const std::string& characterSet,
                   const std::string& patientName, int instance,
                   const std::string& description = "Study") {
    DataSetBytes e;
    if (!characterSet.empty()) e.text(kCharacterSet, "CS", characterSet);
    const std::string uid = "2.25.8.1." + std::to_string(instance);
    e.text(0x00080016, "UI", sopClassUidOf(ObjectKind::Ct)).text(kInstanceUid, "UI", uid);
    e.text(0x00080020, "DA", "20090305").text(0x00080030, "TM", "101500");
    e.text(0x00080060, "CS", "CT").text(0x00081030, "LO", description);
    e.text(kName, "PN", patientName).text(0x00100020, "LO", "ID");
    e.text(0x0020000D, "UI", "2.25.8").text(0x0020000E, "UI", "2.25.8.1");
    e.text(0x00200010, "SH", "1").text(0x00200011, "IS", "1");
    e.text(0x00200013, "IS", std::to_string(instance));
    writeBytes(in / name,
               dicomFile(e.take(), sopClassUidOf(ObjectKind::Ct), uid, kExplicitLittleUid));
    added = builder.AddFile(WideOf(in / name));
    EXPECT_TRUE(added) << sentence();
    return in / name;
  }
  DicomDirBytes created() {
    EXPECT_TRUE(create()) << sentence();
    return readDicomDir(readBytes(root / "DICOMDIR"));
  }
};

std::string valueOf(const RecordElements& record, std::uint32_t tag) {
  const auto found = record.find(tag);
  return found == record.end() ? "(none)" : found->second;
}

TEST(CurrentPractice, ARecordHasTheBytesOfItsObjectAndTheirCharacterSet) {
  const struct {
    std::string declared;
    std::string name;
    std::string shown;    // in the label
    std::string inStead;  // setting
  } cases[] = {
      {"ISO_IR 100", "M\xFCller^J\xF6rg", "M\xC3\xBCller J\xC3\xB6rg", ""},
      {"ISO_IR 192", "M\xC3\xBCller^J\xC3\xB6rg", "M\xC3\xBCller J\xC3\xB6rg", ""},
      {"ISO_IR 144", "\xBB\xEE", "\xD0\x9B\xD1\x8E", ""},
      {"\\ISO 2022 IR 87", "Yamada=\x1B$B;3ED\x1B(B^\x1B$BB@O:\x1B(B",
       "Yamada=\xE5\xB1\xB1\xE7\x94\xB0 \xE5\xA4\xAA\xE9\x83\x8E", ""},
      // A character whose second byte is a backslash, at the end of the value and within.
      {"GBK", "Wang^\xD5\\", "Wang \xE8\xAA\xA0", ""},
      {"GB18030", "\xD5\\ \xD5\\^A", "\xE8\xAA\xA0 \xE8\xAA\xA0 A", ""},
      // What the set cannot hold is a replacement in text alone.
      {"ISO_IR 192", "A\xFF", "A\xEF\xBF\xBD", ""},
      {"ISO_IR 100", "\xBB\xEE", "\xD0\x9B\xD1\x8E", "ISO_IR 144"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.declared + " " + c.shown);
    PracticeJob job;
    job.builder.characterSet = c.inStead;
    job.addText("a", c.declared, c.name, 1);
    const DicomDirBytes dicomDir = job.created();
    EXPECT_EQ(dicomDir.records[0].at(kName), c.name);
    EXPECT_EQ(valueOf(dicomDir.records[0], kCharacterSet),
              c.inStead.empty() ? c.declared : c.inStead);
    // All ASCII: nothing to declare.
    for (int i : {1, 2, 3}) EXPECT_EQ(valueOf(dicomDir.records[i], kCharacterSet), "(none)");
    EXPECT_EQ(Plain(job.builder.IheLabel()).substr(0, 15 + c.shown.size()),
              "Patient Name:  " + c.shown);
  }
}

TEST(CurrentPractice, ARecordAndItsCharacterSetComeFromOneObject) {
  PracticeJob job;
  job.addText("a", "ISO_IR 100", "M\xFCller", 1,
              "Sch\xE4"
              "del");
  job.addText("b", "ISO_IR 192", "M\xC3\xBCller", 2,
              "Sch\xC3\xA4"
              "del");
  const DicomDirBytes dicomDir = job.created();
  ASSERT_EQ(recordTypes(dicomDir), "PATIENT STUDY SERIES IMAGE IMAGE");
  for (int i : {0, 1}) EXPECT_EQ(valueOf(dicomDir.records[i], kCharacterSet), "ISO_IR 100");
  EXPECT_EQ(dicomDir.records[0].at(kName), "M\xFCller");
  EXPECT_EQ(dicomDir.records[1].at(0x00081030),
            "Sch\xE4"
            "del");
}

TEST(CurrentPractice, UndeclaredCharactersAreToldOfAsMissing) {
  PracticeJob job;
  job.addText("b", "\\ISO 2022 IR 87", "\x1B$B;3ED\x1B(B", 2);
  ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
  EXPECT_EQ(job.builder.Planned().incomplete.size(), 0U);
  job.builder.Wipe();
  const fs::path file = job.addText("a", "", "M\xFCller", 1);
  ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
  const std::vector<MissingKey>& incomplete = job.builder.Planned().incomplete;
  ASSERT_EQ(incomplete.size(), 1U);
  EXPECT_EQ(incomplete[0].tag, kCharacterSet);
  EXPECT_EQ(Plain(incomplete[0].source), file.string());
}

// What cannot be made up is not said to have been.
TEST(CurrentPractice, ValuesAreMadeUpAsFarAsTheyCanBe) {
  PracticeJob job;
  job.builder.inventsMissingKeys = true;
  DataSetBytes e;
  const std::string waveform = "1.2.840.10008.5.1.4.1.1.9.1.1";
  e.text(0x00080016, "UI", waveform).text(kInstanceUid, "UI", "2.25.8.1.1");
  e.text(0x00080023, "DA", "20200102");
  e.text(0x0020000D, "UI", "2.25.8").text(0x0020000E, "UI", "2.25.8.1");
  writeBytes(job.in / "a", dicomFile(e.take(), waveform, "2.25.8.1.1", kExplicitLittleUid));
  ASSERT_TRUE(job.builder.AddFile(WideOf(job.in / "a"))) << job.sentence();
  ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
  std::set<std::uint32_t> madeUp;
  std::set<std::uint32_t> left;
  for (const MissingKey& one : job.builder.Planned().incomplete) {
    (one.isMadeUp ? madeUp : left).insert(one.tag);
  }
  EXPECT_EQ(madeUp, (std::set<std::uint32_t>{0x00080020, 0x00080030, 0x00080060, 0x00100020,
                                             0x00200010, 0x00200011, 0x00200013}));
  EXPECT_EQ(left, (std::set<std::uint32_t>{0x00080033}));
  const DicomDirBytes dicomDir = job.created();
  ASSERT_EQ(recordTypes(dicomDir), "PATIENT STUDY SERIES WAVEFORM");
  EXPECT_EQ(dicomDir.records[1].at(0x00080020), "20200102");
  EXPECT_EQ(dicomDir.records[3].at(0x00080033), "");
}

TEST(CurrentPractice, StudiesSeriesAndObjectsStandInOrderHoweverTheyCame) {
  PracticeJob job;
  const struct {
    const char* date;
    int study, series, instance;
  } objects[] = {{"20200101", 2, 1, 1}, {"20190101", 1, 10, 1}, {"20190101", 1, 2, 10},
                 {"20190101", 1, 2, 9}, {"20190101", 1, 2, 1},  {"", 3, 1, 1}};
  int made = 0;
  for (const auto& o : objects) {
    ObjectDescription d = object(1, o.study, o.series, o.instance);
    d.studyDate = o.date;
    job.add(std::to_string(++made), d);
    ASSERT_TRUE(job.added) << job.sentence();
  }
  // The same number twice: the smaller UID first, by its numbers.
  ObjectDescription again = object(1, 1, 2, 9);
  again.instanceUid = instanceUidOf(object(1, 1, 2, 10));
  again.instanceUid.back() = '1';  // ...11
  job.add("again", again);
  ASSERT_TRUE(job.added) << job.sentence();
  std::vector<std::string> uids;
  for (const RecordElements& record : job.created().records) {
    if (record.contains(kInstanceUid)) uids.push_back(record.at(kInstanceUid));
  }
  EXPECT_EQ(uids, (std::vector<std::string>{
                      instanceUidOf(object(1, 1, 2, 1)), instanceUidOf(object(1, 1, 2, 9)),
                      again.instanceUid, instanceUidOf(object(1, 1, 2, 10)),
                      instanceUidOf(object(1, 1, 10, 1)), instanceUidOf(object(1, 2, 1, 1)),
                      instanceUidOf(object(1, 3, 1, 1))}));
}

TEST(CurrentPractice, TheUidOfASetIsNobodyElses) {
  std::set<std::string> uids;
  for (int i = 0; i < 20; ++i) {
    PracticeJob job;
    job.add("a", object(1, 1, 1, 1));
    const std::string uid = job.created().header.at(0x00020003);
    EXPECT_TRUE(uid.starts_with("2.25.")) << uid;
    const std::string number = uid.substr(5);
    EXPECT_EQ(number.find_first_not_of("0123456789"), std::string::npos) << uid;
    EXPECT_LE(number.size(), 39U);
    EXPECT_NE(number.front(), '0');
    uids.insert(uid);
  }
  EXPECT_EQ(uids.size(), 20U);
}

TEST(CurrentPractice, ADocumentHasItsRecordByItsClassAndOfItsContentWhatModifiesTheTitle) {
  for (const std::string relationship : {"HAS CONCEPT MOD", "CONTAINS"}) {
    SCOPED_TRACE(relationship);
    PracticeJob job;
    ObjectDescription d = object(1, 1, 1, 1);
    d.kind = ObjectKind::Sr;
    d.verificationFlag = "VERIFIED";
    d.relationshipType = relationship;
    job.add("a", d);
    const DicomDirBytes dicomDir = job.created();
    ASSERT_EQ(recordTypes(dicomDir), "PATIENT STUDY SERIES SR DOCUMENT");
    const RecordElements& record = dicomDir.records[3];
    EXPECT_EQ(record.contains(0x0040A730), relationship == "HAS CONCEPT MOD");
    EXPECT_TRUE(record.contains(0x0040A030));
    EXPECT_TRUE(record.contains(0x0040A043));
  }
}

TEST(CurrentPractice, AnObjectOfNoPatientStandsAtTheTop) {
  PracticeJob job;
  DataSetBytes e;
  const std::string hangingProtocol = "1.2.840.10008.5.1.4.38.1";
  e.text(0x00080016, "UI", hangingProtocol).text(kInstanceUid, "UI", "2.25.8.9");
  e.text(0x00720002, "SH", "CHEST");
  writeBytes(job.in / "hanging",
             dicomFile(e.take(), hangingProtocol, "2.25.8.9", kExplicitLittleUid));
  ASSERT_TRUE(job.builder.AddFile(WideOf(job.in / "hanging"))) << job.sentence();
  // Nobody's medium.
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), "There is no patient information to process.");
  job.add("a", object(1, 1, 1, 1));
  EXPECT_EQ(job.count(), 2);
  const DicomDirBytes dicomDir = job.created();
  ASSERT_EQ(recordTypes(dicomDir), "PATIENT STUDY SERIES IMAGE HANGING PROTOCOL");
  EXPECT_EQ(dicomDir.records[4].at(0x00041500), "DICOMOBJ\\QLN00002");
  EXPECT_EQ(dicomDir.records[4].at(0x00720002), "CHEST");
  EXPECT_FALSE(fs::exists(job.in / "hanging"));
  EXPECT_EQ(job.count(), -1);

  // On older media it names no study.
  BuilderJob older;
  older.builder.currentPractice = false;
  writeBytes(older.in / "hanging", readBytes(job.root / "DICOMOBJ/QLN00002"));
  EXPECT_TRUE(older.builder.AddFile(WideOf(older.in / "hanging")));
  EXPECT_EQ(older.count(), -1);
}

TEST(CurrentPractice, PatientsThatMayBeOneAreToldOf) {
  PracticeJob job;
  const struct {
    OLECHAR key;
    const char* name;
    const char* id;
  } patients[] = {{'a', "DOE^JANE", "1"}, {'b', "ROE^JANE", "1"}, {'c', "DOE^JANE", "2"},
                  {'d', "DOE^JOHN", "3"}, {'e', "", ""},          {'f', "DOE^JILL", ""}};
  int made = 0;
  for (const auto& p : patients) {
    ObjectDescription d = object(++made, 1, 1, 1);
    d.patientName = *p.name == '\0' ? " " : p.name;
    d.patientId = *p.id == '\0' ? " " : p.id;
    ASSERT_TRUE(job.builder.SetUniquePatientId(Text(1, p.key)));
    job.add(std::to_string(made), d);
    ASSERT_TRUE(job.added) << job.sentence();
  }
  ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
  std::vector<std::string> found;
  for (const RepeatedPatient& one : job.builder.Planned().repeatedPatients) {
    found.push_back((one.isSameId ? "ID " : "name ") + Plain(one.same));
    for (const Text& other : one.others) found.back() += " | " + Plain(other);
  }
  EXPECT_EQ(found,
            (std::vector<std::string>{"ID 1 | DOE^JANE | ROE^JANE", "name DOE^JANE | 1 | 2"}));

  job.builder.isForOnePatient = true;
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), "The files are of 6 patients, and the file set is to be of one.");
  EXPECT_EQ(filesBelow(job.in).size(), 6U);
  EXPECT_FALSE(fs::exists(job.root / "DICOMDIR"));
  EXPECT_EQ(job.count(), 6);
}

}  // namespace
}  // namespace quillon::test
