// Faults of the files that records name, and of the others on a medium: each is found, and nothing
// else but what follows from it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "verify_rows.h"

namespace quillon {
namespace {

using test::check;
using test::codesOf;
using test::kFile1;
using test::kFile2;
using test::kFile3;
using test::MadeMedium;
using test::MadeRecord;
using test::messagesOf;
using test::replaceIn;
using test::Row;
using test::verified;
using test::VerifyMediumTest;
using enum test::MadeMedium::Record;

void rename(MadeMedium& made, const char* name) {
  made.records[kImage1].fileId = name;
  made.file(name) = made.file(kFile1);
  made.medium.files.erase(OLESTR("DICOM\\IM000001"));
}

TEST_F(VerifyMediumTest, FindsFileIdsThatAreNone) {
  check({
      {"lower case",
       [](MadeMedium& m) { rename(m, "DICOM\\im000001"); },
       {},
       "file-id-form DICOMDIR\n",
       "is none: it has other characters than A-Z, 0-9 and \"_\"."},
      {"extension",
       [](MadeMedium& m) { rename(m, "DICOM\\IM1.DCM"); },
       {},
       "file-id-form DICOMDIR\n"},
      {"8 characters", [](MadeMedium& m) { rename(m, "DICOM\\IMG00001"); }, {}, ""},
      {"9 characters",
       [](MadeMedium& m) { rename(m, "DICOM\\IMAGE0001"); },
       {},
       "file-id-form DICOMDIR\n",
       "a component has more than 8 characters"},
      {"8 components", [](MadeMedium& m) { rename(m, "A\\B\\C\\D\\E\\F\\G\\H"); }, {}, ""},
      {"9 components",
       [](MadeMedium& m) { rename(m, "A\\B\\C\\D\\E\\F\\G\\H\\I"); },
       {},
       "file-id-form DICOMDIR\n",
       "it has more than 8 components"},
      {"outside",
       [](MadeMedium& m) { m.records[kImage1].fileId = "..\\..\\ETC\\PASSWD"; },
       {},
       "file-id-outside DICOMDIR\nfile-unreferenced DICOM/IM000001\n"},
      {"outside in one component",
       [](MadeMedium& m) { m.records[kImage1].fileId = "../PASSWD"; },
       {},
       "file-id-outside DICOMDIR\nfile-unreferenced DICOM/IM000001\n"},
      {"other case than the file",
       [](MadeMedium& m) {
         m.file("DICOM\\im000001") = m.file(kFile1);
         m.medium.files.erase(OLESTR("DICOM\\IM000001"));
       },
       {},
       "file-name-case DICOM/im000001\n"},
  });
}

TEST_F(VerifyMediumTest, FindsWhereFilesAreNotWhatRecordsSay) {
  check({
      {"none",
       {},
       [](MadeMedium& m) { m.medium.files.erase(OLESTR("DICOM\\IM000002")); },
       "file-missing DICOM/IM000002\n",
       "The file is not there; the IMAGE record at offset 0x"},
      {"not named",
       {},
       [](MadeMedium& m) { m.file("EXTRA") = m.file(kFile1); },
       "file-unreferenced EXTRA\n"},
      {"other file",
       {},
       [](MadeMedium& m) {
         m.file("README") = {1, 2, 3};
       },
       ""},
      {"empty", {}, [](MadeMedium& m) { m.file(kFile1).clear(); }, "file-empty DICOM/IM000001\n"},
      {"not DICOM",
       {},
       [](MadeMedium& m) { m.file(kFile1).assign(500, 'x'); },
       "file-not-dicom DICOM/IM000001\n"},
      {"unreadable",
       {},
       [](MadeMedium& m) { m.medium.unreadable = OLESTR("DICOM\\IM000001"); },
       "file-unreadable DICOM/IM000001\n"},
      {"link",
       {},
       [](MadeMedium& m) {
         m.medium.files.erase(OLESTR("DICOM\\IM000001"));
         m.medium.others[OLESTR("DICOM\\IM000001")] = MediumEntry::Kind::Link;
       },
       "file-not-regular DICOM/IM000001\nlink DICOM/IM000001\n",
       "It is a link, not a file; the"},
      {"cut in the pixel data",
       {},
       [](MadeMedium& m) { m.file(kFile1).resize(m.file(kFile1).size() - 1); },
       "file-cut DICOM/IM000001\n"},
      {"cut in the header",
       {},
       [](MadeMedium& m) { m.file(kFile1).resize(450); },
       "file-damaged DICOM/IM000001\n"},
      {"swapped",
       {},
       [](MadeMedium& m) { std::swap(m.file(kFile1), m.file(kFile2)); },
       "sop-instance-differs DICOM/IM000001\ninstance-number-differs DICOM/IM000001\n"
       "sop-instance-differs DICOM/IM000002\ninstance-number-differs DICOM/IM000002\n"},
      {"SOP class",
       [](MadeMedium& m) { m.records[kImage1].sopClassUid = "1.2.3"; },
       {},
       "sop-class-differs DICOM/IM000001\n",
       "SOP Class UID of the file is \"1.2.840.10008.5.1.4.1.1.2\", the IMAGE record at offset 0x"},
      {"SOP instance",
       [](MadeMedium& m) { m.records[kImage1].sopInstanceUid = "1.2.3"; },
       {},
       "sop-instance-differs DICOM/IM000001\n"},
      {"transfer syntax",
       [](MadeMedium& m) { m.records[kImage1].transferSyntaxUid = "1.2.840.10008.1.2"; },
       {},
       "transfer-syntax-differs DICOM/IM000001\n"},
      {"patient ID",
       [](MadeMedium& m) { m.records[kPatient].keys[0x00100020].value = "ID2"; },
       {},
       "patient-id-differs DICOM/IM000001\npatient-id-differs DICOM/IM000002\n"
       "patient-id-differs DICOM/IM000003\n",
       "Patient ID of the file is \"ID1\", the PATIENT record at offset 0x"},
      {"patient name",
       [](MadeMedium& m) { m.records[kPatient].keys[0x00100010].value = "OTHER^1"; },
       {},
       "patient-name-differs DICOM/IM000001\npatient-name-differs DICOM/IM000002\n"
       "patient-name-differs DICOM/IM000003\n"},
      {"delimiters at the end of a name",
       [](MadeMedium& m) { m.records[kPatient].keys[0x00100010].value = "PATIENT^1^^^ "; },
       {},
       ""},
      {"study UID",
       [](MadeMedium& m) { m.records[kStudy].keys[0x0020000D].value = "1.2.3"; },
       {},
       "study-uid-differs DICOM/IM000001\nstudy-uid-differs DICOM/IM000002\n"
       "study-uid-differs DICOM/IM000003\n"},
      {"series UID",
       [](MadeMedium& m) { m.records[kSeries2].keys[0x0020000E].value = "1.2.3"; },
       {},
       "series-uid-differs DICOM/IM000003\n"},
      {"modality",
       [](MadeMedium& m) { m.records[kSeries2].keys[0x00080060].value = "CT"; },
       {},
       "modality-differs DICOM/IM000003\n"},
      {"instance number",
       [](MadeMedium& m) { m.records[kImage3].keys[0x00200013].value = "33"; },
       {},
       "instance-number-differs DICOM/IM000003\n"},
      {"two records of one file",
       [](MadeMedium& m) {
         m.records[kImage2] = m.records[kImage1];
         m.medium.files.erase(OLESTR("DICOM\\IM000002"));
       },
       {},
       "file-named-twice DICOM/IM000001\n"},
      {"meta information and data set",
       {},
       [](MadeMedium& m) {
         test::ObjectDescription other;
         other.instance = 9;
         const std::string uid = test::instanceUidOf(other);
         test::Bytes& bytes = m.file(kFile1);
         const auto meta = bytes.begin() + 300;
         const std::string own = m.records[kImage1].sopInstanceUid;
         const auto found = std::search(meta, bytes.end(), own.begin(), own.end());
         ASSERT_NE(found, bytes.end());
         ASSERT_EQ(own.size(), uid.size());
         std::copy(uid.begin(), uid.end(), found);
       },
       "file-meta-differs DICOM/IM000001\n"},
  });
}

TEST_F(VerifyMediumTest, FindsWhatOtherFilesOfTheRootTell) {
  check({
      {"unfinished",
       {},
       [](MadeMedium& m) { m.file("UNFINISHED.TXT") = {'x'}; },
       "unfinished UNFINISHED.TXT\n"},
      {"label",
       {},
       [](MadeMedium& m) {
         m.file("LABEL.TXT") = {1, 2, 3};
       },
       "label-unreadable LABEL.TXT\n"},
      {"label in Latin",
       {},
       [](MadeMedium& m) {
         m.file("LABEL.TXT") = {'J', 0xE4, '\n'};
       },
       ""},
      {"changed byte",
       {},
       [](MadeMedium& m) {
         m.makeSums();
         m.file(kFile2).back() ^= 1;
       },
       "sum-differs DICOM/IM000002\n"},
      {"changed byte of another file",
       {},
       [](MadeMedium& m) {
         m.file("VIEWER.EXE") = {1, 2, 3};
         m.makeSums();
         m.file("VIEWER.EXE") = {1, 2, 4};
       },
       "sum-differs VIEWER.EXE\n",
       "039058c6f2c0cb492c533b0a4d14ef77cc0f78abccced5287d84a1a2011cfb81"},
      {"file that is gone",
       {},
       [](MadeMedium& m) {
         m.file("VIEWER.EXE") = {1, 2, 3};
         m.makeSums();
         m.medium.files.erase(OLESTR("VIEWER.EXE"));
       },
       "sum-file-missing VIEWER.EXE\n",
       "line 5 of SHA256SUMS names it"},
      {"file without a sum",
       {},
       [](MadeMedium& m) {
         m.makeSums();
         test::Bytes& sums = m.file("SHA256SUMS");
         sums.resize(sums.size() - 64 - 2 - 15 - 1 + 1 - 1);
       },
       "sum-missing DICOM/IM000003\n"},
      {"name that leads outside",
       {},
       [](MadeMedium& m) {
         m.makeSums();
         const std::string line = std::string(64, '0') + "  A/../../etc/passwd\n";
         m.file("SHA256SUMS").insert(m.file("SHA256SUMS").end(), line.begin(), line.end());
       },
       "sums-outside SHA256SUMS\n"},
      {"line that is none",
       {},
       [](MadeMedium& m) {
         m.makeSums();
         m.file("SHA256SUMS")[3] = 'x';
       },
       "sums-line SHA256SUMS\n",
       "Line 1 is no SHA-256 sum with a name."},
  });
}

TEST_F(VerifyMediumTest, OpensEachFileOnceAndReadsHeadersAloneWithoutSums) {
  for (const bool hasSums : {false, true}) {
    SCOPED_TRACE(hasSums);
    MadeMedium made;
    test::ObjectDescription large;
    large.rows = large.columns = 2000;
    made.file(kFile1) = test::makeObject(large);
    made.makeDicomDir();
    if (hasSums) made.makeSums();
    const VerifyReport report = verified(made.medium);
    EXPECT_EQ(codesOf(report), "") << messagesOf(report);
    std::uint64_t bytes = 0;
    for (const auto& [path, content] : made.medium.files) bytes += content.size();
    if (hasSums) {
      // The DICOMDIR is summed, too, after it was read for its records.
      EXPECT_EQ(made.medium.readBytes, bytes + made.dicomDir().size());
      EXPECT_EQ(made.medium.openedFiles, 6);
    } else {
      EXPECT_LT(made.medium.readBytes, 100'000U);
      EXPECT_EQ(made.medium.openedFiles, 4);
    }
  }
}

TEST_F(VerifyMediumTest, KeepsAThousandFindingsOfAKindAndCountsTheOthers) {
  MadeMedium made;
  for (int i = 0; i < 1200; ++i) made.file("EXTRA" + std::to_string(i)) = made.file(kFile1);
  made.makeDicomDir();
  const VerifyReport report = verified(made.medium);
  EXPECT_EQ(report.findings.size(), kMaxFindingsOfKind);
  EXPECT_EQ(report.Count(Severity::Warning), 1200U);
  EXPECT_EQ(report.leftOut, 200U);
}

TEST_F(VerifyMediumTest, StopsWhereItIsAskedTo) {
  MadeMedium made;
  made.makeDicomDir();
  made.makeSums();
  const auto stopAt = [&](int limit) {
    int asked = 0;
    VerifyOptions options;
    options.isStopped = [&] { return ++asked >= limit; };
    VerifyReport report;
    CBaseItem errors;
    const bool isDone = VerifyMedium(made.medium, options, report, errors);
    EXPECT_EQ(isDone ? Text() : Text(OLESTR("The verification was stopped.")),
              errors.ErrorMessage());
    return isDone;
  };
  int limit = 1;
  while (!stopAt(limit)) ++limit;
  EXPECT_GT(limit, 8);  // before each of four files and behind its pieces
}

}  // namespace
}  // namespace quillon
