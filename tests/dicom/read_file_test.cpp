#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "dicom/dict.h"
#include "dicom/elem_list.h"
#include "dicom/read_file.h"
#include "dir_test_tools.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kCtImage = "1.2.840.10008.5.1.4.1.1.2";
constexpr std::uint64_t kMiB = 1024 * 1024;

// Preamble and "DICM" in front of what follows.
Bytes withMagic(const Bytes& bytes) {
  Bytes file(128, 0);
  file.insert(file.end(), {'D', 'I', 'C', 'M'});
  file.insert(file.end(), bytes.begin(), bytes.end());
  return file;
}

class ReadingFiles : public testing::Test {
 protected:
  std::string write(const Bytes& bytes) {
    writeBytes(dir_ / "file", bytes);
    return (dir_ / "file").string();
  }
  // The file's length without its bytes: the rest is a hole.
  void extendTo(std::uint64_t sizeBytes) { std::filesystem::resize_file(dir_ / "file", sizeBytes); }

  TempDir dir_;
  DcFileMetaInfo meta_;
  DcElemList list_;
  std::uint64_t pixelOffset_ = 0;
  std::uint32_t pixelLength_ = 0;
};

TEST_F(ReadingFiles, TheMetaInformationIsTakenFromItsGroup) {
  const Bytes group = DataSetBytes()
                          .ul(0x00020000, {0})
                          .raw(0x00020001, "OB", {0x01, 0x02})
                          .text(0x00020002, "UI", kCtImage)
                          .text(0x00020003, "UI", "1.2.3")
                          .text(0x00020010, "UI", kExplicitBigUid)
                          .text(0x00020012, "UI", "1.2.4")
                          .text(0x00020013, "SH", "VERSION")
                          .text(0x00020016, "AE", "SOURCE")
                          .text(0x00020100, "UI", "1.2.5")
                          .raw(0x00020102, "OB", {7, 8})
                          .take();
  Bytes bytes = withMagic(group);
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
  EXPECT_EQ(meta_.transferSyntax, DcUid::ExplicitBigEndian);
  EXPECT_EQ(meta_.transferSyntaxUid, kExplicitBigUid);
  EXPECT_EQ(meta_.implementationClassUid, "1.2.4");
  EXPECT_EQ(meta_.implementationVersionName, "VERSION");
  EXPECT_EQ(meta_.sourceAeTitle, "SOURCE");
  EXPECT_EQ(meta_.privateCreatorUid, "1.2.5");
  EXPECT_EQ(meta_.privateInformation, (Bytes{7, 8}));
}

TEST_F(ReadingFiles, WhatIsNoMetaInformationHasItsCode) {
  const Bytes group = DataSetBytes().text(0x00020010, "UI", kExplicitLittleUid).take();
  const Bytes open = DataSetBytes()
                         .header(0x00020102, "OB", 0xFFFFFFFF)
                         .append({1, 2, 3})
                         .header(0xFFFEE0DD, "", 0)
                         .text(0x00080005, "CS", "A")
                         .take();
  Bytes cutInValue = withMagic(group);
  cutInValue.pop_back();
  Bytes noMagic(200, 0);
  const struct {
    const char* what;
    Bytes bytes;
    DcCode code;
    std::uint64_t offset;
    Lines messages;
  } cases[] = {
      {"135 bytes", Bytes(135, 1), kDcOk, 0, {}},
      {"136 bytes without DICM", Bytes(136, 1), kDcNotDicom, 0, {}},
      {"no meta group",
       withMagic(DataSetBytes().text(0x00080005, "CS", "A").take()),
       kDcNotDicom,
       132,
       {}},
      {"nothing behind the group",
       withMagic(group),
       kDcReadFailed,
       0,
       {"Error reading fileMetaInfo at offset 0xa0"}},
      {"cut in a value",
       cutInValue,
       kDcReadFailed,
       0,
       {"Error reading fileMetaInfo at offset 0xa0"}},
      {"undefined length, scanned over",
       withMagic(open),
       kDcOk,
       132 + 12 + 3 + 8,
       {"Invalid tag 0x201fe03, expecting Sequence Item at offset 0x90"}},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::uint64_t offset = 99;
    EXPECT_EQ(dirReadFileMetaInfo(write(c.bytes).c_str(), meta_, &offset), c.code);
    EXPECT_EQ(offset, c.offset);
    EXPECT_EQ(meta_.transferSyntax, DcUid::ImplicitLittleEndian);
    EXPECT_EQ(log.take(), c.messages);
  }
}

