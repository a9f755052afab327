#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dicom/file.h"
#include "dicom/parse_fields.h"
#include "dir_test_tools.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;
using Status = DcFieldStatus;

constexpr const char* kCtImage = "1.2.840.10008.5.1.4.1.1.2";

std::vector<DcFieldRequest> requests(const std::vector<DcTag>& tags) {
  std::vector<DcFieldRequest> table(tags.size() + 1);
  for (std::size_t i = 0; i < tags.size(); ++i) {
    table[i].tag = tags[i];
    table[i].status = Status::Found;  // a walk begins with no answers
  }
  return table;
}

std::string textOf(const DcFieldRequest& request) {
  const std::size_t kept = std::min<std::size_t>(request.lengthBytes, kFieldValueBytes);
  return {request.value.begin(), request.value.begin() + static_cast<std::ptrdiff_t>(kept)};
}

std::string_view uidTextOf(Syntax syntax) {
  return syntax == Syntax::ImplicitLittle   ? kImplicitLittleUid
         : syntax == Syntax::ExplicitLittle ? kExplicitLittleUid
                                            : kExplicitBigUid;
}

class ReadingFields : public testing::Test {
 protected:
  DcCode read(const Bytes& bytes, std::vector<DcFieldRequest>& table, bool readPixelLength = true) {
    writeBytes(dir_ / "file", bytes);
    return libParseFields((dir_ / "file").string().c_str(), table.data(), readPixelLength);
  }
  [[nodiscard]] std::string name() const { return (dir_ / "file").string(); }

  TempDir dir_;
};

