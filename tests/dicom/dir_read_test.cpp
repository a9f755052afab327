// Reading DICOMDIRs that other systems, or nobody in their right mind, would write.
#include <gtest/gtest.h>

#include <algorithm>

#include "dicom/dir_dicom_dir.h"
#include "dir_test_tools.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kDicomDirClass = "1.2.840.10008.1.3.10";
constexpr const char* kInconsistent = "Inconsistent file set, skipping further processing";
// makeDicomDir gives the records these places: the first right behind the header's elements.
constexpr std::size_t kMetaAt = 132;

// One record; offsets are set by makeDicomDir from the positions of the records in its list.
struct Record {
  const char* type = "PATIENT";
  int next = -1;  // index of a record, -1 for none
  int lower = -1;
  void (*more)(DataSetBytes&) = nullptr;  // elements behind (0004,1430)
};

void putOffset(Bytes& bytes, std::size_t at, std::uint32_t offset) {
  for (int i = 0; i < 4; ++i)
    bytes[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(offset >> (8 * i));
}

Bytes itemOf(const Record& record, bool undefinedLength) {
  DataSetBytes item;
  item.beginItem(undefinedLength)
      .ul(0x00041400, {0})
      .us(0x00041410, {0xFFFF})
      .ul(0x00041420, {0})
      .text(0x00041430, "CS", record.type);
  if (record.more != nullptr) record.more(item);
  return item.endItem().take();
}

struct MadeDicomDir {
  Bytes bytes;
  std::vector<std::uint32_t> offsets;
  std::size_t rootOffsetAt = 0;  // value of (0004,1200)
};

MadeDicomDir makeDicomDir(const std::vector<Record>& records, bool undefinedLengths = false) {
  MadeDicomDir made;
  const Bytes header = DataSetBytes()
                           .text(0x00041130, "CS", "SET")
                           .ul(0x00041200, {0})
                           .ul(0x00041202, {0})
                           .us(0x00041212, {0})
                           .take();
  made.bytes = dicomFile(header, kDicomDirClass, "1.2.3", kExplicitLittleUid);
  made.rootOffsetAt = made.bytes.size() - 10 - 12 - 4;
  Bytes items;
  std::vector<Bytes> each;
  for (const Record& record : records) {
    each.push_back(itemOf(record, undefinedLengths));
    items.insert(items.end(), each.back().begin(), each.back().end());
  }
  const Bytes sequenceHeader =
      DataSetBytes()
          .header(0x00041220, "SQ",
                  undefinedLengths ? 0xFFFFFFFF : static_cast<std::uint32_t>(items.size()))
          .take();
  made.bytes.insert(made.bytes.end(), sequenceHeader.begin(), sequenceHeader.end());
  std::size_t at = made.bytes.size();
  for (const Bytes& item : each) {
    made.offsets.push_back(static_cast<std::uint32_t>(at));
    at += item.size();
  }
  made.bytes.insert(made.bytes.end(), items.begin(), items.end());
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto offsetOf = [&](int index) {
      return index < 0 ? 0 : made.offsets.at(static_cast<std::size_t>(index));
    };
    putOffset(made.bytes, made.offsets[i] + 16, offsetOf(records[i].next));
    putOffset(made.bytes, made.offsets[i] + 38, offsetOf(records[i].lower));
  }
  if (!records.empty()) putOffset(made.bytes, made.rootOffsetAt, made.offsets[0]);
  if (undefinedLengths) {
    const Bytes end = DataSetBytes().header(0xFFFEE0DD, "", 0).take();
    made.bytes.insert(made.bytes.end(), end.begin(), end.end());
  }
  return made;
}

void refer(DataSetBytes& item, std::string_view fileId) {
  item.text(0x00041500, "CS", fileId)
      .text(0x00041510, "UI", "1.2.840.10008.5.1.4.1.1.2")
      .text(0x00041511, "UI", "1.2.3.4")
      .text(0x00041512, "UI", kExplicitLittleUid);
}

