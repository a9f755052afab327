// Reading DICOMDIRs that other systems, or nobody in their right mind, would write.
#include <algorithm>
#include <filesystem>
#include <optional>

#include "dir_test_tools.h"

namespace quillon::test {
namespace {

constexpr const char* kDicomDirClass = "1.2.840.10008.1.3.10";
constexpr const char* kInconsistent = "Inconsistent file set, skipping further processing";
constexpr std::size_t kMetaAt = 132;

// One record; offsets are set by makeDicomDir from the positions of the records in its list.
struct Record {
  const char* type = "PATIENT";
  int next = -1;  // index of a record, -1 for none
  int lower = -1;
  void (*more)(DataSetBytes&) = nullptr;  // elements behind (0004,1430)
};

// Where an item has the values of (0004,1400) and (0004,1420).
constexpr std::size_t kNextAt = 16;
constexpr std::size_t kLowerAt = 38;
constexpr std::size_t kMrdrAt = 66;  // of (0004,1504), first behind the type "PATIENT"

void putOffset(Bytes& bytes, std::size_t at, std::uint32_t offset) {
  for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::uint8_t>(offset >> (8 * i));
}

Bytes itemOf(const Record& record, bool undefinedLength = false) {
  DataSetBytes item;
  item.beginItem(undefinedLength).ul(0x00041400, {0}).us(0x00041410, {0xFFFF});
  item.ul(0x00041420, {0}).text(0x00041430, "CS", record.type);
  if (record.more != nullptr) record.more(item);
  return item.endItem().take();
}

struct MadeDicomDir {
  Bytes bytes;
  std::vector<std::uint32_t> offsets;
  std::size_t rootOffsetAt = 0;  // value of (0004,1200)
};

MadeDicomDir makeDicomDir(const std::vector<Record>& records, bool undefinedLengths = false) {
  DataSetBytes header;
  header.text(0x00041130, "CS", "SET").ul(0x00041200, {0}).ul(0x00041202, {0});
  header.us(0x00041212, {0});
  MadeDicomDir made;
  made.bytes = dicomFile(header.bytes(), kDicomDirClass, "1.2.3", kExplicitLittleUid);
  made.rootOffsetAt = made.bytes.size() - 10 - 12 - 4;
  const std::size_t firstAt = made.bytes.size() + 12;
  DataSetBytes sequence;
  sequence.beginSequence(0x00041220, undefinedLengths);
  for (const Record& record : records) {
    made.offsets.push_back(static_cast<std::uint32_t>(firstAt + sequence.bytes().size() - 12));
    sequence.append(itemOf(record, undefinedLengths));
  }
  const Bytes items = sequence.endSequence().take();
  made.bytes.insert(made.bytes.end(), items.begin(), items.end());
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto offsetOf = [&](int index) {
      return index < 0 ? 0 : made.offsets.at(static_cast<std::size_t>(index));
    };
    putOffset(made.bytes, made.offsets[i] + kNextAt, offsetOf(records[i].next));
    putOffset(made.bytes, made.offsets[i] + kLowerAt, offsetOf(records[i].lower));
  }
  putOffset(made.bytes, made.rootOffsetAt, made.offsets[0]);
  return made;
}

void refer(DataSetBytes& item, std::string_view fileId) {
  item.text(0x00041500, "CS", fileId).text(0x00041510, "UI", kCtImage);
  item.text(0x00041511, "UI", "1.2.3.4").text(0x00041512, "UI", kExplicitLittleUid);
}

class DicomDirReading : public ToolkitTest {
 protected:
  // The messages of reading these bytes; `set_` holds the outcome.
  std::string read(const Bytes& bytes) {
    writeBytes(dir_ / "DICOMDIR", bytes);
    logged();
    set_.emplace(dir_.path().string().c_str());
    return logged();
  }