TEST_F(ReadingFiles, FilesThatCannotBeReadHaveTheirCode) {
  LoggedLines log;
  const std::string missing = (dir_ / "missing").string();
  EXPECT_EQ(dirReadFileMetaInfo(nullptr, meta_, nullptr), kDcFileNullArgument);
  EXPECT_EQ(dirReadFile(nullptr, meta_, list_), kDcFileNullArgument);
  EXPECT_EQ(dirReadFile(nullptr, meta_, list_, nullptr, nullptr), kDcFileNullArgument);
  EXPECT_EQ(log.take(), (Lines(3, "Null argument passed")));
  EXPECT_EQ(dirReadFile(missing.c_str(), meta_, list_), kDcStatFailed);
  EXPECT_EQ(dirReadFile(missing.c_str(), meta_, list_, nullptr, nullptr), kDcStatFailed);
  EXPECT_EQ(dirReadFileMetaInfo(dir_.path().string().c_str(), meta_, nullptr), kDcStatFailed);
  EXPECT_EQ(log.take(),
            (Lines{"stat error file '" + missing + "'", "stat error file '" + missing + "'",
                   "stat error file '" + dir_.path().string() + "'"}));
}

TEST_F(ReadingFiles, TheDataSetIsReadInTheSyntaxOfTheFile) {
  const struct {
    const char* what;
    Syntax encodedAs;
    std::string_view syntaxUid;
    DcUid expectedId;
    DcUid expectedElement;
  } cases[] = {
      {"implicit", Syntax::ImplicitLittle, kImplicitLittleUid, DcUid::ImplicitLittleEndian,
       DcUid::ImplicitLittleEndian},
      {"explicit", Syntax::ExplicitLittle, kExplicitLittleUid, DcUid::ExplicitLittleEndian,
       DcUid::ExplicitLittleEndian},
      {"big endian", Syntax::ExplicitBig, kExplicitBigUid, DcUid::ExplicitBigEndian,
       DcUid::ExplicitBigEndian},
      {"compressed", Syntax::ExplicitLittle, "1.2.840.10008.1.2.4.50", DcUid{176}, DcUid{176}},
      {"unknown", Syntax::ExplicitLittle, "1.2.3.4", DcUid::ImplicitLittleEndian,
       DcUid::ExplicitLittleEndian},
      {"a UID of another kind", Syntax::ExplicitLittle, kCtImage, DcUid::ImplicitLittleEndian,
       DcUid::ExplicitLittleEndian},
      {"absent", Syntax::ImplicitLittle, "", DcUid::ImplicitLittleEndian,
       DcUid::ImplicitLittleEndian},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Bytes dataSet =
        DataSetBytes(c.encodedAs).text(0x00100020, "LO", "ID").us(0x00280010, {258}).take();
    Bytes bytes = dicomFile(dataSet, kCtImage, "1.2.3", c.syntaxUid);
    if (c.syntaxUid.empty()) {
      bytes = withMagic(DataSetBytes().text(0x00020002, "UI", kCtImage).append(dataSet).take());
    }
    const std::string file = write(bytes);
    const Lines expected = {"00100020 LO ID", "00280010 US 258"};
    for (const bool whole : {true, false}) {
      ASSERT_EQ(whole ? dirReadFile(file.c_str(), meta_, list_)
                      : dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_),
                kDcOk);
      EXPECT_EQ(describe(list_), expected);
      EXPECT_EQ(meta_.transferSyntax, c.expectedId);
      EXPECT_EQ(meta_.transferSyntaxUid, c.syntaxUid);
      EXPECT_EQ(list_.at(1)->transferSyntax(), c.expectedElement);
    }
  }
}

