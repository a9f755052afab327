#include "dicom/read_file.h"

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

constexpr std::uint64_t kMiB = 1024 * 1024;

// Preamble and "DICM" in front of what follows.
Bytes withMagic(const Bytes& bytes) {
  Bytes file(128, 0);
  file.insert(file.end(), {'D', 'I', 'C', 'M'});
  file.insert(file.end(), bytes.begin(), bytes.end());
  return file;
}

class ReadingFiles : public ToolkitTest {
 protected:
  std::string write(const Bytes& bytes) {
    writeBytes(dir_ / "file", bytes);
    return (dir_ / "file").string();
  }
  std::string writeDataSet(const Bytes& dataSet, std::string_view syntaxUid = kExplicitLittleUid) {
    return write(dicomFile(dataSet, kCtImage, "1.2.3", syntaxUid));
  }
  // The file's length without its bytes: the rest is a hole.
  void extendTo(std::uint64_t sizeBytes) { std::filesystem::resize_file(dir_ / "file", sizeBytes); }
  [[nodiscard]] std::uint64_t fileBytes() const {
    return std::filesystem::file_size(dir_ / "file");
  }
  DcCode readWhole(const std::string& file) {
    return dirReadFile(file.c_str(), meta_, list_, &reading_);
  }
  // Up to the pixel data.
  DcCode readHeader(const std::string& file) {
    return dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_, &reading_);
  }

  DcFileMetaInfo meta_;
  DcElemList list_;
  std::uint64_t pixelOffset_ = 0;
  std::uint32_t pixelLength_ = 0;
  DcFileReading reading_;
};

TEST_F(ReadingFiles, TheMetaInformationIsTakenFromItsGroup) {
  DataSetBytes group;
  group.ul(0x00020000, {0}).raw(0x00020001, "OB", {0x01, 0x02}).text(0x00020002, "UI", kCtImage);
  group.text(0x00020003, "UI", "1.2.3").text(0x00020010, "UI", kExplicitBigUid);
  group.text(0x00020012, "UI", "1.2.4").text(0x00020013, "SH", "VERSION");
  group.text(0x00020016, "AE", "SOURCE").text(0x00020100, "UI", "1.2.5");
  Bytes bytes = withMagic(group.raw(0x00020102, "OB", {7, 8}).take());
  const std::size_t dataSetAt = bytes.size();
  bytes.insert(bytes.end(), 8, 0x10);
  bytes[5] = 42;
  std::uint64_t offset = 0;
  ASSERT_EQ(dirReadFileMetaInfo(write(bytes).c_str(), meta_, &offset), kDcOk);
  EXPECT_EQ(offset, dataSetAt);
  EXPECT_EQ(meta_.preamble[5], 42);
  EXPECT_EQ(meta_.version, 0x0102);
  EXPECT_EQ(meta_.sopClass, DcUid{62});
  EXPECT_EQ(meta_.sopClassUid, kCtImage);
  EXPECT_EQ(meta_.sopInstanceUid, "1.2.3");
  EXPECT_EQ(meta_.transferSyntax, kBig);
  EXPECT_EQ(meta_.transferSyntaxUid, kExplicitBigUid);
  EXPECT_EQ(meta_.implementationClassUid, "1.2.4");
  EXPECT_EQ(meta_.implementationVersionName, "VERSION");
  EXPECT_EQ(meta_.sourceAeTitle, "SOURCE");
  EXPECT_EQ(meta_.privateCreatorUid, "1.2.5");
  EXPECT_EQ(meta_.privateInformation, (Bytes{7, 8}));
}