TEST_F(ReadingFields, ValuesAreAnsweredWithLengthAndOffset) {
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    DataSetBytes dataSet(syntax);
    dataSet.text(0x00080005, "CS", "A").raw(0x00091010, "OB", Bytes(100'000, 1));
    const std::size_t nameAt = dataSet.bytes().size();
    dataSet.text(0x00100010, "PN", "DOE^J").text(0x00104000, "LT", std::string(257, 'x'));
    dataSet.text(0x00204000, "LT", std::string(256, 'y')).raw(0x00282000, "OB", Bytes(300, 'z'));
    const Bytes dataSetBytes = dataSet.take();
    const Bytes file = dicomFile(dataSetBytes, kCtImage, "1.2.3", uidTextOf(syntax));
    const std::size_t dataSetAt = file.size() - dataSetBytes.size();
    auto table = requests({0x00020003, 0x00020016, 0x00080008, 0x00100010, 0x00104000, 0x00204000,
                           0x00282000, 0x00400001});
    ASSERT_EQ(read(file, table), kDcOk);
    EXPECT_EQ(textOf(table[0]), std::string("1.2.3\0", 6));
    EXPECT_EQ(table[1].status, Status::NotFound);  // not in the meta group
    EXPECT_EQ(table[2].status, Status::NotFound);
    EXPECT_EQ(table[2].offsetInFile, ~0ULL);
    EXPECT_EQ(table[2].lengthBytes, 0U);
    EXPECT_EQ(table[3].status, Status::Found);
    EXPECT_EQ(textOf(table[3]), "DOE^J ");
    EXPECT_EQ(table[3].offsetInFile, dataSetAt + nameAt);
    EXPECT_EQ(table[4].status, Status::FoundCut);
    EXPECT_EQ(table[4].lengthBytes, 258U);
    EXPECT_EQ(textOf(table[4]), std::string(256, 'x'));
    EXPECT_EQ(table[5].status, Status::Found);
    EXPECT_EQ(textOf(table[5]), std::string(256, 'y'));
    EXPECT_EQ(table[6].status, Status::FoundCut);
    EXPECT_EQ(table[6].lengthBytes, 300U);
    EXPECT_EQ(table[7].status, Status::NotFound);
  }
}

TEST_F(ReadingFields, ABareDataSetIsImplicit) {
  auto table = requests({0x00100020});
  ASSERT_EQ(read(DataSetBytes(Syntax::ImplicitLittle).text(0x00100020, "LO", "ID").take(), table),
            kDcOk);
  EXPECT_EQ(textOf(table[0]), "ID");
}

TEST_F(ReadingFields, RequestsInsideSequencesAreAnsweredButTheTopLevelDecides) {
  for (const Syntax syntax : {Syntax::ExplicitLittle, Syntax::ExplicitBig}) {
    for (const bool undefined : {false, true}) {
      SCOPED_TRACE(testing::Message() << nameOf(syntax) << ", undefined " << undefined);
      const Bytes dataSet = DataSetBytes(syntax)
                                .beginSequence(0x00081250, undefined)
                                .beginItem(undefined)
                                .text(0x00100020, "LO", "NESTED")
                                .text(0x0020000D, "UI", "1.9")
                                .text(0x00400001, "AE", "FIRST")
                                .raw(0x7FE00010, "OB", {7, 7})
                                .endItem()
                                .beginItem(undefined)
                                .text(0x00400001, "AE", "SECOND")
                                .endItem()
                                .endSequence()
                                .text(0x00100020, "LO", "TOP")
                                .raw(0x7FE00010, "OB", {1, 2})
                                .take();
      auto table =
          requests({0x00080018, 0x00081250, 0x00100020, 0x0020000D, 0x00400001, 0x7FE00010});
      ASSERT_EQ(read(dicomFile(dataSet, kCtImage, "1.2.3", uidTextOf(syntax)), table), kDcOk);
      EXPECT_EQ(table[0].status, Status::NotFound);
      EXPECT_EQ(table[1].status, Status::Found);
      EXPECT_EQ(textOf(table[2]), "TOP ");
      EXPECT_EQ(textOf(table[3]), std::string("1.9\0", 4));
      EXPECT_EQ(textOf(table[4]), "FIRST ");
      EXPECT_EQ(textOf(table[5]), std::string("\1\2", 2));  // not the icon's
    }
  }
}

TEST_F(ReadingFields, UndefinedLengthsAreFollowedToTheirEnd) {
  const Bytes fragment(300, 5);
  const Bytes dataSet =
      DataSetBytes().encapsulated({{}, fragment}).raw(0xFFFCFFFC, "OB", {1, 2}).take();
  auto table = requests({0x7FE00010, 0xFFFCFFFC});
  ASSERT_EQ(read(dicomFile(dataSet, kCtImage, "1.2.3", "1.2.840.10008.1.2.4.50"), table), kDcOk);
  EXPECT_EQ(table[0].status, Status::FoundCut);
  EXPECT_EQ(table[0].lengthBytes, 8U + 8 + 300);
  EXPECT_EQ(table[0].value[3], 0xE0);  // the first item's tag
  EXPECT_EQ(textOf(table[1]), std::string("\1\2", 2));

  // Items of an unknown VR are implicit whatever surrounds them.
  const Bytes items = DataSetBytes(Syntax::ImplicitLittle)
                          .beginItem(true)
                          .us(0x00280010, {1})
                          .endItem()
                          .header(0xFFFEE0DD, "", 0)
                          .take();
  const Bytes unknown = DataSetBytes()
                            .header(0x00091010, "UN", 0xFFFFFFFF)
                            .append(items)
                            .text(0x00100020, "LO", "ID")
                            .take();
  auto id = requests({0x00100020});
  ASSERT_EQ(read(dicomFile(unknown, kCtImage, "1.2.3", kExplicitLittleUid), id), kDcOk);
  EXPECT_EQ(textOf(id[0]), "ID");
}

TEST_F(ReadingFields, TheWalkCanEndAtThePixelData) {
  const Bytes dataSet = DataSetBytes()
                            .text(0x00100020, "LO", "ID")
                            .header(0x7FE00010, "OB", 0xFFFFFFFF)  // and nothing behind it
                            .take();
  const Bytes file = dicomFile(dataSet, kCtImage, "1.2.3", "1.2.840.10008.1.2.4.50");
  auto table = requests({0x00100020, 0x7FE00010, 0xFFFCFFFC});
  EXPECT_EQ(read(file, table, false), kDcOk);
  EXPECT_EQ(table[0].status, Status::Found);
  EXPECT_EQ(table[1].status, Status::PixelDataNotRead);
  EXPECT_EQ(table[1].offsetInFile, file.size() - 12);
  EXPECT_EQ(table[2].status, Status::NotFound);
  // The walk is over before the damage when nothing behind it is wanted.
  auto early = requests({0x00100020});
  EXPECT_EQ(read(file, early), kDcOk);
  EXPECT_EQ(early[0].status, Status::Found);
}

TEST_F(ReadingFields, FaultsHaveTheirCodeAndSentence) {
  const auto set = [] { return DataSetBytes(Syntax::ExplicitLittle); };
  constexpr unsigned kFirst = 10;  // bytes of the first element
  const struct {
    const char* what;
    Bytes behindFirst;
    const char* message;
    unsigned offset;
  } cases[] = {
      {"half a header", {8, 0, 0x18}, "' - read error at offset 0x%x", kFirst},
      {"half a long header",
       {8, 0, 0x40, 0x11, 'S', 'Q', 0, 0, 1},
       "' - error reading Value Length of Tag 00081140",
       0},
      {"wanted value cut", set().header(0x00100020, "LO", 4).append({'I'}).take(),
       "' - read error at offset 0x%x", kFirst + 8},
      {"pixel data without its end",
       set().header(0x00091010, "OB", 0xFFFFFFFF).header(0xFFFEE000, "", 0).take(),
       "' - missing OB/OW terminator of Tag 00091010", 0},
      {"no item", set().beginSequence(0x00081140).us(0x00280010, {1}).endSequence().take(),
       "' - invalid data, offset - 0x%x", kFirst + 12},
      {"no item tag", set().beginSequence(0x00081140, true).take(),
       "' - tag read error, offset - 0x%x", kFirst + 12},
      {"half an item",
       set().beginSequence(0x00081140, true).append({0xFE, 0xFF, 0, 0xE0, 1}).take(),
       "' - value length read error, offset - 0x%x", kFirst + 12},
      {"item longer than its sequence",
       set().header(0x00081140, "SQ", 8).header(0xFFFEE000, "", 2).append({1, 2}).take(),
       "' - invalid data, offset - 0x%x", kFirst + 20},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Bytes dataSet = set().us(0x00080005, {1}).append(c.behindFirst).take();
    const Bytes file = dicomFile(dataSet, kCtImage, "1.2.3", kExplicitLittleUid);
    auto table = requests({0x00080005, 0x00100020});
    EXPECT_EQ(read(file, table), kDcFieldReadError);
    EXPECT_EQ(table[0].status, Status::Found);
    char message[128];
    std::snprintf(message, sizeof message, c.message,
                  static_cast<unsigned>(file.size() - dataSet.size()) + c.offset);
    const std::string expected = std::string(message).substr(1);
    EXPECT_EQ(log.take(), Lines{name() + expected});
  }
}

TEST_F(ReadingFields, NestingIsCutAtTheLimit) {
  DataSetBytes bytes;
  for (int i = 0; i < kMaxNesting + 1; ++i) bytes.beginSequence(0x00081140, true).beginItem(true);
  auto table = requests({0x00100020});
  EXPECT_EQ(read(dicomFile(bytes.take(), kCtImage, "1.2.3", kExplicitLittleUid), table),
            kDcTooDeep);
}

TEST_F(ReadingFields, ArgumentsAreChecked) {
  LoggedLines log;
  auto empty = requests({});
  auto table = requests({0x00100020});
  DcFile file;
  EXPECT_EQ(libParseFields(static_cast<DcFile*>(nullptr), table.data(), "NAME"),
            kDcHelperNullArgument);
  EXPECT_EQ(libParseFields(&file, nullptr, "NAME"), kDcHelperNullArgument);
  EXPECT_EQ(libParseFields(&file, empty.data(), "NAME"), kDcHelperNullArgument);
  EXPECT_EQ(log.take(), (Lines{"NAME - null argument passed", "NAME - null argument passed",
                               "NAME - nothing to do"}));
  EXPECT_EQ(libParseFields((dir_ / "missing").string().c_str(), table.data()), kDcOpenFailed);
}

TEST_F(ReadingFields, AnOpenFileIsReadFromItsBeginning) {
  const Bytes bytes = dicomFile(DataSetBytes().text(0x00100020, "LO", "ID").take(), kCtImage,
                                "1.2.3", kExplicitLittleUid);
  writeBytes(dir_ / "file", bytes);
  DcFile file;
  ASSERT_TRUE(file.open(name().c_str(), DcFile::Mode::Read));
  ASSERT_TRUE(file.seek(100));
  auto table = requests({0x00100020});
  EXPECT_EQ(libParseFields(&file, table.data(), "NAME"), kDcOk);
  EXPECT_EQ(textOf(table[0]), "ID");
}

}  // namespace
}  // namespace quillon::test