TEST_F(ReadingFiles, ABareDataSetNamesItsOwnObject) {
  const Bytes dataSet = DataSetBytes(Syntax::ImplicitLittle)
                            .text(0x00080016, "UI", "1.2.9.9")  // a class nobody knows
                            .text(0x00080018, "UI", "1.2.3")
                            .take();
  Bytes large = dataSet;
  const Bytes filler =
      DataSetBytes(Syntax::ImplicitLittle).text(0x00204000, "LT", std::string(200, 'x')).take();
  large.insert(large.end(), filler.begin(), filler.end());
  const struct {
    const char* what;
    Bytes bytes;
  } cases[] = {{"fewer than 136 bytes", dataSet}, {"more", large}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string file = write(c.bytes);
    for (const bool whole : {true, false}) {
      ASSERT_EQ(whole ? dirReadFile(file.c_str(), meta_, list_)
                      : dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_),
                kDcOk);
      EXPECT_EQ(list_.at(0)->tag(), 0x00080016U);
      EXPECT_EQ(meta_.sopClassUid, "1.2.9.9");
      EXPECT_EQ(meta_.sopClass, DcUid::None);
      EXPECT_EQ(meta_.sopInstanceUid, "1.2.3");
    }
    EXPECT_EQ(pixelOffset_, kNoPixelData);
    EXPECT_EQ(pixelLength_, 0U);
  }
}

TEST_F(ReadingFiles, AnEmptyMetaGroupIsFollowedByAnImplicitDataSet) {
  const std::string file =
      write(withMagic(DataSetBytes(Syntax::ImplicitLittle).text(0x00080018, "UI", "1.2.3").take()));
  ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_), kDcOk);
  EXPECT_EQ(describe(list_), Lines{"00080018 UI 1.2.3"});
  EXPECT_EQ(meta_.sopInstanceUid, "1.2.3");
}

TEST_F(ReadingFiles, TheListIsEmptiedAndKeepsWhatPrecedesAnError) {
  list_.add(std::make_unique<DcElem>(0x00100010, "OLD"));
  const std::string file = write(
      dicomFile(DataSetBytes().text(0x00100020, "LO", "ID").header(0x00280010, "US", 100).take(),
                kCtImage, "1.2.3", kExplicitLittleUid));
  LoggedLines log;
  EXPECT_EQ(dirReadFile(file.c_str(), meta_, list_), kDcNotAccepted);
  EXPECT_EQ(describe(list_), Lines{"00100020 LO ID"});
  EXPECT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcNotAccepted);
  EXPECT_EQ(describe(list_), Lines{"00100020 LO ID"});
  EXPECT_EQ(pixelOffset_, kNoPixelData);
}

TEST_F(ReadingFiles, ReadingStopsInFrontOfThePixelData) {
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    const std::string_view uid = syntax == Syntax::ImplicitLittle   ? kImplicitLittleUid
                                 : syntax == Syntax::ExplicitLittle ? kExplicitLittleUid
                                                                    : kExplicitBigUid;
    // The icon image's pixel data and the undefined lengths around it are stepped over.
    const Bytes header = DataSetBytes(syntax)
                             .us(0x00280010, {2})
                             .beginSequence(0x00880200, true)
                             .beginItem(true)
                             .us(0x00280010, {1})
                             .us(0x00280011, {2})
                             .us(0x00280101, {8})
                             .raw(0x7FE00010, "OB", {1, 2})
                             .endItem()
                             .endSequence()
                             .take();
    const Bytes whole =
        DataSetBytes(syntax).append(header).raw(0x7FE00010, "OW", {9, 9, 9, 9}).take();
    const Bytes bytes = dicomFile(whole, kCtImage, "1.2.3", uid);
    const std::string file = write(bytes);
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcOk);
    EXPECT_EQ(list_.size(), 2U);
    EXPECT_EQ(pixelOffset_, bytes.size() - 4);
    EXPECT_EQ(pixelLength_, 4U);
    // Where the value begins is known without its length.
    pixelOffset_ = 0;
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, nullptr), kDcOk);
    EXPECT_EQ(pixelOffset_, bytes.size() - 4);
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, nullptr, nullptr), kDcOk);
    EXPECT_EQ(list_.size(), 2U);
  }
}

