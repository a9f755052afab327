#include "disc/tarnimapiutil.h"
#include "disc_test_support.h"
#include "support/com_class.h"

namespace quillon {
namespace {

using test::composed;
using test::errorOf;
using test::errorWithoutLine;
using test::kAccessDenied;
using test::resultOf;

class Wrappers : public test::WithDiscService {};

TEST_F(Wrappers, ComposeTheTextOfAFailingCall) {
  const std::string eject = "CDiscRecorder2::EjectMedia";
  struct {
    const char* what;
    test::Fault fault;
    std::string expected;
  } cases[] = {
      {"a positive result is success", {.result = S_FALSE}, ""},
      {"a result with a sentence of its own",
       {.result = resultOf(0xC0AA0202)},
       composed(eject, {"There is no media in the device."})},
      {"the platform's description does not add to it",
       {.result = resultOf(0xC0AAB131), .description = OLESTR("Too deep.")},
       composed(eject, {"ISO9660 is limited to 8 levels of directories."})},
      {"another result, with a description",
       {.result = E_ACCESSDENIED, .description = OLESTR("The tray is stuck.")},
       composed(eject, {"The tray is stuck.", kAccessDenied})},
      {"another result", {.result = E_ACCESSDENIED}, composed(eject, {kAccessDenied})},
      {"a result without any text", {.result = resultOf(0xA0001234)}, composed(eject, {})},
      {"a throwing call",
       {.result = E_ACCESSDENIED, .description = OLESTR("The tray is stuck."), .throws = true},
       composed(eject, {"The tray is stuck.", kAccessDenied}, "threw an exception")},
  };
  for (auto& c : cases) {
    SCOPED_TRACE(c.what);
    CDiscRecorder2 recorder;
    ASSERT_TRUE(recorder.InitializeDiscRecorder(Text(OLESTR("drive-1"))));
    SetErrorInfo(0, test::errorObject(OLESTR("An earlier failure.")).Get());
    c.fault.call = "IDiscRecorder2::EjectMedia";
    service_.faults = {c.fault};
    recorder.SetDetailedMessages(false);  // makes no difference here
    EXPECT_EQ(recorder.EjectMedia(), c.expected.empty());
    EXPECT_EQ(errorWithoutLine(recorder), c.expected);
    EXPECT_EQ(recorder.GetLastResult(), c.fault.result);
  }
}

TEST_F(Wrappers, ComposeTheTextOfAFailingCreation) {
  struct {
    test::Fault fault;
    std::vector<std::string> sentences;
  } cases[] = {
      {{.result = REGDB_E_CLASSNOTREG},
       {test::systemSentence(REGDB_E_CLASSNOTREG, "Class not registered")}},
      {{.result = E_ACCESSDENIED, .description = OLESTR("The service is not for guests.")},
       {"The service is not for guests.", kAccessDenied}},
  };
  for (auto& c : cases) {
    SetErrorInfo(0, test::errorObject(OLESTR("An earlier failure.")).Get());
    c.fault.call = "Create MsftDiscRecorder2";
    service_.faults = {c.fault};
    CDiscRecorder2 recorder;
    EXPECT_FALSE(recorder.EjectMedia());
    EXPECT_EQ(errorWithoutLine(recorder), composed("CDiscRecorder2::Create", c.sentences));
  }
}

// What another object hands out, when none has.
TEST_F(Wrappers, SayWhatTheyDoNotHave) {
  const test::HiddenClass noResult(CLSID_FileSystemImageResult);
  const test::HiddenClass noDirectory(CLSID_FsiDirectoryItem);
  CDiscMaster2Iterator drives;
  CFileSystemImageResult result;
  CFsiDirectoryItem directory;
  CImapiImageStream stream;
  STATSTG stat{};
  const struct {
    const char* object;
    const CImapiItem& wrapper;
    bool succeeded;
  } cases[] = {
      {"disc master iterator", drives, drives.Next()},
      {"file system image result", result, result.GetImageStream(stream)},
      {"file system directory item", directory, directory.AddTree(Text(OLESTR("/a")), true)},
      {"stream", stream, stream.Stat(&stat, STATFLAG_NONAME)},
  };
  for (const auto& c : cases) {
    EXPECT_FALSE(c.succeeded);
    const std::string start =
        "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\nCannot create the " +
        std::string(c.object) + " object for this reason:\n\n";
    EXPECT_TRUE(errorWithoutLine(c.wrapper).starts_with(start)) << errorOf(c.wrapper);
  }
}

TEST_F(Wrappers, NeedAPlaceForTheStatisticsOfAStream) {
  CFileSystemImage image;
  CFileSystemImageResult result;
  CImapiImageStream stream;
  ASSERT_TRUE(image.CreateResultImage(result) && result.GetImageStream(stream));
  EXPECT_FALSE(stream.Stat(nullptr, STATFLAG_NONAME));
  EXPECT_EQ(errorOf(stream), "The buffer to copy stream statistics into is invalid.");
  EXPECT_EQ(service_.CountOf("IStream::Stat"), 0);
}

TEST_F(Wrappers, TellOneFailingLineFromAnother) {
  FailCall("IDiscRecorder2::EjectMedia");
  FailCall("IDiscRecorder2::ReleaseExclusiveAccess");
  CDiscRecorder2 recorder;
  const auto line = [&] {
    const std::string text = errorOf(recorder);
    return text.substr(0, text.find("Method: "));
  };
  EXPECT_FALSE(recorder.EjectMedia());
  const std::string first = line();
  EXPECT_FALSE(recorder.ReleaseExclusiveAccess());
  EXPECT_NE(line(), first);
}

TEST_F(Wrappers, EnumerateDrivesOnce) {
  service_.drives.push_back({.uniqueId = OLESTR("drive-2")});
  CDiscMaster2 master;
  CDiscMaster2Iterator drives;
  ASSERT_TRUE(master.GetDiscDevices(drives));
  const IEnumVARIANT* const held = drives.Get();
  EXPECT_FALSE(master.GetDiscDevices(drives));
  EXPECT_EQ(errorOf(master), "The current iterator is already valid.");
  EXPECT_EQ(drives.Get(), held);
  Text id;
  EXPECT_TRUE(drives.Next());
  EXPECT_TRUE(drives.Next());
  drives.GetCurrentUniqueId(id);
  EXPECT_EQ(id, OLESTR("drive-2"));
  EXPECT_FALSE(drives.Next());
  EXPECT_FALSE(drives.AtFailure());
  EXPECT_EQ(errorOf(drives), "");
}

}  // namespace
}  // namespace quillon
