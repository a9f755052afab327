// What the toolkit answers when the system fails it: files that do not open or read, no memory.
#include <array>
#include <cerrno>
#include <functional>

#include "dicom/dict.h"
#include "dicom/parse_fields.h"
#include "dicom/read_file.h"
#include "dir_test_tools.h"
#include "platform/testing.h"
#include "support/failing_calls.h"
#include "support/failing_new.h"

namespace quillon::test {
namespace {

class ReadingFaults : public ToolkitTest {
 protected:
  ReadingFaults() {
    DataSetBytes dataSet;
    dataSet.text(0x00080005, "CS", "A\\B").us(0x00280010, {5});
    dataSet.raw(0x00282000, "OB", Bytes(100'000, 1)).beginSequence(0x00400275).beginItem();
    dataSet.text(0x00400007, "LO", "step").endItem().endSequence().us(0x00400280, {1});
    writeBytes(file_, dicomFile(dataSet.take(), kCtImage, "1.2.3", kExplicitLittleUid));
  }

  const std::string file_ = (dir_ / "file").string();
  DcFileMetaInfo meta_;
};

TEST_F(ReadingFaults, AFileThatDoesNotOpenOrReadHasItsCodeAndSentence) {
  DcDirDicomDir set(nullptr);
  addSeries(set);
  ASSERT_EQ(set.write(dir_.path().string().c_str()), kDcOk);
  ASSERT_EQ(set.startEmpty(dir_.path().string().c_str()), kDcOk);
  const std::string dicomDir = dir_.path().string() + "\\DICOMDIR";
  const auto whole = [this] {
    DcElemList list;
    return dirReadFile(file_.c_str(), meta_, list);
  };
  const auto header = [this] {
    DcElemList list;
    return dirReadFile(file_.c_str(), meta_, list, nullptr, nullptr);
  };
  const auto fields = [this] {
    std::array<DcFieldRequest, 2> table;
    table[0].tag = 0x00400280;
    return libParseFields(file_.c_str(), table.data());
  };
  const struct {
    const char* what;
    std::function<std::uint32_t()> read;
    Call call;
    int nth;
    std::uint32_t code;
    std::string message;
  } cases[] = {
      {"whole file", whole, Call::Open, 1, 0x5805, "Error opening file '" + file_ + "'"},
      {"header", header, Call::Open, 1, 0x5805, "Error opening file '" + file_ + "'"},
      {"meta information", [this] { return dirReadFileMetaInfo(file_.c_str(), meta_, nullptr); },
       Call::Open, 1, 0x5805, "Error opening file '" + file_ + "'"},
      {"fields", fields, Call::Open, 1, 0x5805, "Error opening file '" + file_ + "'"},
      {"DICOMDIR", [&set] { return set.read(); }, Call::Open, 1, 0x5805,
       "Error opening file '" + dicomDir + "'\nFile '" + dicomDir + "', rc - 0x5805 "},
      {"DICOMDIR, second time", [&set] { return set.read(); }, Call::Open, 2, 0x5805,
       "Error opening file '" + dicomDir + "'"},
      {"whole file, first bytes", whole, Call::Read, 1, 0x5804,
       "Error reading fileMetaInfo at offset 0x0"},
      {"whole file, the rest", whole, Call::Read, 2, 0x5804, "Error reading file '" + file_ + "'"},
      {"fields in mid-walk", fields, Call::Read, 2, 0x4408, file_ + " - read error at offset 0x"},
      {"DICOMDIR, its bytes", [&set] { return set.read(); }, Call::Read, 2, 0x5804,
       "File '" + dicomDir + "', rc - 0x5804 "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    logged();
    {
      const FailingCall failing(c.call, c.nth, EIO);
      EXPECT_EQ(c.read(), c.code);
    }
    const std::string message = logged();
    EXPECT_TRUE(message.starts_with(c.message)) << message;
    EXPECT_EQ(c.read(), kDcOk);
  }
}

TEST_F(ReadingFaults, ADicomDirThatCannotBeLookedForIsNotMissing) {
  const std::string root = "/" + std::string(256, 'x');  // a longer name than any directory has
  const DcDirDicomDir set(root.c_str());
  EXPECT_EQ(set.initialCode(), 0x5808U);
  EXPECT_EQ(logged(), "stat error file '" + root + "\\DICOMDIR'");
}

TEST_F(ReadingFaults, WithoutAClockAUidIsTheRootAndTheCounter) {
  platform::testing::SubstituteClock([] { return SYSTEMTIME{}; });
  DcDict dict;
  std::string uid;
  dict.genUid(&uid);
  platform::testing::Restore();
  EXPECT_EQ(uid, "1.3.6.1.4.1.64021.1");
}

TEST_F(ReadingFaults, WithoutMemoryNothingIsThrownAndNothingPassesForWhole) {
  DcDirDicomDir made(nullptr);
  made.fileSetId = "SET";
  addTextKey(*addSeries(made), 0x0008103E, "a description longer than any short string");
  ASSERT_EQ(made.write(dir_.path().string().c_str()), kDcOk);
  DcElemList all;
  ASSERT_EQ(dirReadFile(file_.c_str(), meta_, all), kDcOk);
  const std::string whole = describe(all);
  logged();

  const auto isWhole = [&whole](const DcElemList& list) { return describe(list) == whole; };
  DcDirDicomDir set(nullptr);
  const struct {
    const char* what;
    std::function<std::uint32_t()> run;
    std::function<bool()> isRight;  // what kDcOk promises
    std::string sentence;           // one of those that are told
  } cases[] = {
      {"reading", [&] { return dirReadFile(file_.c_str(), meta_, all); },
       [&] { return isWhole(all) || all.lostElements(); },
       "File '" + file_ + "', unable to allocate memory"},
      {"reading the header",
       [&] { return dirReadFile(file_.c_str(), meta_, all, nullptr, nullptr); },
       [&] { return isWhole(all) || all.lostElements(); },
       "File '" + file_ + "', unable to allocate memory"},
      {"reading a DICOMDIR", [&] { return set.read(); },
       [&] {
         const DcDirRec* patient = set.lower(0);
         return set.fileSetId == "SET" && patient->lower(0)->lower(0)->size() == 1;
       },
       "File '" + dir_.path().string() + "\\DICOMDIR', unable to allocate memory"},
      {"writing a DICOMDIR", [&] { return set.write(); }, [&] { return set.lowerCount() == 1; },
       "File '" + dir_.path().string() + "/DICOMDIR', unable to allocate memory"},
  };
  static_cast<void>(set.startEmpty(dir_.path().string().c_str()));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::string told;
    const auto outcomes = withEachAllocationFailing([&](long nth, bool& happened) {
      std::uint32_t code = kDcOk;
      {
        const FailingNew failing(nth);
        code = c.run();
        happened = failing.happened();
      }
      told += logged() + "\n";
      EXPECT_TRUE(code == kDcNoMemory || (code == kDcOk && c.isRight())) << nth << ": " << code;
      return std::to_string(code);
    });
    EXPECT_TRUE(outcomes.contains(std::to_string(kDcNoMemory)));
    EXPECT_TRUE(told.find(c.sentence) != std::string::npos) << told;
    EXPECT_EQ(c.run(), kDcOk);
  }
}

TEST_F(ReadingFaults, BulkBytesThatFindNoMemoryAreNotAdded) {
  DcElem element(kPixelData, DcVr::OB);
  logged();
  {
    const FailingNew failing(1);
    EXPECT_EQ(element.addValue("abcd", 4, kExplicit), 0x1627U);
  }
  EXPECT_EQ(logged(), "unable to allocated 0x4 (4) bytes of memory");
  EXPECT_EQ(element.valueCount(), 0);
}

}  // namespace
}  // namespace quillon::test