TEST_F(ReadingFiles, EncapsulatedPixelDataHasTheLengthItDeclares) {
  const Bytes dataSet = DataSetBytes().us(0x00280010, {2}).encapsulated({{}, {1, 2}}).take();
  const Bytes bytes = dicomFile(dataSet, kCtImage, "1.2.3", "1.2.840.10008.1.2.4.50");
  ASSERT_EQ(dirReadFile(write(bytes).c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcOk);
  EXPECT_EQ(pixelOffset_, bytes.size() - (8 + 8 + 2 + 8));
  EXPECT_EQ(pixelLength_, 0xFFFFFFFF);
  EXPECT_EQ(list_.size(), 1U);
}

TEST_F(ReadingFiles, HeadersOfEverySizeAreReadWhole) {
  // Around the first chunk, beyond it, and so large that a value is jumped over.
  for (const std::size_t valueBytes :
       {std::size_t{1}, std::size_t{16'300}, std::size_t{16'384}, std::size_t{40'000},
        std::size_t{100'000}, static_cast<std::size_t>(40 * kMiB)}) {
    SCOPED_TRACE(valueBytes);
    DataSetBytes dataSet;
    dataSet.text(0x00080018, "UI", "1.2.3")
        .raw(0x00091010, "OB", Bytes(valueBytes, 7))
        .us(0x00280010, {5});
    const std::size_t headerBytes = dataSet.bytes().size();
    const Bytes bytes = dicomFile(dataSet.raw(0x7FE00010, "OB", {1, 2}).take(), kCtImage, "1.2.3",
                                  kExplicitLittleUid);
    const std::string file = write(bytes);
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcOk);
    EXPECT_EQ(pixelOffset_, bytes.size() - 2);
    ASSERT_EQ(list_.size(), 3U);
    EXPECT_EQ(list_.at(1)->segments()[0].lengthBytes(), valueBytes);
    EXPECT_EQ(list_.at(1)->segments()[0].data()[valueBytes - 1], 7);
    EXPECT_GT(headerBytes, valueBytes);
    ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_), kDcOk);
    EXPECT_EQ(list_.size(), 4U);
  }
}

TEST_F(ReadingFiles, PixelDataOfManyGigabytesIsNotTouched) {
  const Bytes dataSet =
      DataSetBytes().us(0x00280010, {5}).header(0x7FE00010, "OW", 0xFFFFFFFE).take();
  const Bytes bytes = dicomFile(dataSet, kCtImage, "1.2.3", kExplicitLittleUid);
  const std::string file = write(bytes);
  extendTo(bytes.size() + 0xFFFFFFFEULL);
  ASSERT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcOk);
  EXPECT_EQ(pixelOffset_, bytes.size());
  EXPECT_EQ(pixelLength_, 0xFFFFFFFE);
  EXPECT_EQ(list_.size(), 1U);
}

TEST_F(ReadingFiles, AWholeFileHasALimit) {
  LoggedLines log;
  const std::string file = write(
      dicomFile(DataSetBytes().us(0x00280010, {5}).take(), kCtImage, "1.2.3", kExplicitLittleUid));
  extendTo(512 * kMiB + 1);
  EXPECT_EQ(dirReadFile(file.c_str(), meta_, list_), kDcFileTooLarge);
  EXPECT_EQ(log.take(), Lines{"File '" + file + "', size exceeds limit of 512 Mbytes"});
}

TEST_F(ReadingFiles, AVeryLargeFileWithALyingLengthFailsWithoutBeingLoaded) {
  const QuietLog quiet;
  const std::string file = write(
      dicomFile(DataSetBytes().us(0x00280010, {5}).header(0x00091010, "OB", 0xFFFFFFF0).take(),
                kCtImage, "1.2.3", kExplicitLittleUid));
  extendTo(700 * kMiB);
  EXPECT_EQ(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcNotAccepted);
  EXPECT_EQ(describe(list_), Lines{"00280010 US 5"});
  EXPECT_EQ(pixelOffset_, kNoPixelData);
}

TEST_F(ReadingFiles, ACutFileIsAnErrorOrEndsBetweenElements) {
  const QuietLog quiet;
  const Bytes dataSet = DataSetBytes()
                            .beginSequence(0x00081140, true)
                            .beginItem(true)
                            .text(0x00081150, "UI", "1.2")
                            .endItem()
                            .endSequence()
                            .us(0x00280010, {5})
                            .raw(0x7FE00010, "OB", {1, 2, 3, 4})
                            .take();
  const Bytes bytes = dicomFile(dataSet, kCtImage, "1.2.3", kExplicitLittleUid);
  const std::size_t dataSetAt = bytes.size() - dataSet.size();
  const std::size_t rowsAt = bytes.size() - 26;
  const std::size_t pixelsAt = bytes.size() - 16;
  for (std::size_t kept = dataSetAt; kept <= bytes.size(); ++kept) {
    SCOPED_TRACE(kept);
    const std::string file =
        write(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(kept)));
    const DcCode headerCode = dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_);
    // What stands behind the tag of the pixel data is not looked at.
    const bool headerIsWhole = (kept >= dataSetAt + 4 && kept < dataSetAt + 12) ||
                               (kept >= rowsAt && kept < rowsAt + 8) || kept >= pixelsAt;
    EXPECT_EQ(headerCode == kDcOk, headerIsWhole);
    const bool isWhole = (headerIsWhole && kept < pixelsAt + 12) || kept == bytes.size();
    EXPECT_EQ(dirReadFile(file.c_str(), meta_, list_) == kDcOk, isWhole);
  }
}