TEST_F(ReadingFiles, WhatIsNoMetaInformationHasItsCode) {
  const Bytes group = DataSetBytes().text(0x00020010, "UI", kExplicitLittleUid).take();
  Bytes cutInValue = withMagic(group);
  cutInValue.pop_back();
  DataSetBytes open;
  open.header(0x00020102, "OB", 0xFFFFFFFF).append({1, 2, 3});
  open.header(0xFFFEE0DD, "", 0).text(0x00080005, "CS", "A");
  const struct {
    const char* what;
    Bytes bytes;
    DcCode code;
    std::uint64_t offset;
    const char* message;
  } cases[] = {
      {"135 bytes", Bytes(135, 1), kDcOk, 0, ""},
      {"136 bytes without DICM", Bytes(136, 1), kDcNotDicom, 0, ""},
      {"no meta group", withMagic(DataSetBytes().text(0x00080005, "CS", "A").take()), kDcNotDicom,
       132, ""},
      {"nothing behind the group", withMagic(group), kDcReadFailed, 0,
       "Error reading fileMetaInfo at offset 0xa0"},
      {"cut in a value", cutInValue, kDcReadFailed, 0, "Error reading fileMetaInfo at offset 0xa0"},
      {"undefined length, scanned over", withMagic(open.take()), kDcOk, 132 + 12 + 3 + 8,
       "Invalid tag 0x201fe03, expecting Sequence Item at offset 0x90"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::uint64_t offset = 99;
    EXPECT_EQ(dirReadFileMetaInfo(write(c.bytes).c_str(), meta_, &offset), c.code);
    EXPECT_EQ(offset, c.offset);
    EXPECT_EQ(meta_.transferSyntax, kImplicit);
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(ReadingFiles, FilesThatCannotBeReadHaveTheirCode) {
  const std::string missing = (dir_ / "missing").string();
  const std::string directory = dir_.path().string();
  EXPECT_EQ(dirReadFileMetaInfo(nullptr, meta_, nullptr), kDcFileNullArgument);
  EXPECT_EQ(dirReadFile(nullptr, meta_, list_), kDcFileNullArgument);
  EXPECT_EQ(dirReadFile(nullptr, meta_, list_, nullptr, nullptr), kDcFileNullArgument);
  EXPECT_EQ(logged(), "Null argument passed\nNull argument passed\nNull argument passed");
  EXPECT_EQ(readWhole(missing), kDcStatFailed);
  EXPECT_EQ(readHeader(missing), kDcStatFailed);
  EXPECT_EQ(dirReadFileMetaInfo(directory.c_str(), meta_, nullptr), kDcStatFailed);
  EXPECT_EQ(logged(), "stat error file '" + missing + "'\nstat error file '" + missing +
                          "'\nstat error file '" + directory + "'");
  const std::string file = writeDataSet(DataSetBytes().us(0x00280010, {5}).take());
  extendTo(512 * kMiB + 1);
  EXPECT_EQ(readWhole(file), kDcFileTooLarge);
  EXPECT_EQ(logged(), "File '" + file + "', size exceeds limit of 512 Mbytes");
}

TEST_F(ReadingFiles, EachLineOfTheLogNamesTheFile) {
  const std::string file = writeDataSet(DataSetBytes().text(0x00100020, "??", "ID").take());
  EXPECT_EQ(readWhole(file), kDcOk);
  EXPECT_EQ(logged(), "Invalid VR for T_0010_0020_patientId, substituted VR from Dictionary");
  EXPECT_EQ(lastFile(), file);
  writeDataSet(DataSetBytes().header(0x00100020, "LO", 9).take());
  EXPECT_EQ(readHeader(file), kDcNotAccepted);
  EXPECT_TRUE(logged().starts_with("valueLen (0x00000009) exceeds the remaining buffer len"));
  EXPECT_EQ(lastFile(), file);
  // Not twice, and not behind the reading.
  static_cast<void>(readWhole(file + "2"));
  EXPECT_EQ(logged(), "stat error file '" + file + "2'");
  EXPECT_EQ(lastFile(), "");
  static_cast<void>(DcElem(0x00100020).addValue(static_cast<const char*>(nullptr)));
  logged();
  EXPECT_EQ(lastFile(), "");
}

TEST_F(ReadingFiles, TheDataSetIsReadInTheSyntaxOfTheFile) {
  const struct {
    const char* what;
    Syntax encodedAs;
    std::string_view uid;
    DcUid expectedId;
    DcUid expectedElement;
  } cases[] = {
      {"implicit", Syntax::ImplicitLittle, kImplicitLittleUid, kImplicit, kImplicit},
      {"explicit", Syntax::ExplicitLittle, kExplicitLittleUid, kExplicit, kExplicit},
      {"big endian", Syntax::ExplicitBig, kExplicitBigUid, kBig, kBig},
      {"compressed", Syntax::ExplicitLittle, kJpegUid, kJpeg, kJpeg},
      {"unknown", Syntax::ExplicitLittle, "1.2.3.4", kImplicit, kExplicit},
      {"a UID of another kind", Syntax::ExplicitLittle, kCtImage, kImplicit, kExplicit},
      {"absent", Syntax::ImplicitLittle, "", kImplicit, kImplicit},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Bytes dataSet =
        DataSetBytes(c.encodedAs).text(0x00100020, "LO", "ID").us(0x00280010, {258}).take();
    const Bytes metaOnly = DataSetBytes().text(0x00020002, "UI", kCtImage).append(dataSet).take();
    const std::string file =
        c.uid.empty() ? write(withMagic(metaOnly)) : writeDataSet(dataSet, c.uid);
    for (const bool whole : {true, false}) {
      ASSERT_EQ(whole ? readWhole(file) : readHeader(file), kDcOk);
      EXPECT_EQ(describe(list_), "00100020 LO ID\n00280010 US 258");
      EXPECT_EQ(meta_.transferSyntax, c.expectedId);
      EXPECT_EQ(meta_.transferSyntaxUid, c.uid);
      EXPECT_EQ(list_.at(1)->transferSyntax(), c.expectedElement);
    }
  }
}

TEST_F(ReadingFiles, ADataSetWithoutMetaInformationNamesItsOwnObject) {
  const auto set = [] { return DataSetBytes(Syntax::ImplicitLittle); };
  const Bytes dataSet = set()
                            .text(0x00080016, "UI", "1.2.9.9")  // a class nobody knows
                            .text(0x00080018, "UI", "1.2.3")
                            .take();
  const Bytes filler = set().text(0x00204000, "LT", std::string(200, 'x')).take();
  const std::pair<const char*, Bytes> cases[] = {
      {"bare, fewer than 136 bytes", dataSet},
      {"bare, more", set().append(dataSet).append(filler).take()},
      {"behind an empty meta group", withMagic(dataSet)}};
  for (const auto& [what, bytes] : cases) {
    SCOPED_TRACE(what);
    const std::string file = write(bytes);
    for (const bool whole : {true, false}) {
      ASSERT_EQ(whole ? readWhole(file) : readHeader(file), kDcOk);
      EXPECT_EQ(describe(list_).substr(0, 19), "00080016 UI 1.2.9.9");
      EXPECT_EQ(meta_.sopClassUid, "1.2.9.9");
      EXPECT_EQ(meta_.sopClass, DcUid::None);
      EXPECT_EQ(meta_.sopInstanceUid, "1.2.3");
      // Nothing says who made it; this system did not.
      EXPECT_EQ(meta_.implementationClassUid, "");
      EXPECT_EQ(meta_.implementationVersionName, "");
    }
    EXPECT_EQ(pixelOffset_, kNoPixelData);
    EXPECT_EQ(pixelLength_, 0U);
  }
}

TEST_F(ReadingFiles, AReadingTellsOfTheFileItselfAndOfItsGroup0002) {
  const Bytes object = DataSetBytes(Syntax::ImplicitLittle)
                           .text(0x00080016, "UI", kCtImage)
                           .text(0x00080018, "UI", "1.2.3")
                           .text(0x00204000, "LT", std::string(200, 'x'))
                           .take();
  const auto behind = [&object](const Bytes& group) {
    return withMagic(DataSetBytes().append(group).append(object).take());
  };
  const Bytes named =
      DataSetBytes().text(0x00020002, "UI", "1.2.9").text(0x00020003, "UI", "1.2.8").take();
  const Bytes cut = withMagic(DataSetBytes().header(0x00020002, "UI", 9).take());
  const struct {
    const char* what;
    Bytes bytes;
    bool hasMagic;
    DcCode metaCode, code;
    std::string classUid, instanceUid;  // of the group; the data set has its own
  } cases[] = {
      {"both UIDs", behind(named), true, kDcOk, kDcOk, "1.2.9", "1.2.8"},
      {"the class alone", behind(DataSetBytes().text(0x00020002, "UI", "1.2.9").take()), true,
       kDcOk, kDcOk, "1.2.9", ""},
      {"no group", behind({}), true, kDcNotDicom, kDcOk, "", ""},
      {"bare", object, false, kDcNotDicom, kDcOk, "", ""},
      {"bare and short", firstOf(object, 20 + 28), false, kDcOk, kDcOk, "", ""},
      {"a group that is cut", cut, true, kDcReadFailed, kDcReadFailed, "", ""},
      {"a data set that is cut", firstOf(behind(named), 300), true, kDcOk, kDcNotAccepted, "1.2.9",
       "1.2.8"},
  };
  // The first second of 2020, counted in 100 nanoseconds from the year 1601.
  constexpr std::uint64_t kFileTime = 132'223'104'000'000'000;
  const std::chrono::sys_seconds when =
      std::chrono::sys_days{std::chrono::year{2020} / std::chrono::January / 1};
  for (const auto& c : cases) {
    const std::string file = write(c.bytes);
    std::filesystem::last_write_time(file, std::chrono::file_clock::from_sys(when));
    for (const bool whole : {true, false}) {
      SCOPED_TRACE(std::string(c.what) + (whole ? ", whole" : ", up to the pixel data"));
      const QuietLog quiet;
      EXPECT_EQ(whole ? readWhole(file) : readHeader(file), c.code);
      EXPECT_EQ(reading_.file.sizeBytes, c.bytes.size());
      EXPECT_EQ(reading_.file.lastWriteTime, kFileTime);
      EXPECT_EQ(reading_.hasMagic, c.hasMagic);
      EXPECT_EQ(reading_.metaCode, c.metaCode);
      EXPECT_EQ(reading_.metaInfo.sopClassUid, c.classUid);
      EXPECT_EQ(reading_.metaInfo.sopInstanceUid, c.instanceUid);
      EXPECT_FALSE(reading_.isPixelDataCut);
      DcFileMetaInfo alone;
      EXPECT_EQ(dirReadFileMetaInfo(file.c_str(), alone, nullptr), c.metaCode);
      EXPECT_EQ(alone.sopClassUid, c.classUid);
      EXPECT_EQ(alone.sopInstanceUid, c.instanceUid);
    }
  }
  // Nothing of the file before stays.
  EXPECT_EQ(readHeader((dir_ / "missing").string()), kDcStatFailed);
  EXPECT_EQ(reading_.metaCode, kDcStatFailed);
  EXPECT_EQ(reading_.file.sizeBytes, 0U);
  EXPECT_EQ(reading_.metaInfo.sopClassUid, "");
}

TEST_F(ReadingFiles, TheListIsEmptiedAndKeepsWhatPrecedesAnError) {
  list_.add(elem(0x00100010, "OLD"));
  const std::string file = writeDataSet(
      DataSetBytes().text(0x00100020, "LO", "ID").header(0x00280010, "US", 100).take());
  EXPECT_EQ(readWhole(file), kDcNotAccepted);
  EXPECT_EQ(describe(list_), "00100020 LO ID");
  EXPECT_EQ(readHeader(file), kDcNotAccepted);
  EXPECT_EQ(describe(list_), "00100020 LO ID");
  EXPECT_EQ(pixelOffset_, kNoPixelData);
  // A very large file with a lying length is not loaded.
  writeDataSet(DataSetBytes().us(0x00280010, {5}).header(kPrivate, "OB", 0xFFFFFFF0).take());
  extendTo(700 * kMiB);
  pixelOffset_ = 0;
  EXPECT_EQ(readHeader(file), kDcNotAccepted);
  EXPECT_EQ(describe(list_), "00280010 US 5");
  EXPECT_EQ(pixelOffset_, kNoPixelData);
}

TEST_F(ReadingFiles, ReadingStopsInFrontOfThePixelData) {
  for (const NamedSyntax& s : kSyntaxes) {
    SCOPED_TRACE(s.name);
    // The icon image's pixel data and the undefined lengths around it are stepped over.
    DataSetBytes dataSet(s.syntax);
    dataSet.us(0x00280010, {2}).beginSequence(0x00880200, true).beginItem(true);
    dataSet.us(0x00280010, {1}).us(0x00280011, {2}).us(0x00280101, {8});
    dataSet.raw(kPixelData, "OB", {1, 2}).endItem().endSequence();
    const std::string file =
        writeDataSet(dataSet.raw(kPixelData, "OW", {9, 9, 9, 9}).take(), s.uid);
    ASSERT_EQ(readHeader(file), kDcOk);
    EXPECT_EQ(list_.size(), 2U);
    EXPECT_EQ(pixelOffset_, fileBytes() - 4);
    EXPECT_EQ(pixelLength_, 4U);
    // Where the value begins is known without its length.
    pixelOffset_ = 0;
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, nullptr), kDcOk);
    EXPECT_EQ(pixelOffset_, fileBytes() - 4);
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, nullptr, nullptr), kDcOk);
    EXPECT_EQ(list_.size(), 2U);
  }
  // Encapsulated pixel data has the length it declares.
  const Bytes dataSet = DataSetBytes().us(0x00280010, {2}).encapsulated({{}, {1, 2}}).take();
  ASSERT_EQ(readHeader(writeDataSet(dataSet, kJpegUid)), kDcOk);
  EXPECT_EQ(pixelOffset_, fileBytes() - (8 + 8 + 2 + 8));
  EXPECT_EQ(pixelLength_, 0xFFFFFFFF);
  EXPECT_FALSE(reading_.isPixelDataCut);
  EXPECT_EQ(list_.size(), 1U);
  // Many gigabytes of it are not touched.
  const Bytes large =
      DataSetBytes().us(0x00280010, {5}).header(kPixelData, "OW", 0xFFFFFFFE).take();
  const std::string file = writeDataSet(large);
  const std::uint64_t valueAt = fileBytes();
  extendTo(valueAt + 0xFFFFFFFDULL);
  ASSERT_EQ(readHeader(file), kDcOk);
  EXPECT_TRUE(reading_.isPixelDataCut);
  extendTo(valueAt + 0xFFFFFFFEULL);
  ASSERT_EQ(readHeader(file), kDcOk);
  EXPECT_FALSE(reading_.isPixelDataCut);
  EXPECT_EQ(pixelOffset_, valueAt);
  EXPECT_EQ(pixelLength_, 0xFFFFFFFE);
  EXPECT_EQ(list_.size(), 1U);
}