class DicomDirReading : public ::testing::Test {
 protected:
  // The messages of reading these bytes; `dir_` holds the outcome.
  Lines read(const Bytes& bytes) {
    writeBytes(temp_ / "DICOMDIR", bytes);
    log_.take();
    dir_ = std::make_unique<DcDirDicomDir>(temp_.path().string().c_str());
    return log_.take();
  }
  std::string name() const { return temp_.path().string() + "\\DICOMDIR"; }

  LoggedLines log_;
  TempDir temp_;
  std::unique_ptr<DcDirDicomDir> dir_;
};

std::vector<Record> smallTree() {
  return {{"PATIENT", 4, 1, [](DataSetBytes& item) { item.text(0x00100020, "LO", "ID1"); }},
          {"STUDY", -1, 2, nullptr},
          {"SERIES", -1, 3, nullptr},
          {"IMAGE", -1, -1, [](DataSetBytes& item) { refer(item, "IMAGES\\IM1"); }},
          {"PATIENT", -1, -1, nullptr}};
}

TEST_F(DicomDirReading, FollowsLinksInAnyOrderAndLengthsOfBothKinds) {
  for (const bool undefined : {false, true}) {
    SCOPED_TRACE(undefined);
    std::vector<Record> records = smallTree();
    records[0].more = [](DataSetBytes& item) {
      item.beginSequence(0x00081110, true)
          .beginItem(true)
          .text(0x00081155, "UI", "1.2.9")
          .endItem()
          .endSequence()
          .text(0x00100020, "LO", "ID1");
    };
    EXPECT_EQ(read(makeDicomDir(records, undefined).bytes), Lines{});
    EXPECT_EQ(dir_->initialCode(), kDcOk);
    EXPECT_EQ(treeOf(*dir_), "PATIENT(STUDY(SERIES(IMAGE))) PATIENT");
    const DcDirRec* patient = dir_->lower(0);
    EXPECT_EQ(patient->size(), 2u) << "keys only";
    EXPECT_TRUE(patient->contains(0x00081110));
    const DcDirRec* image = patient->lower(0)->lower(0)->lower(0);
    EXPECT_EQ(image->fileId(), "IMAGES\\IM1");
    EXPECT_EQ(image->refSopInstanceUid(), "1.2.3.4");
  }
}

TEST_F(DicomDirReading, KeepsOddKeysAndInUseFlagsAlsoWhenValuesAreChecked) {
  ASSERT_TRUE(dcValueChecking());
  std::vector<Record> records = {{"PATIENT", -1, -1, [](DataSetBytes& item) {
                                    item.text(0x00100030, "DA", "1950-01-02")
                                        .text(0x00100040, "CS", "unknown?")
                                        .text(0x00100020, "LO", std::string(80, 'I'));
                                  }}};
  MadeDicomDir made = makeDicomDir(records);
  made.bytes[made.offsets[0] + 28] = 0;  // in-use flag 0000
  made.bytes[made.offsets[0] + 29] = 0;
  read(made.bytes);
  ASSERT_EQ(dir_->initialCode(), kDcOk);
  EXPECT_EQ(dir_->lower(0)->inUseFlag(), 0);
  ASSERT_EQ(dir_->write(), kDcOk);
  const RawDicomDir raw(readBytes(temp_ / "DICOMDIR"));
  const RawElements record = raw.record(raw.headerOffset(0x00041200));
  EXPECT_EQ(raw.text(record, 0x00100030), "1950-01-02");
  EXPECT_EQ(raw.text(record, 0x00100040), "unknown?");
  EXPECT_EQ(raw.text(record, 0x00100020), std::string(80, 'I'));
  EXPECT_EQ(raw.u16(record.at(0x00041410).valueAt), 0u);
}