TEST_F(ReadingFiles, DeflatedDataIsRefusedNotMisread) {
  const std::filesystem::path samples = pydicomData();
  if (samples.empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  const QuietLog quiet;
  const std::string file = (samples / "test_files" / "image_dfl.dcm").string();
  EXPECT_NE(dirReadFile(file.c_str(), meta_, list_), kDcOk);
  EXPECT_NE(dirReadFile(file.c_str(), meta_, list_, &pixelOffset_, &pixelLength_), kDcOk);
  EXPECT_EQ(meta_.transferSyntax, DcUid::DeflatedExplicitLittleEndian);
}

TEST(MeasuringAnItem, TheLengthEndsAtTheItemsOwnDelimitationItem) {
  const auto undefined = [](Syntax syntax) {
    const Bytes item = DataSetBytes(syntax)
                           .beginItem(true)
                           .us(0x00280010, {1})
                           .beginSequence(0x00081140, true)
                           .beginItem(true)
                           .endItem()
                           .beginItem()
                           .endItem()
                           .endSequence()
                           .us(0x00280011, {1})
                           .endItem()
                           .append({9, 9, 9})
                           .take();
    return Bytes(item.begin() + 4, item.end());  // from the length field on
  };
  const auto bytesOf = [](const Bytes& bytes, std::size_t count) {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
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
    Lines messages;
  } cases[] = {
      {"defined", {3, 0, 0, 0, 1, 2, 3}, DcUid{176}, kDcOk, 3, 0, {}},
      {"defined, big endian", {0, 0, 0, 3, 1, 2, 3}, DcUid::ExplicitBigEndian, kDcOk, 3, 0, {}},
      {"one byte too long",
       {4, 0, 0, 0, 1, 2, 3},
       DcUid{176},
       kDcItemLengthUnknown,
       0,
       0,
       {"Value length field 4(0x4) exceeds buffer length 3(0x3)"}},
      {"undefined, implicit",
       undefined(Syntax::ImplicitLittle),
       DcUid::ImplicitLittleEndian,
       kDcOk,
       implicitLength,
       8,
       {}},
      {"undefined, explicit",
       undefined(Syntax::ExplicitLittle),
       DcUid::ExplicitLittleEndian,
       kDcOk,
       explicitLength,
       8,
       {}},
      {"undefined, big endian",
       undefined(Syntax::ExplicitBig),
       DcUid::ExplicitBigEndian,
       kDcOk,
       explicitLength,
       8,
       {}},
      {"undefined and cut",
       bytesOf(undefined(Syntax::ExplicitLittle), 4 + explicitLength + 7),
       DcUid::ExplicitLittleEndian,
       kDcItemLengthUnknown,
       0,
       0,
       {"No item delimitation item in 71(0x47) bytes"}},
      {"no transfer syntax", {0, 0, 0, 0}, DcUid::Verification, kDcItemLengthUnknown, 0, 0, {}},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::uint32_t length = 9;
    std::uint32_t trailer = 9;
    EXPECT_EQ(utilGetSqItemValLen(c.bytes.data(), static_cast<std::uint32_t>(c.bytes.size() - 4),
                                  c.syntax, &length, &trailer),
              c.code);
    EXPECT_EQ(length, c.length);
    EXPECT_EQ(trailer, c.trailer);
    EXPECT_EQ(log.take(), c.messages);
  }
  std::uint32_t length = 0;
  EXPECT_EQ(utilGetSqItemValLen(nullptr, 8, DcUid{176}, &length, &length), kDcItemLengthUnknown);
  EXPECT_EQ(log.take(), Lines{"Null argument passed"});
}

}  // namespace
}  // namespace quillon::test