// Data sets in which most elements are passed over by their headers alone, and what must not be
// among those: each is met where it stands, whatever is kept and wherever the file is cut.
TEST_F(ReadingFiles, WhatIsSteppedOverIsCheckedLikeWhatIsKept) {
  const auto plain = [] {
    DataSetBytes dataSet;
    dataSet.text(0x00080016, "UI", kCtImage).text(0x00080060, "CS", "CT");
    return std::move(dataSet.us(0x00280010, {5}).text(0x00280030, "DS", "1\\2"));
  };
  const Bytes pixels = DataSetBytes().raw(kPixelData, "OW", {1, 2, 3, 4}).take();
  struct Case {
    const char* what;
    Bytes middle;  // between the plain elements and the pixel data
    DcCode code;
  };
  const Case cases[] = {
      {"nothing", {}, kDcOk},
      {"a known tag that comes late", DataSetBytes().us(0x00280002, {1}).take(), kDcOk},
      {"an unknown one", DataSetBytes().us(0x00270001, {1}).take(), kDcNotAccepted},
      {"pixel data with a short header", DataSetBytes().us(kPixelData, {7}).take(), kDcOk},
      {"a sequence",
       DataSetBytes()
           .beginSequence(0x00400275, true)
           .beginItem(true)
           .us(0x00400001, {1})
           .endItem()
           .endSequence()
           .take(),
       kDcOk},
      {"a VR that nobody knows", DataSetBytes().text(0x00400001, "??", "AB").take(), kDcOk},
      {"a younger VR", DataSetBytes().raw(0x00410001, "UC", Bytes(3000, 'x')).take(), kDcOk},
      {"an item whose length reads like a VR",
       {0xFE, 0xFF, 0x00, 0xE0, 'C', 'S', 2, 0, 'A', 'B'},
       kDcNotAccepted},
      {"the form of group 0002", DataSetBytes().text(0x00020003, "UI", "1.2").take(), kDcOk},
      {"group 0000, which is implicit", {0, 0, 2, 0, 4, 0, 0, 0, 1, 2, 3, 4}, kDcOk},
      {"values across the end of the first chunk",
       DataSetBytes()
           .text(0x00321050, "LT", std::string(9000, 'y'))
           .text(0x00324000, "LT", std::string(9000, 'z'))
           .us(0x00380010, {1})
           .take(),
       kDcOk},
  };
  const DcTagSet kept({0x00080060, 0x00280030, 0x00380010});
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Bytes file = dicomFile(plain().append(c.middle).append(pixels).take(), kCtImage, "1.2.3",
                                 kExplicitLittleUid);
    const std::size_t middleAt = file.size() - pixels.size() - c.middle.size();
    std::size_t pixelsAt = file.size() - pixels.size();
    if (c.what == cases[3].what) pixelsAt = middleAt;
    for (std::size_t bytes = file.size(); bytes >= middleAt - 20; --bytes) {
      if (bytes + 20 < pixelsAt) bytes = std::min(bytes, middleAt + 60);
      SCOPED_TRACE(bytes);
      const std::string name = write(firstOf(file, bytes));
      const DcCode code = readHeader(name);
      const std::string log = logged();
      if (bytes == file.size()) {
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(pixelOffset_, pixelsAt + 12);
      }
      DcElemList some;
      std::uint64_t offset = 0;
      EXPECT_EQ(dirReadFile(name.c_str(), meta_, some, &offset, nullptr, nullptr, &kept), code);
      EXPECT_EQ(logged(), log);
      EXPECT_EQ(offset, pixelOffset_);
      for (const DcTag tag : {0x00080060U, 0x00280030U, 0x00380010U}) {
        ASSERT_EQ(some.contains(tag), list_.contains(tag));
        EXPECT_TRUE(!some.contains(tag) ||
                    some.find(tag)->stringValues() == list_.find(tag)->stringValues());
      }
    }
  }
}