TEST_F(DicomDirReading, ADicomDirOfAnotherKindIsRefused) {
  const Bytes header = DataSetBytes().ul(0x00041200, {0}).take();
  const Bytes noOffset = DataSetBytes().text(0x00041130, "CS", "SET").take();
  const Bytes oddVr = DataSetBytes().text(0x00041130, "??", "SET").append(header).take();
  const Bytes wrongVr = DataSetBytes().text(0x00041130, "LO", "SET").append(header).take();
  const Bytes cut = DataSetBytes().header(0x00041130, "CS", 400).append(header).take();
  const struct {
    const char* what;
    Bytes bytes;
    DcCode code;
    std::string message;
  } cases[] = {
      {"CT image", dicomFile(header, "1.2.840.10008.5.1.4.1.1.2", "1.2.3", kExplicitLittleUid),
       0x5801,
       "Invalid SOP Class UID '1.2.840.10008.5.1.4.1.1.2', should be Media Storage Dir Storage"},
      {"no meta information", Bytes(20, 0), 0x5801,
       "Invalid SOP Class UID '', should be Media Storage Dir Storage"},
      {"implicit", dicomFile(header, kDicomDirClass, "1.2.3", kImplicitLittleUid), 0x5801,
       "Invalid Transfer Syntax '1.2.840.10008.1.2', should be Littleendian Explicit"},
      {"not DICOM", Bytes(200, 'x'), 0x5802, "File '" + name() + "', rc - 0x5802 "},
      {"unknown VR", dicomFile(oddVr, kDicomDirClass, "1.2.3", kExplicitLittleUid), 0x5801,
       "Unexpected VR - '?\?' for Element (0004,1130)"},
      {"VR of another element", dicomFile(wrongVr, kDicomDirClass, "1.2.3", kExplicitLittleUid),
       0x5801, "Unexpected VR - 'LO' for Element (0004,1130)"},
      {"no offset", dicomFile(noOffset, kDicomDirClass, "1.2.3", kExplicitLittleUid), 0x5801,
       "Missing or invalid T_0004_1200_firstRootEntityRecordOffset"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(read(c.bytes), Lines{c.message});
    EXPECT_EQ(dir_->initialCode(), c.code);
    EXPECT_EQ(dir_->lowerCount(), 0u);
  }
  read(dicomFile(cut, kDicomDirClass, "1.2.3", kExplicitLittleUid));
  EXPECT_EQ(dir_->initialCode(), 0x5801u);
}

TEST_F(DicomDirReading, ARecordThatBreaksARuleEndsTheReadingAndKeepsWhatWasReadBefore) {
  const struct {
    const char* what;
    Record second;
    std::string message;  // %O stands for the record's offset
    DcCode code = 0x5801;
  } cases[] = {
      {"unknown type",
       {"PICTURE", -1, -1, nullptr},
       "Offset - %O, invalid Record Type - 'PICTURE'"},
      {"no type", {"", -1, -1, nullptr}, "Offset - %O, T_0004_1430_recordType missing or invalid"},
      {"wrong level",
       {"IMAGE", -1, -1, nullptr},
       "'IMAGE' cannot be a lower level entity to 'DICOMDIR'",
       0x580A},
      {"PRIVATE without its UID",
       {"PRIVATE", -1, -1, nullptr},
       "Offset - %O, T_0004_1432_privateRecordUid missing or invalid"},
      {"empty file ID",
       {"PATIENT", -1, -1, [](DataSetBytes& item) { refer(item, ""); }},
       "Offset - %O, Zero length File ID"},
      {"nine characters in the file ID",
       {"PATIENT", -1, -1, [](DataSetBytes& item) { refer(item, "A\\IMG000001"); }},
       "Offset - %O, File ID 'A\\IMG000001' exceeds limit in T_0004_1500_referencedFileId"},
      {"no SOP class",
       {"PATIENT", -1, -1, [](DataSetBytes& item) { item.text(0x00041500, "CS", "A"); }},
       "Offset - %O, T_0004_1510_referencedFileClassUid missing or invalid"},
      {"no SOP instance",
       {"PATIENT", -1, -1,
        [](DataSetBytes& item) { item.text(0x00041500, "CS", "A").text(0x00041510, "UI", "1.2"); }},
       "Offset - %O, T_0004_1511_referencedFileInstanceUid missing or invalid"},
      {"no transfer syntax",
       {"PATIENT", -1, -1,
        [](DataSetBytes& item) {
          item.text(0x00041500, "CS", "A")
              .text(0x00041510, "UI", "1.2")
              .text(0x00041511, "UI", "1");
        }},
       "Offset - %O, T_0004_1512_referencedFileXferSynUid missing or invalid"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const MadeDicomDir made =
        makeDicomDir({{"PATIENT", 1, -1, nullptr}, c.second, {"PATIENT", -1, -1, nullptr}});
    std::string message = c.message;
    const std::size_t mark = message.find("%O");
    if (mark != std::string::npos) {
      char shown[40];
      std::snprintf(shown, sizeof shown, "%u (0x%06x)", made.offsets[1], made.offsets[1]);
      message.replace(mark, 2, shown);
    }
    EXPECT_EQ(read(made.bytes), (Lines{message, kInconsistent}));
    EXPECT_EQ(dir_->initialCode(), c.code);
    EXPECT_EQ(treeOf(*dir_), "PATIENT");
  }
}

TEST_F(DicomDirReading, ARecordNeedsItsInUseFlag) {
  MadeDicomDir made = makeDicomDir({{"PATIENT", -1, -1, nullptr}});
  made.bytes[made.offsets[0] + 22] = 0x11;  // (0004,1410) becomes (0004,1411)
  const Lines messages = read(made.bytes);
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_NE(messages[0].find(", T_0004_1410_recordInUseFlag missing or invalid"),
            std::string::npos);
}

TEST_F(DicomDirReading, LinksThatLeadAstrayEndTheReading) {
  const std::vector<Record> chain = {
      {"PATIENT", 1, -1, nullptr}, {"PATIENT", 2, -1, nullptr}, {"PATIENT", -1, -1, nullptr}};
  const MadeDicomDir made = makeDicomDir(chain);
  const auto size = static_cast<std::uint32_t>(made.bytes.size());
  const struct {
    const char* what;
    std::size_t record;
    std::size_t fieldAt;  // in the item
    std::uint32_t offset;
    const char* tree;
  } cases[] = {
      {"back to itself", 2, 16, made.offsets[2], "PATIENT PATIENT PATIENT"},
      {"back to the first", 2, 16, made.offsets[0], "PATIENT PATIENT PATIENT"},
      {"its own lower level", 0, 38, made.offsets[0], "PATIENT"},
      {"into the middle of a record", 2, 16, made.offsets[1] + 8, "PATIENT PATIENT PATIENT"},
      {"the file's end", 2, 16, size, "PATIENT PATIENT PATIENT"},
      {"the last byte", 2, 16, size - 1, "PATIENT PATIENT PATIENT"},
      {"far away", 2, 16, 0xFFFFFFFF, "PATIENT PATIENT PATIENT"},
      {"the preamble", 2, 16, 4, "PATIENT PATIENT PATIENT"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Bytes bytes = made.bytes;
    putOffset(bytes, made.offsets[c.record] + c.fieldAt, c.offset);
    const Lines messages = read(bytes);
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages.back(), kInconsistent);
    EXPECT_EQ(treeOf(*dir_), c.tree);
    EXPECT_EQ(dir_->initialCode(), 0x5801u);
  }
  Bytes bytes = made.bytes;
  putOffset(bytes, made.rootOffsetAt, 0xFFFFFFFF);
  char message[100];
  std::snprintf(message, sizeof message, "Offset -1 (0xffffffff) exceeds buffer length %u (0x%06x)",
                size, size);
  EXPECT_EQ(read(bytes), (Lines{message, kInconsistent}));
}

TEST_F(DicomDirReading, ItemsThatLieInsideOneAnotherAreReadOnce) {
  // A key of the first record holds what looks like a record; the chain leads there.
  std::vector<Record> records = {{"PATIENT", -1, -1, [](DataSetBytes& item) {
                                    item.beginSequence(0x00081110)
                                        .append(itemOf({"PATIENT", -1, -1, nullptr}, false))
                                        .endSequence();
                                  }}};
  MadeDicomDir made = makeDicomDir(records);
  const Bytes itemTag = {0xFE, 0xFF, 0x00, 0xE0};
  const auto inner = std::search(made.bytes.begin() + made.offsets[0] + 8, made.bytes.end(),
                                 itemTag.begin(), itemTag.end());
  ASSERT_NE(inner, made.bytes.end());
  putOffset(made.bytes, made.offsets[0] + 16,
            static_cast<std::uint32_t>(inner - made.bytes.begin()));
  EXPECT_EQ(read(made.bytes).back(), kInconsistent);
  EXPECT_EQ(treeOf(*dir_), "PATIENT");
}

TEST_F(DicomDirReading, DeepLevelsAreCut) {
  const auto asPrivate = [](DataSetBytes& item) { item.text(0x00041432, "UI", "1.2.3"); };
  for (const int depth : {256, 257}) {
    SCOPED_TRACE(depth);
    std::vector<Record> records;
    for (int i = 0; i < depth; ++i) {
      records.push_back({"PRIVATE", -1, i + 1 < depth ? i + 1 : -1, asPrivate});
    }
    const Lines messages = read(makeDicomDir(records).bytes);
    EXPECT_EQ(messages.empty(), depth == 256);
    EXPECT_EQ(dir_->initialCode(), depth == 256 ? kDcOk : kDcTooDeep);
  }
}

TEST_F(DicomDirReading, OneCutAnywhereEndsInAnErrorOrIsWhole) {
  const Bytes whole = makeDicomDir(smallTree()).bytes;
  const std::string tree = "PATIENT(STUDY(SERIES(IMAGE))) PATIENT";
  for (std::size_t kept = 0; kept < whole.size(); ++kept) {
    SCOPED_TRACE(kept);
    read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept)));
    EXPECT_NE(dir_->initialCode(), kDcOk);
    // What was read before the cut is a beginning of the tree.
    EXPECT_NE(treeOf(*dir_), tree);
  }
}