  std::optional<DcDirDicomDir> set_;
};

std::vector<Record> smallTree() {
  return {{"PATIENT", 4, 1, [](DataSetBytes& item) { item.text(0x00100020, "LO", "ID1"); }},
          {"STUDY", -1, 3},
          {"IMAGE", -1, -1, [](DataSetBytes& item) { refer(item, "IMAGES\\IM1"); }},
          {"SERIES", -1, 2},
          {"PATIENT"}};
}

TEST_F(DicomDirReading, FollowsLinksInAnyOrderAndLengthsOfBothKinds) {
  for (const bool undefined : {false, true}) {
    SCOPED_TRACE(undefined);
    std::vector<Record> records = smallTree();
    records[0].more = [](DataSetBytes& item) {
      item.beginSequence(0x00081110, true).beginItem(true).text(0x00081155, "UI", "1.2.9");
      item.endItem().endSequence().text(0x00100020, "LO", "ID1");
    };
    EXPECT_EQ(read(makeDicomDir(records, undefined).bytes), "");
    EXPECT_EQ(set_->initialCode(), kDcOk);
    EXPECT_EQ(treeOf(*set_), "PATIENT(STUDY(SERIES(IMAGE))) PATIENT");
    const DcDirRec* patient = set_->lower(0);
    EXPECT_EQ(describe(*patient), "00081110 SQ\n>item\n>00081155 UI 1.2.9\n00100020 LO ID1");
    const DcDirRec* image = patient->lower(0)->lower(0)->lower(0);
    EXPECT_EQ(image->fileId(), "IMAGES\\IM1");
    EXPECT_EQ(image->refSopInstanceUid(), "1.2.3.4");
  }
}

TEST_F(DicomDirReading, KeepsOddKeysAndInUseFlagsAlsoWhenValuesAreChecked) {
  ASSERT_TRUE(dcValueChecking());
  const auto odd = [](DataSetBytes& item) {
    item.beginSequence(0x00081110).beginItem().text(0x00080020, "DA", "1950-01-02");
    item.text(0x00081155, "UI", "1.2.x").endItem().endSequence();
    item.text(0x00100010, "PN", "TWO\\NAMES").text(0x00100020, "LO", std::string(80, 'I'));
    item.text(0x00100030, "DA", "1950-01-02").text(0x00100040, "CS", "unknown?");
  };
  MadeDicomDir made = makeDicomDir({{"PATIENT", -1, -1, odd}});
  made.bytes[made.offsets[0] + 28] = 0;  // in-use flag 0000
  made.bytes[made.offsets[0] + 29] = 0;
  const std::string setId = "SET";
  std::ranges::copy(std::string_view("set"), std::ranges::search(made.bytes, setId).begin());
  read(made.bytes);
  ASSERT_EQ(set_->initialCode(), kDcOk);
  EXPECT_TRUE(dcValueChecking());
  EXPECT_EQ(set_->fileSetId, "set");
  EXPECT_EQ(set_->lower(0)->inUseFlag(), 0);
  EXPECT_TRUE(describe(*set_->lower(0))
                  .starts_with("00081110 SQ\n>item\n>00080020 DA 1950-01-02\n"
                               ">00081155 UI 1.2.x\n00100010 PN TWO/NAMES\n"));
  ASSERT_EQ(set_->write(), kDcOk);
  const RawDicomDir raw(readBytes(dir_ / "DICOMDIR"));
  const RawElements record = raw.record(raw.headerOffset(0x00041200));
  EXPECT_EQ(raw.text(record, 0x00100030), "1950-01-02");
  EXPECT_EQ(raw.text(record, 0x00100040), "unknown?");
  EXPECT_EQ(raw.text(record, 0x00100020), std::string(80, 'I'));
  EXPECT_EQ(raw.u16(record.at(0x00041410).valueAt), 0u);
}

TEST_F(DicomDirReading, ADicomDirOfAnotherKindIsRefused) {
  const auto dicomDir = [](const Bytes& dataSet) {
    return dicomFile(dataSet, kDicomDirClass, "1.2.3", kExplicitLittleUid);
  };
  const Bytes header = DataSetBytes().ul(0x00041200, {0}).take();
  const Bytes noOffset = DataSetBytes().text(0x00041130, "CS", "SET").take();
  const Bytes oddVr = DataSetBytes().text(0x00041130, "??", "SET").append(header).take();
  const Bytes wrongVr = DataSetBytes().text(0x00041130, "LO", "SET").append(header).take();
  const Bytes cut = DataSetBytes().header(0x00041130, "CS", 400).append(header).take();
  const std::string name = dir_.path().string() + "\\DICOMDIR";
  const struct {
    const char* what;
    Bytes bytes;
    std::uint32_t code;
    std::string message;
  } cases[] = {
      {"CT image", dicomFile(header, kCtImage, "1.2.3", kExplicitLittleUid), 0x5801,
       "Invalid SOP Class UID '1.2.840.10008.5.1.4.1.1.2', should be Media Storage Dir Storage"},
      {"no meta information", Bytes(20, 0), 0x5801,
       "Invalid SOP Class UID '', should be Media Storage Dir Storage"},
      {"implicit", dicomFile(header, kDicomDirClass, "1.2.3", kImplicitLittleUid), 0x5801,
       "Invalid Transfer Syntax '1.2.840.10008.1.2', should be Littleendian Explicit"},
      {"not DICOM", Bytes(200, 'x'), 0x5802, "File '" + name + "', rc - 0x5802 "},
      {"unknown VR", dicomDir(oddVr), 0x5801, "Unexpected VR - '?\?' for Element (0004,1130)"},
      {"VR of another element", dicomDir(wrongVr), 0x5801,
       "Unexpected VR - 'LO' for Element (0004,1130)"},
      {"no offset", dicomDir(noOffset), 0x5801,
       "Missing or invalid T_0004_1200_firstRootEntityRecordOffset"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(read(c.bytes), c.message);
    EXPECT_EQ(set_->initialCode(), c.code);
    EXPECT_EQ(set_->lowerCount(), 0u);
  }
  read(dicomDir(cut));
  EXPECT_EQ(set_->initialCode(), 0x5801u);
}

TEST_F(DicomDirReading, ARecordThatBreaksARuleEndsTheReadingAndKeepsWhatWasReadBefore) {
  const struct {
    const char* what;
    const char* type;
    void (*more)(DataSetBytes&);
    std::string message;  // %O stands for the record's offset
    std::uint32_t code = 0x5801;
  } cases[] = {
      {"unknown type", "PICTURE", nullptr, "Offset - %O, invalid Record Type - 'PICTURE'"},
      {"no type", "", nullptr, "Offset - %O, T_0004_1430_recordType missing or invalid"},
      {"wrong level", "IMAGE", nullptr, "'IMAGE' cannot be a lower level entity to 'DICOMDIR'",
       0x580A},
      {"PRIVATE without its UID", "PRIVATE", nullptr,
       "Offset - %O, T_0004_1432_privateRecordUid missing or invalid"},
      {"empty file ID", "PATIENT", [](DataSetBytes& item) { refer(item, ""); },
       "Offset - %O, Zero length File ID"},
      {"nine characters in the file ID", "PATIENT",
       [](DataSetBytes& item) { refer(item, "A\\IMG000001"); },
       "Offset - %O, File ID 'A\\IMG000001' exceeds limit in T_0004_1500_referencedFileId"},
      {"no SOP class", "PATIENT", [](DataSetBytes& item) { item.text(0x00041500, "CS", "A"); },
       "Offset - %O, T_0004_1510_referencedFileClassUid missing or invalid"},
      {"no SOP instance", "PATIENT",
       [](DataSetBytes& item) { item.text(0x00041500, "CS", "A").text(0x00041510, "UI", "1.2"); },
       "Offset - %O, T_0004_1511_referencedFileInstanceUid missing or invalid"},
      {"no transfer syntax", "PATIENT",
       [](DataSetBytes& item) {
         item.text(0x00041500, "CS", "A").text(0x00041510, "UI", "1.2").text(0x00041511, "UI", "1");
       },
       "Offset - %O, T_0004_1512_referencedFileXferSynUid missing or invalid"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const MadeDicomDir made = makeDicomDir({{"PATIENT", 1}, {c.type, -1, -1, c.more}, {"PATIENT"}});
    std::string message = c.message;
    const std::size_t mark = message.find("%O");
    if (mark != std::string::npos) {
      char shown[40];
      std::snprintf(shown, sizeof shown, "%u (0x%06x)", made.offsets[1], made.offsets[1]);
      message.replace(mark, 2, shown);
    }
    EXPECT_EQ(read(made.bytes), message + "\n" + kInconsistent);
    EXPECT_EQ(set_->initialCode(), c.code);
    EXPECT_EQ(treeOf(*set_), "PATIENT");
  }
  MadeDicomDir made = makeDicomDir({{"PATIENT"}});
  made.bytes[made.offsets[0] + 22] = 0x11;  // (0004,1410) becomes (0004,1411)
  const std::string messages = read(made.bytes);
  EXPECT_TRUE(messages.ends_with(std::string(", T_0004_1410_recordInUseFlag missing or invalid\n") +
                                 kInconsistent))
      << messages;
}

TEST_F(DicomDirReading, LinksThatLeadAstrayEndTheReading) {
  const MadeDicomDir made = makeDicomDir({{"PATIENT", 1}, {"PATIENT", 2}, {"PATIENT"}});
  const auto size = static_cast<std::uint32_t>(made.bytes.size());
  const std::size_t lastsNextAt = made.offsets[2] + kNextAt;
  const struct {
    const char* what;
    std::size_t at;
    std::uint32_t offset;
    const char* tree = "PATIENT PATIENT PATIENT";
  } cases[] = {
      {"back to itself", lastsNextAt, made.offsets[2]},
      {"back to the first", lastsNextAt, made.offsets[0]},
      {"its own lower level", made.offsets[0] + kLowerAt, made.offsets[0], "PATIENT"},
      {"into the middle of a record", lastsNextAt, made.offsets[1] + 8},
      {"the file's end", lastsNextAt, size},
      {"the last byte", lastsNextAt, size - 1},
      {"far away", lastsNextAt, 0xFFFFFFFF},
      {"the preamble", lastsNextAt, 4},
      {"nowhere at once", made.rootOffsetAt, 0xFFFFFFFF, ""},
  };
  std::string messages;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Bytes bytes = made.bytes;
    putOffset(bytes, c.at, c.offset);
    messages = read(bytes);
    EXPECT_EQ(std::ranges::count(messages, '\n'), 1);
    EXPECT_TRUE(messages.ends_with(kInconsistent));
    EXPECT_EQ(treeOf(*set_), c.tree);
    EXPECT_EQ(set_->initialCode(), 0x5801u);
  }
  char message[100];
  std::snprintf(message, sizeof message, "Offset -1 (0xffffffff) exceeds buffer length %u (0x%06x)",
                size, size);
  EXPECT_EQ(messages, std::string(message) + "\n" + kInconsistent);
}

TEST_F(DicomDirReading, ItemsThatLieInsideOneAnotherAreReadOnce) {
  // A key of the first record holds what looks like a record; the chain leads there.
  const auto nested = [](DataSetBytes& item) {
    item.beginSequence(0x00081110).append(itemOf({"PATIENT"})).endSequence();
  };
  MadeDicomDir made = makeDicomDir({{"PATIENT", -1, -1, nested}});
  const Bytes itemTag = hexBytes("FEFF 00E0");
  const auto inner = std::search(made.bytes.begin() + made.offsets[0] + 8, made.bytes.end(),
                                 itemTag.begin(), itemTag.end());
  ASSERT_NE(inner, made.bytes.end());
  putOffset(made.bytes, made.offsets[0] + kNextAt,
            static_cast<std::uint32_t>(inner - made.bytes.begin()));
  EXPECT_TRUE(read(made.bytes).ends_with(kInconsistent));
  EXPECT_EQ(treeOf(*set_), "PATIENT");
}

TEST_F(DicomDirReading, DeepLevelsAreCut) {
  const auto asPrivate = [](DataSetBytes& item) { item.text(0x00041432, "UI", "1.2.3"); };
  for (const int depth : {256, 257}) {
    SCOPED_TRACE(depth);
    std::vector<Record> records;
    for (int i = 0; i < depth; ++i) {
      records.push_back({"PRIVATE", -1, i + 1 < depth ? i + 1 : -1, asPrivate});
    }
    const std::string messages = read(makeDicomDir(records).bytes);
    EXPECT_EQ(messages.empty(), depth == 256);
    EXPECT_EQ(set_->initialCode(), depth == 256 ? kDcOk : kDcTooDeep);
  }
}

TEST_F(DicomDirReading, OneCutAnywhereEndsInAnErrorOrIsWhole) {
  const Bytes whole = makeDicomDir(smallTree()).bytes;
  const std::string tree = "PATIENT(STUDY(SERIES(IMAGE))) PATIENT";
  for (std::size_t kept = 0; kept < whole.size(); ++kept) {
    SCOPED_TRACE(kept);
    read(firstOf(whole, kept));
    EXPECT_NE(set_->initialCode(), kDcOk);
    // What was read before the cut is a beginning of the tree.
    EXPECT_NE(treeOf(*set_), tree);
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
    const std::string tree = treeOf(*set_);
    if (at % 16 != 0) continue;  // the disk is spared most of the time
    ASSERT_EQ(set_->write(), kDcOk);
    EXPECT_EQ(set_->read(), kDcOk);
    EXPECT_EQ(treeOf(*set_), tree);
  }
}

TEST_F(DicomDirReading, ARecordWhoseMrdrIsNotThereHasNoFileId) {
  constexpr auto kToNoRecord = [](DataSetBytes& item) { item.ul(0x00041504, {1}); };
  constexpr auto kBeyondTheFile = [](DataSetBytes& item) { item.ul(0x00041504, {0xFFFFFFF0}); };
  for (void (*more)(DataSetBytes&) : {+kToNoRecord, +kBeyondTheFile}) {
    EXPECT_EQ(read(makeDicomDir({{"PATIENT", -1, -1, more}}).bytes), "");
    EXPECT_EQ(set_->initialCode(), kDcOk);
    EXPECT_EQ(set_->lower(0)->fileId(), "");
    EXPECT_EQ(set_->lower(0)->mrdr(), nullptr);
  }
  // The offset of a record that is no MRDR, though it refers to a file.
  const auto same = [](DataSetBytes& item) { refer(item, "SAME"); };
  MadeDicomDir made = makeDicomDir({{"PATIENT", 1, -1, same}, {"PATIENT", -1, -1, kToNoRecord}});
  putOffset(made.bytes, made.offsets[1] + kMrdrAt, made.offsets[0]);
  EXPECT_EQ(read(made.bytes), "");
  EXPECT_EQ(set_->lower(1)->fileId(), "");
  EXPECT_EQ(set_->lower(1)->mrdr(), nullptr);
  EXPECT_EQ(set_->lower(0)->referenceCount(), 0u);
}

TEST_F(DicomDirReading, AFileThatIsTooLargeOrADirectoryIsNotRead) {
  const std::string name = dir_.path().string() + "\\DICOMDIR";
  const Bytes whole = makeDicomDir(smallTree()).bytes;
  writeBytes(dir_ / "DICOMDIR", whole);
  std::filesystem::resize_file(dir_ / "DICOMDIR", 536'870'913);  // sparse
  const DcDirDicomDir large(dir_.path().string().c_str());
  EXPECT_EQ(large.initialCode(), 0x5807u);
  EXPECT_EQ(logged(), "File '" + name + "', size exceeds limit of 512 Mbytes");
  std::filesystem::remove(dir_ / "DICOMDIR");
  std::filesystem::create_directory(dir_ / "DICOMDIR");
  const DcDirDicomDir none(dir_.path().string().c_str());
  EXPECT_EQ(none.initialCode(), kDcOk);
  EXPECT_EQ(logged(), "'" + name + "' does not exit, empty object created");
}

TEST_F(DicomDirReading, TheLastOfSeveralRecordsForOneFileIsFound) {
  const auto same = [](DataSetBytes& item) { refer(item, "SAME"); };
  const MadeDicomDir made = makeDicomDir({{"PATIENT", 2, 1, same},
                                          {"STUDY", -1, -1, same},
                                          {"PATIENT", 4, 3},
                                          {"STUDY", -1, -1, same},
                                          {"PATIENT"}});
  ASSERT_EQ(read(made.bytes), "");
  DcDirRec* found = nullptr;
  EXPECT_EQ(set_->getRefFileObj("SAME", &found), kDcOk);
  EXPECT_EQ(found, set_->lower(1)->lower(0));
  EXPECT_EQ(set_->lower(2)->setRefFile("SAME"), 0x5803u);
}

// Makes an IMAGE record for every file that their records refer to, with the same UIDs.
void referToTheirs(const DcDirRec& theirs, DcDirRec& series, int& count) {
  for (std::size_t i = 0; i < theirs.lowerCount(); ++i) {
    const DcDirRec& their = *theirs.lower(i);
    referToTheirs(their, series, count);
    if (their.fileId().empty()) continue;
    DcDirRec* const ours = addRecord(series, DcDirRecType::Image);
    ASSERT_EQ(ours->setRefFile(their.fileId().c_str()), kDcOk) << their.fileId();
    EXPECT_EQ(ours->refSopClassUid(), their.refSopClassUid());
    EXPECT_EQ(ours->refSopInstanceUid(), their.refSopInstanceUid());
    EXPECT_EQ(ours->refTransferSyntaxUid(), their.refTransferSyntaxUid());
    ++count;
  }
}

TEST_F(DicomDirReading, OneOfOthersGivesWhatStandsBeforeItsFaultAndFilesToReferTo) {
  if (pydicomData().empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  const std::filesystem::path directory = pydicomData() / "test_files/dicomdirtests";
  // The last item of 52 declares 248 bytes, of which the file has 224.
  read(readBytes(directory / "DICOMDIR-nooffset"));
  EXPECT_EQ(set_->initialCode(), 0x440Au);
  const std::string tree = treeOf(*set_);
  EXPECT_EQ(std::ranges::count(tree, ' ') + std::ranges::count(tree, '(') + 1, 51);

  std::filesystem::copy(directory, dir_ / "SET", std::filesystem::copy_options::recursive);
  const std::string root = (dir_ / "SET").string();
  const DcDirDicomDir theirs(root.c_str());
  ASSERT_EQ(theirs.initialCode(), kDcOk);
  std::filesystem::remove(dir_ / "SET" / "DICOMDIR");
  DcDirDicomDir ours(root.c_str());
  int count = 0;
  referToTheirs(theirs, *addSeries(ours), count);
  EXPECT_EQ(count, 31);
}

}  // namespace
}  // namespace quillon::test