TEST_F(ReadingFiles, HeadersOfEverySizeAreReadWhole) {
  // Around the first chunk, beyond it, and so large that a value is jumped over.
  for (const std::size_t valueBytes :
       {std::size_t{1}, std::size_t{16'300}, std::size_t{16'384}, std::size_t{40'000},
        std::size_t{100'000}, static_cast<std::size_t>(40 * kMiB)}) {
    SCOPED_TRACE(valueBytes);
    DataSetBytes dataSet;
    dataSet.text(0x00080018, "UI", "1.2.3").raw(kPrivate, "OB", Bytes(valueBytes, 7));
    const std::string file =
        writeDataSet(dataSet.us(0x00280010, {5}).raw(kPixelData, "OB", {1, 2}).take());
    ASSERT_EQ(readHeader(file), kDcOk);
    EXPECT_EQ(pixelOffset_, fileBytes() - 2);
    ASSERT_EQ(list_.size(), 3U);
    EXPECT_EQ(list_.at(1)->segments()[0].lengthBytes(), valueBytes);
    EXPECT_EQ(list_.at(1)->segments()[0].data()[valueBytes - 1], 7);
    ASSERT_EQ(readWhole(file), kDcOk);
    EXPECT_EQ(list_.size(), 4U);
  }
}

TEST_F(ReadingFiles, ACutFileIsAnErrorOrEndsBetweenElements) {
  const QuietLog quiet;
  DataSetBytes dataSet;
  dataSet.beginSequence(0x00081140, true).beginItem(true).text(0x00081150, "UI", "1.2").endItem();
  dataSet.endSequence().us(0x00280010, {5}).raw(kPixelData, "OB", {1, 2, 3, 4});
  const Bytes bytes = dicomFile(dataSet.bytes(), kCtImage, "1.2.3", kExplicitLittleUid);
  const std::size_t dataSetAt = bytes.size() - dataSet.bytes().size();
  const std::size_t rowsAt = bytes.size() - 26;
  const std::size_t pixelsAt = bytes.size() - 16;
  for (std::size_t kept = dataSetAt; kept <= bytes.size(); ++kept) {
    SCOPED_TRACE(kept);
    const std::string file = write(firstOf(bytes, kept));
    // What stands behind the tag of the pixel data is not looked at.
    const bool headerIsWhole = (kept >= dataSetAt + 4 && kept < dataSetAt + 12) ||
                               (kept >= rowsAt && kept < rowsAt + 8) || kept >= pixelsAt;
    EXPECT_EQ(readHeader(file) == kDcOk, headerIsWhole);
    // Fewer than 8 bytes are no element.
    EXPECT_EQ(reading_.isPixelDataCut, kept >= pixelsAt + 8 && kept < bytes.size());
    const bool isWhole = (headerIsWhole && kept < pixelsAt + 12) || kept == bytes.size();
    EXPECT_EQ(readWhole(file) == kDcOk, isWhole);
  }
}

TEST_F(ReadingFiles, DeflatedDataIsRefusedNotMisread) {
  if (pydicomData().empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  const QuietLog quiet;
  const std::string file = (pydicomData() / "test_files" / "image_dfl.dcm").string();
  EXPECT_NE(readWhole(file), kDcOk);
  EXPECT_NE(readHeader(file), kDcOk);
  EXPECT_EQ(meta_.transferSyntax, DcUid::DeflatedExplicitLittleEndian);
}

TEST_F(ReadingFiles, TheLengthOfAnItemEndsAtItsOwnDelimitationItem) {
  const auto undefined = [](Syntax syntax) {
    DataSetBytes item(syntax);
    item.beginItem(true).us(0x00280010, {1}).beginSequence(0x00081140, true);
    item.beginItem(true).endItem().beginItem().endItem().endSequence();
    item.us(0x00280011, {1}).endItem().append({9, 9, 9});
    return Bytes(item.bytes().begin() + 4, item.bytes().end());  // from the length field on
  };
  // Two elements and a sequence: header, two items, three delimitation items or less.
  const std::uint32_t implicitLength = 10 + (8 + 8 + 8 + 8 + 8) + 10;
  const std::uint32_t explicitLength = implicitLength + 4;
  const struct {
    const char* what;
    Bytes bytes;
    DcUid syntax;
    DcCode code;
    std::uint32_t length;
    std::uint32_t trailer;
    const char* message;
  } cases[] = {
      {"defined", hexBytes("03000000 010203"), kJpeg, kDcOk, 3, 0, ""},
      {"defined, big endian", hexBytes("00000003 010203"), kBig, kDcOk, 3, 0, ""},
      {"one byte too long", hexBytes("04000000 010203"), kJpeg, kDcItemLengthUnknown, 0, 0,
       "Value length field 4(0x4) exceeds buffer length 3(0x3)"},
      {"implicit", undefined(Syntax::ImplicitLittle), kImplicit, kDcOk, implicitLength, 8, ""},
      {"explicit", undefined(Syntax::ExplicitLittle), kExplicit, kDcOk, explicitLength, 8, ""},
      {"big endian", undefined(Syntax::ExplicitBig), kBig, kDcOk, explicitLength, 8, ""},
      {"cut", firstOf(undefined(Syntax::ExplicitLittle), 4 + explicitLength + 7), kExplicit,
       kDcItemLengthUnknown, 0, 0, "No item delimitation item in 71(0x47) bytes"},
      {"no transfer syntax", Bytes(4, 0), DcUid::Verification, kDcItemLengthUnknown, 0, 0,
       "'1.2.840.10008.1.1' is not a Transfer Syntax UID"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::uint32_t length = 9;
    std::uint32_t trailer = 9;
    EXPECT_EQ(utilGetSqItemValLen(c.bytes.data(), static_cast<std::uint32_t>(c.bytes.size() - 4),
                                  c.syntax, &length, &trailer),
              c.code);
    EXPECT_EQ(length, c.length);
    EXPECT_EQ(trailer, c.trailer);
    EXPECT_EQ(logged(), c.message);
  }
  std::uint32_t length = 0;
  EXPECT_EQ(utilGetSqItemValLen(nullptr, 8, kJpeg, &length, &length), kDcItemLengthUnknown);
  EXPECT_EQ(logged(), "Null argument passed");
}

}  // namespace
}  // namespace quillon::test