TEST_F(DicomDirReading, AnyByteMayBeWrong) {
  const Bytes whole = makeDicomDir(smallTree(), true).bytes;
  for (std::size_t at = kMetaAt; at < whole.size(); ++at) {
    SCOPED_TRACE(at);
    Bytes bytes = whole;
    bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ (at % 2 == 0 ? 0xFF : 0x01));
    read(bytes);
    // What was read is a tree that can be written, and read, again.
    const std::string tree = treeOf(*dir_);
    if (at % 16 != 0) continue;  // the disk is spared most of the time
    ASSERT_EQ(dir_->write(), kDcOk);
    EXPECT_EQ(dir_->read(), kDcOk);
    EXPECT_EQ(treeOf(*dir_), tree);
  }
}

TEST_F(DicomDirReading, ARecordWhoseMrdrIsNotThereHasNoFileId) {
  constexpr auto kToNoRecord = [](DataSetBytes& item) { item.ul(0x00041504, {1}); };
  constexpr auto kBeyondTheFile = [](DataSetBytes& item) { item.ul(0x00041504, {0xFFFFFFF0}); };
  for (void (*more)(DataSetBytes&) : {+kToNoRecord, +kBeyondTheFile}) {
    EXPECT_EQ(read(makeDicomDir({{"PATIENT", -1, -1, more}}).bytes), Lines{});
    EXPECT_EQ(dir_->initialCode(), kDcOk);
    EXPECT_EQ(dir_->lower(0)->fileId(), "");
    EXPECT_EQ(dir_->lower(0)->mrdr(), nullptr);
  }
}

TEST_F(DicomDirReading, TheLastOfSeveralRecordsForOneFileIsFound) {
  const auto same = [](DataSetBytes& item) { refer(item, "SAME"); };
  ASSERT_EQ(read(makeDicomDir({{"PATIENT", 2, 1, same},
                               {"STUDY", -1, -1, same},
                               {"PATIENT", 4, 3, nullptr},
                               {"STUDY", -1, -1, same},
                               {"PATIENT", -1, -1, nullptr}})
                     .bytes),
            Lines{});
  DcDirRec* found = nullptr;
  EXPECT_EQ(dir_->getRefFileObj("SAME", &found), kDcOk);
  EXPECT_EQ(found, dir_->lower(1)->lower(0));
  EXPECT_EQ(dir_->lower(2)->setRefFile("SAME"), 0x5803u);
}

}  // namespace
}  // namespace quillon::test
