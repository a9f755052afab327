#include "dicom/parse_fields.h"

#include <algorithm>

#include "dicom/file.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Status = DcFieldStatus;

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

class ReadingFields : public ToolkitTest {
 protected:
  DcCode read(const Bytes& bytes, std::vector<DcFieldRequest>& table, bool readPixelLength = true) {
    writeBytes(name(), bytes);
    return libParseFields(name().c_str(), table.data(), readPixelLength);
  }
  // The same with a file of this data set.
  DcCode readDataSet(const Bytes& dataSet, std::vector<DcFieldRequest>& table,
                     std::string_view syntaxUid = kExplicitLittleUid) {
    return read(dicomFile(dataSet, kCtImage, "1.2.3", syntaxUid), table);
  }
  [[nodiscard]] std::string name() const { return (dir_ / "file").string(); }
};

TEST_F(ReadingFields, ValuesAreAnsweredWithLengthAndOffset) {
  for (const NamedSyntax& s : kSyntaxes) {
    SCOPED_TRACE(s.name);
    DataSetBytes dataSet(s.syntax);
    dataSet.text(0x00080005, "CS", "A").raw(0x00091010, "OB", Bytes(100'000, 1));
    const std::size_t nameAt = dataSet.bytes().size();
    dataSet.text(0x00100010, "PN", "DOE^J").text(0x00104000, "LT", std::string(257, 'x'));
    dataSet.text(0x00204000, "LT", std::string(256, 'y')).raw(0x00282000, "OB", Bytes(300, 'z'));
    const Bytes dataSetBytes = dataSet.take();
    const Bytes file = dicomFile(dataSetBytes, kCtImage, "1.2.3", s.uid);
    const std::size_t dataSetAt = file.size() - dataSetBytes.size();
    auto table = requests({0x00020003, 0x00020016, 0x00080008, 0x00100010, 0x00104000, 0x00204000,
                           0x00282000, 0x00400001});
    ASSERT_EQ(read(file, table), kDcOk);
    const struct {
      Status status;
      std::uint32_t lengthBytes;
      std::string kept;
    } expected[] = {{Status::Found, 6, std::string("1.2.3\0", 6)},
                    {Status::NotFound, 0, ""},  // not in the meta group
                    {Status::NotFound, 0, ""},
                    {Status::Found, 6, "DOE^J "},
                    {Status::FoundCut, 258, std::string(256, 'x')},
                    {Status::Found, 256, std::string(256, 'y')},
                    {Status::FoundCut, 300, std::string(256, 'z')},
                    {Status::NotFound, 0, ""}};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(table[i].status, expected[i].status);
      EXPECT_EQ(table[i].lengthBytes, expected[i].lengthBytes);
      EXPECT_EQ(textOf(table[i]), expected[i].kept);
    }
    EXPECT_EQ(table[2].offsetInFile, ~0ULL);
    EXPECT_EQ(table[3].offsetInFile, dataSetAt + nameAt);
  }
}

TEST_F(ReadingFields, ABareDataSetIsImplicit) {
  auto table = requests({0x00100020});
  ASSERT_EQ(read(DataSetBytes(Syntax::ImplicitLittle).text(0x00100020, "LO", "ID").take(), table),
            kDcOk);
  EXPECT_EQ(textOf(table[0]), "ID");
}

TEST_F(ReadingFields, RequestsInsideSequencesAreAnsweredButTheTopLevelDecides) {
  for (const NamedSyntax& s : kSyntaxes) {
    for (const bool undefined : {false, true}) {
      // In the implicit form only what has an undefined length is seen to be a sequence.
      if (s.syntax == Syntax::ImplicitLittle && !undefined) continue;
      SCOPED_TRACE(testing::Message() << s.name << ", undefined " << undefined);
      DataSetBytes dataSet(s.syntax);
      dataSet.beginSequence(0x00081250, undefined).beginItem(undefined);
      dataSet.text(0x00100020, "LO", "NESTED").text(0x0020000D, "UI", "1.9");
      dataSet.text(0x00400001, "AE", "FIRST").raw(kPixelData, "OB", {7, 7}).endItem();
      dataSet.beginItem(undefined).text(0x00400001, "AE", "SECOND").endItem().endSequence();
      dataSet.text(0x00100020, "LO", "TOP").raw(kPixelData, "OB", {1, 2});
      auto table =
          requests({0x00080018, 0x00081250, 0x00100020, 0x0020000D, 0x00400001, kPixelData});
      ASSERT_EQ(readDataSet(dataSet.take(), table, s.uid), kDcOk);
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
  auto table = requests({kPixelData, 0xFFFCFFFC});
  ASSERT_EQ(readDataSet(dataSet, table, kJpegUid), kDcOk);
  EXPECT_EQ(table[0].status, Status::FoundCut);
  EXPECT_EQ(table[0].lengthBytes, 8U + 8 + 300);
  EXPECT_EQ(table[0].value[3], 0xE0);  // the first item's tag
  EXPECT_EQ(textOf(table[1]), std::string("\1\2", 2));

  // Items of an unknown VR are implicit whatever surrounds them.
  DataSetBytes items(Syntax::ImplicitLittle);
  items.beginItem(true).us(0x00280010, {1}).endItem().header(0xFFFEE0DD, "", 0);
  DataSetBytes unknown;
  unknown.header(kPrivate, "UN", 0xFFFFFFFF).append(items.take()).text(0x00100020, "LO", "ID");
  auto id = requests({0x00100020});
  ASSERT_EQ(readDataSet(unknown.take(), id), kDcOk);
  EXPECT_EQ(textOf(id[0]), "ID");
}

TEST_F(ReadingFields, TheWalkCanEndAtThePixelData) {
  const Bytes dataSet = DataSetBytes()
                            .text(0x00100020, "LO", "ID")
                            .header(kPixelData, "OB", 0xFFFFFFFF)  // and nothing behind it
                            .take();
  const Bytes file = dicomFile(dataSet, kCtImage, "1.2.3", kJpegUid);
  auto table = requests({0x00100020, kPixelData, 0xFFFCFFFC});
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
  const auto set = [] { return DataSetBytes(); };
  constexpr unsigned kFirst = 10;  // bytes of the first element
  const struct {
    const char* what;
    Bytes behindFirst;
    const char* message;
    unsigned offset = 0;
  } cases[] = {
      {"half a header", hexBytes("080018"), "' - read error at offset 0x%x", kFirst},
      {"half a long header", hexBytes("0800 4011 5351 0000 01"),
       "' - error reading Value Length of Tag 00081140"},
      {"wanted value cut", set().header(0x00100020, "LO", 4).append({'I'}).take(),
       "' - read error at offset 0x%x", kFirst + 8},
      {"pixel data without its end",
       set().header(kPrivate, "OB", 0xFFFFFFFF).header(0xFFFEE000, "", 0).take(),
       "' - missing OB/OW terminator of Tag 00091010"},
      {"no item", set().beginSequence(0x00081140).us(0x00280010, {1}).endSequence().take(),
       "' - invalid data, offset - 0x%x", kFirst + 12},
      {"no item tag", set().beginSequence(0x00081140, true).take(),
       "' - tag read error, offset - 0x%x", kFirst + 12},
      {"half an item", set().beginSequence(0x00081140, true).append(hexBytes("FEFF00E001")).take(),
       "' - value length read error, offset - 0x%x", kFirst + 12},
      {"half a long header in an item",
       set()
           .header(0x00081140, "SQ", 0xFFFFFFFF)
           .header(0xFFFEE000, "", 0xFFFFFFFF)
           .append(hexBytes("0800 4011 5351 0000 01"))
           .take(),
       "' - value length read error, offset - 0x%x", kFirst + 20},
      {"item longer than its sequence",
       set().header(0x00081140, "SQ", 8).header(0xFFFEE000, "", 2).append({1, 2}).take(),
       "' - invalid data, offset - 0x%x", kFirst + 20},
  };
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
    EXPECT_EQ(logged(), name() + (message + 1));
  }
  for (const char* vr : {"SQ", "UN"}) {
    DataSetBytes deep;
    for (int i = 0; i < kMaxNesting + 1; ++i) {
      deep.header(0x00081140, vr, 0xFFFFFFFF).beginItem(true);
      if (vr[0] == 'U') deep = DataSetBytes(Syntax::ImplicitLittle).append(deep.take());
    }
    auto table = requests({0x00100020});
    EXPECT_EQ(readDataSet(deep.take(), table), kDcTooDeep);
    const std::string message = logged();
    EXPECT_TRUE(message.starts_with(name() + " - sequences nested deeper than 256 levels, offset"))
        << message;
  }
}

TEST_F(ReadingFields, ArgumentsAreChecked) {
  auto empty = requests({});
  auto table = requests({0x00100020});
  DcFile file;
  EXPECT_EQ(libParseFields(static_cast<DcFile*>(nullptr), table.data(), "NAME"),
            kDcHelperNullArgument);
  EXPECT_EQ(libParseFields(&file, nullptr, "NAME"), kDcHelperNullArgument);
  EXPECT_EQ(libParseFields(&file, empty.data(), "NAME"), kDcHelperNullArgument);
  EXPECT_EQ(logged(),
            "NAME - null argument passed\nNAME - null argument passed\nNAME - nothing to do");
  const std::string missing = (dir_ / "missing").string();
  EXPECT_EQ(libParseFields(missing.c_str(), table.data()), kDcOpenFailed);
  EXPECT_EQ(logged(), "Error opening file '" + missing + "'");
}

TEST_F(ReadingFields, AnOpenFileIsReadFromItsBeginning) {
  auto table = requests({0x00100020});
  const Bytes dataSet = DataSetBytes().text(0x00100020, "LO", "ID").take();
  writeBytes(name(), dicomFile(dataSet, kCtImage, "1.2.3", kExplicitLittleUid));
  DcFile file;
  ASSERT_TRUE(file.open(name().c_str(), DcFile::Mode::Read));
  ASSERT_TRUE(file.seek(100));
  EXPECT_EQ(libParseFields(&file, table.data(), "NAME"), kDcOk);
  EXPECT_EQ(textOf(table[0]), "ID");
}

}  // namespace
}  // namespace quillon::test
