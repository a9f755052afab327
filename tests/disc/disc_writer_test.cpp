#include "disc/disc_writer.h"

#include <functional>

#include "disc_test_support.h"

namespace quillon {
namespace {

using test::driveFailure;
using test::errorOf;
using test::errorWithoutLine;
using test::kFakeDriveName;

constexpr std::uint64_t kStagedBytes = 5000;
constexpr std::uint64_t kImageBytes = 6144;  // three sectors

class DiscWriter : public test::WithDiscService {
 protected:
  DiscWriter() {
    test::writeText(dir_ / "DICOMDIR", std::string(kStagedBytes, 'x'));
    std::filesystem::create_directory(dir_ / "empty");
  }

  [[nodiscard]] Text Staged() const { return test::WideOf(dir_.path()); }
  std::unique_ptr<CTarnDiscWriter> NewWriter() const {
    auto writer = std::make_unique<CTarnDiscWriter>();
    EXPECT_TRUE(writer->SetRecorderUniqueId(OLESTR("drive-1")));
    EXPECT_TRUE(writer->AddDirectory(Staged(), false, false));
    return writer;
  }
  [[nodiscard]] const test::FakeDrive& Drive() const { return service_.drives.front(); }
  // "full" or "quick" for an erased disc, "burned" for one that holds the image.
  std::string DiscContent() {
    const test::FakeDisc& disc = service_.Disc();
    return disc.erase + (disc.burnedBytes != 0 ? "burned" : "");
  }

  test::TempDir dir_;
};

TEST_F(DiscWriter, WritesTheStagedDirectory) {
  const auto writer = NewWriter();
  EXPECT_TRUE(writer->AddDirectory(Staged() + OLESTR(" "), false, false)) << "is there already";
  EXPECT_EQ(writer->StagedCount(), 1U);
  ASSERT_TRUE(writer->Write()) << errorOf(*writer);
  EXPECT_EQ(service_.Disc().burnedBytes, kImageBytes);
  EXPECT_EQ(DiscContent(), "burned");
  EXPECT_TRUE(Drive().isEjected);
  EXPECT_EQ(Drive().lockedBy, OLESTR(""));
  using Trees = std::vector<std::pair<std::string, bool>>;
  EXPECT_EQ(service_.trees, (Trees{{dir_.path().string(), false}}));
  EXPECT_EQ(service_.volumeName, OLESTR("Quillon"));
  EXPECT_EQ(service_.formatClient, OLESTR("Quillon"));
  EXPECT_EQ(service_.fileSystems, 7);
  EXPECT_TRUE(service_.isStrict);
  EXPECT_EQ(service_.askedSpeed, -1);
  EXPECT_GT(service_.liveObjects, 0) << "they stay until the writer goes";
}

TEST_F(DiscWriter, ErasesOnlyARewritableDiscThatHoldsData) {
  struct Case {
    const char* what;
    test::FakeDisc disc;
    bool fullErase;
    const char* content;
  };
  test::FakeDisc blank = test::rewritableDiscWithData();
  blank.isHeuristicallyBlank = true;
  blank.freeSectors = 1000;
  test::FakeDisc appendable;
  appendable.isPhysicallyBlank = appendable.isHeuristicallyBlank = false;
  const Case cases[] = {{"with data", test::rewritableDiscWithData(), true, "fullburned"},
                        {"quickly", test::rewritableDiscWithData(), false, "quickburned"},
                        {"blank", blank, true, "burned"},
                        {"write-once, with data", appendable, true, "burned"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    service_.Disc() = c.disc;
    const auto writer = NewWriter();
    writer->SetPerformFullErase(c.fullErase);
    writer->SetEjectAfterWrite(false);
    EXPECT_TRUE(writer->Write()) << errorOf(*writer);
    EXPECT_EQ(DiscContent(), c.content);
    EXPECT_FALSE(Drive().isEjected);
    EXPECT_EQ(Drive().lockedBy, OLESTR(""));
  }
  EXPECT_EQ(service_.CountOf("Create MsftDiscFormat2Erase"), 2);
}

// One row for each way in which a step fails.
struct StepCase {
  const char* what;
  std::function<void(test::FakeDiscService&)> arrange;
  std::string expected;
  const char* content = "";
};

// The call fails once it was made skip times before.
std::function<void(test::FakeDiscService&)> failing(const char* call, int skip = 0) {
  return [=](test::FakeDiscService& service) {
    service.faults = {{.call = call, .result = test::kDriveFailure, .skip = skip}};
  };
}

std::string forDevice(const std::string& before, const std::string& after = ".") {
  return before + kFakeDriveName + after;
}

class DiscWriterSteps : public DiscWriter {
 protected:
  // Writes to disc with each of the faults, and looks at what is left.
  void ExpectEachToFail(const test::FakeDisc& disc, const std::vector<StepCase>& cases) {
    for (const StepCase& c : cases) {
      SCOPED_TRACE(c.what);
      const int liveBefore = service_.liveObjects;
      service_.drives = {test::FakeDrive{}};
      service_.Disc() = disc;
      service_.faults.clear();
      service_.imageBytes.reset();
      c.arrange(service_);
      const auto writer = NewWriter();
      EXPECT_FALSE(writer->Write());
      EXPECT_EQ(errorWithoutLine(*writer), c.expected);
      EXPECT_EQ(service_.liveObjects, liveBefore) << "every object is released";
      EXPECT_EQ(writer->StagedCount(), 0U);
      EXPECT_EQ(Drive().lockedBy, OLESTR("")) << "the drive is unlocked";
      EXPECT_EQ(DiscContent(), c.content);
    }
  }
};

TEST_F(DiscWriterSteps, FailToPrepareARecorder) {
  ExpectEachToFail(
      test::FakeDisc{},
      {{"no master", failing("Create MsftDiscMaster2"),
        "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\nCannot create the disc master object "
        "for this reason:\n\n" +
            test::kDriveFailureText + "\n\n"},
       {"no enumerator", failing("IDiscMaster2::get__NewEnum"),
        driveFailure("CDiscMaster2::GetDiscDevices")},
       {"no next drive", failing("IEnumVARIANT::Next"), driveFailure("CDiscMaster2Iterator::Next")},
       {"another drive", [](auto& s) { s.drives.front().uniqueId = OLESTR("drive-2"); },
        "Cannot find the recorder corresponding to the unique identifier drive-1."},
       {"unreadable", failing("IDiscRecorder2::get_ProductId"),
        driveFailure("CDiscRecorder2::GetProductId")},
       {"medium unreadable", failing("IDiscFormat2Data::get_CurrentMediaStatus"),
        driveFailure("CDiscFormat2Data::GetCurrentMediaStatus")},
       {"no recorder", [](auto& s) { s.drives.front().isRecorder = false; },
        forDevice("The ", " is not an optical disc recorder.")},
       {"gone", failing("IDiscRecorder2::InitializeDiscRecorder", 1),
        driveFailure("CDiscRecorder2::InitializeDiscRecorder")}});
}

TEST_F(DiscWriterSteps, FailToErase) {
  ExpectEachToFail(
      test::rewritableDiscWithData(),
      {{"no eraser", failing("Create MsftDiscFormat2Erase"),
        "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\nCannot create the disc data eraser "
        "object for this reason:\n\n" +
            test::kDriveFailureText + "\n\n"},
       {"support unknown", failing("IDiscFormat2Erase::IsRecorderSupported"),
        driveFailure("CDiscFormat2Erase::IsRecorderSupported")},
       {"drive cannot erase", [](auto& s) { s.drives.front().canErase = false; },
        forDevice("The ", " is does not support erasing media.")},
       {"client", failing("IDiscFormat2Erase::put_ClientName"),
        driveFailure("CDiscFormat2Erase::SetClientName")},
       {"lock", failing("IDiscRecorder2::AcquireExclusiveAccess", 1),
        driveFailure("CDiscRecorder2::AcquireExclusiveAccess")},
       {"recorder", failing("IDiscFormat2Erase::put_Recorder"),
        driveFailure("CDiscFormat2Erase::SetRecorder")},
       {"media unknown", failing("IDiscFormat2Erase::IsCurrentMediaSupported"),
        driveFailure("CDiscFormat2Erase::IsCurrentMediaSupported")},
       {"cannot be erased", [](auto& s) { s.Disc().isErasable = false; },
        forDevice("The current media in the ", " is not eraseable.")},
       {"physically blank?", failing("IDiscFormat2Erase::get_MediaPhysicallyBlank"),
        driveFailure("CDiscFormat2Erase::GetMediaPhysicallyBlank")},
       {"heuristically blank?", failing("IDiscFormat2Erase::get_MediaHeuristicallyBlank"),
        driveFailure("CDiscFormat2Erase::GetMediaHeuristicallyBlank")},
       {"kind of erase", failing("IDiscFormat2Erase::put_FullErase"),
        driveFailure("CDiscFormat2Erase::SetFullErase")},
       {"erase", failing("IDiscFormat2Erase::EraseMedia"),
        driveFailure("CDiscFormat2Erase::EraseMedia")},
       {"unlock", failing("IDiscRecorder2::ReleaseExclusiveAccess", 1),
        driveFailure("CDiscRecorder2::ReleaseExclusiveAccess"), "full"},
       {"erase and unlock",
        [](auto& s) {
          s.faults = {{.call = "IDiscFormat2Erase::EraseMedia", .result = E_ACCESSDENIED},
                      {.call = "IDiscRecorder2::ReleaseExclusiveAccess",
                       .result = test::kDriveFailure,
                       .skip = 1}};
        },
        test::composed("CDiscFormat2Erase::EraseMedia", {test::kAccessDenied})}});
}

TEST_F(DiscWriterSteps, FailToSetUpTheFormat) {
  ExpectEachToFail(
      test::FakeDisc{},
      {{"no format", failing("Create MsftDiscFormat2Data", 1),
        "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\nCannot create the disc data format "
        "object for this reason:\n\n" +
            test::kDriveFailureText + "\n\n"},
       {"support unknown", failing("IDiscFormat2Data::IsRecorderSupported", 1),
        driveFailure("CDiscFormat2Data::IsRecorderSupported")},
       {"media unknown", failing("IDiscFormat2Data::IsCurrentMediaSupported", 1),
        driveFailure("CDiscFormat2Data::IsCurrentMediaSupported")},
       {"media not supported", [](auto& s) { s.Disc().isSupported = false; },
        forDevice("The current media in the ", " is not writeable.")},
       {"recorder", failing("IDiscFormat2Data::put_Recorder", 1),
        driveFailure("CDiscFormat2Data::SetRecorder")},
       {"client", failing("IDiscFormat2Data::put_ClientName"),
        driveFailure("CDiscFormat2Data::SetClientName")},
       {"no image", failing("Create MsftFileSystemImage"),
        "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\nCannot create the file system image "
        "object for this reason:\n\n" +
            test::kDriveFailureText + "\n\n"},
       {"limit", failing("IFileSystemImage::SetMaxMediaBlocksFromDevice"),
        driveFailure("CFileSystemImage::SetMaxMediaBlocksFromDevice")},
       {"strictness", failing("IFileSystemImage::put_StrictFileSystemCompliance"),
        driveFailure("CFileSystemImage::SetStrictFileSystemCompliance")},
       {"file systems", failing("IFileSystemImage::put_FileSystemsToCreate"),
        driveFailure("CFileSystemImage::SetFileSystemsToCreate")},
       {"defaults", failing("IFileSystemImage::ChooseImageDefaults"),
        driveFailure("CFileSystemImage::ChooseImageDefaults")},
       {"volume name", failing("IFileSystemImage::put_VolumeName"),
        driveFailure("CFileSystemImage::SetVolumeName")}});
}

TEST_F(DiscWriterSteps, FailToBuildTheImage) {
  ExpectEachToFail(
      test::FakeDisc{},
      {{"root", failing("IFileSystemImage::get_Root"), driveFailure("CFileSystemImage::GetRoot")},
       {"staging", failing("IFileSystemImage::put_StageFiles"),
        driveFailure("CFileSystemImage::SetStageFiles")},
       {"tree", failing("IFsiDirectoryItem::AddTree"), driveFailure("CFsiDirectoryItem::AddTree")},
       {"free space unknown", failing("IDiscFormat2Data::get_FreeSectorsOnMedia", 1),
        driveFailure("CDiscFormat2Data::GetFreeSectorsOnMedia")},
       {"no free space", [](auto& s) { s.Disc().freeSectors = 0; },
        forDevice("There is no free space on the current media in the ")},
       {"too little", [](auto& s) { s.Disc().freeSectors = 2; },
        forDevice("The disc image size exceeds the capacity of the current media in the ")},
       {"result", failing("IFileSystemImage::CreateResultImage"),
        driveFailure("CFileSystemImage::CreateResultImage")},
       {"stream", failing("IFileSystemImageResult::get_ImageStream"),
        driveFailure("CFileSystemImageResult::GetImageStream")}});
}

TEST_F(DiscWriterSteps, FailToWriteTheImage) {
  ExpectEachToFail(
      test::FakeDisc{},
      {{"speed", failing("IDiscFormat2Data::SetWriteSpeed"),
        driveFailure("CDiscFormat2Data::SetWriteSpeed")},
       {"client", failing("IDiscFormat2Data::put_ClientName", 1),
        driveFailure("CDiscFormat2Data::SetClientName")},
       {"size unknown", failing("IStream::Stat"), driveFailure("CImapiImageStream::Stat")},
       {"nothing in it", [](auto& s) { s.imageBytes = 0; },
        "There is no data in the disc image stream."},
       {"medium unreadable", failing("IDiscFormat2Data::get_CurrentMediaStatus", 1),
        driveFailure("CDiscFormat2Data::GetCurrentMediaStatus")},
       {"free space unknown", failing("IDiscFormat2Data::get_FreeSectorsOnMedia", 3),
        driveFailure("CDiscFormat2Data::GetFreeSectorsOnMedia")},
       {"a byte too large", [](auto& s) { s.imageBytes = 1000 * 2048 + 1; },
        forDevice("The disc image size exceeds the capacity of the current media in the ")},
       {"no speed", [](auto& s) { s.Disc().currentSpeed = 0; },
        "The write speed value is invalid."},
       {"lock", failing("IDiscRecorder2::AcquireExclusiveAccess", 2),
        driveFailure("CDiscRecorder2::AcquireExclusiveAccess")},
       {"write", failing("IDiscFormat2Data::Write"), driveFailure("CDiscFormat2Data::Write")},
       {"eject", failing("IDiscRecorder2::EjectMedia"), driveFailure("CDiscRecorder2::EjectMedia"),
        "burned"},
       {"unlock", failing("IDiscRecorder2::ReleaseExclusiveAccess", 2),
        driveFailure("CDiscRecorder2::ReleaseExclusiveAccess"), "burned"},
       {"write and unlock",
        [](auto& s) {
          s.faults = {{.call = "IDiscFormat2Data::Write", .result = E_ACCESSDENIED},
                      {.call = "IDiscRecorder2::ReleaseExclusiveAccess",
                       .result = test::kDriveFailure,
                       .skip = 2}};
        },
        test::composed("CDiscFormat2Data::Write", {test::kAccessDenied})}});
}

TEST_F(DiscWriter, LeavesNothingBehindWhicheverCallFails) {
  const test::FakeDisc disc = test::rewritableDiscWithData();
  service_.Disc() = disc;
  ASSERT_TRUE(NewWriter()->Write());
  const std::vector<std::string> calls = service_.calls;
  service_.failingResult = test::kDriveFailure;
  for (int n = 0; n < static_cast<int>(calls.size()); ++n) {
    SCOPED_TRACE(testing::Message() << "call " << n << ": " << calls[static_cast<std::size_t>(n)]);
    service_.Disc() = disc;
    service_.calls.clear();
    service_.failingCall = n;
    const auto writer = NewWriter();
    EXPECT_FALSE(writer->Write());
    EXPECT_NE(errorOf(*writer).find(test::kDriveFailureText), std::string::npos);
    EXPECT_EQ(service_.liveObjects, 0);
    EXPECT_EQ(writer->StagedCount(), 0U);
    EXPECT_EQ(Drive().lockedBy, OLESTR(""));
  }
}

TEST_F(DiscWriter, ReleasesInTheReverseOrderOfUse) {
  service_.Disc() = test::rewritableDiscWithData();
  FailCall("IDiscRecorder2::EjectMedia");
  EXPECT_FALSE(NewWriter()->Write());
  const std::vector<std::string> expected = {
      "IFileSystemImageResult", "IFileSystemImage", "IDiscFormat2Data", "IDiscFormat2Erase",
      "IDiscRecorder2",         "IDiscMaster2",     "IStream"};
  ASSERT_GE(service_.released.size(), expected.size());
  const auto tail = service_.released.end() - static_cast<std::ptrdiff_t>(expected.size());
  EXPECT_EQ(std::vector<std::string>(tail, service_.released.end()), expected);
}

TEST_F(DiscWriter, AcceptsAnImageThatFillsTheDisc) {
  service_.imageBytes = std::uint64_t{1000} * 2048;
  EXPECT_TRUE(NewWriter()->Write());
  EXPECT_EQ(service_.Disc().burnedBytes, *service_.imageBytes);
}

TEST_F(DiscWriter, ChecksTheRecorderIdentifierBeforeAnything) {
  struct Case {
    Text identifier;
    std::int32_t type;
    const char* expected;
  };
  const Case cases[] = {
      {OLESTR("drive-1"), 5, "The recorder identifier type is invalid."},
      {OLESTR("drive-1"), -1, "The recorder identifier type is invalid."},
      {OLESTR(""), 2, "The information used to select the recorder for recording is invalid."}};
  for (const Case& c : cases) {
    const auto writer = NewWriter();
    writer->SetRecorderIdentifier(c.identifier, c.type);
    EXPECT_FALSE(writer->Write());
    EXPECT_EQ(errorOf(*writer), c.expected);
    EXPECT_EQ(writer->StagedCount(), 1U) << "nothing was begun";
  }
  const char* const labels[] = {"legacy device number 9", "manufacturer 9", "unique identifier 9",
                                "volume path 9", "volume name 9"};
  for (std::int32_t type = 0; type < 5; ++type) {
    const auto writer = NewWriter();
    writer->SetRecorderIdentifier(OLESTR("9"), type);
    EXPECT_FALSE(writer->Write());
    EXPECT_EQ(errorOf(*writer),
              std::string("Cannot find the recorder corresponding to the ") + labels[type] + ".");
  }
  CTarnDiscWriter writer;
  EXPECT_FALSE(writer.SetRecorderUniqueId(OLESTR("")));
  EXPECT_EQ(errorOf(writer), "The given unique identifier is invalid.");
}

TEST_F(DiscWriter, RefusesToRecordNothing) {
  struct Case {
    const char* what;
    std::vector<std::pair<Text, bool>> directories;  // with "excluded"
    const char* expected;
  };
  const Text empty = test::WideOf(dir_ / "empty");
  const Text missing = test::WideOf(dir_ / "missing");
  const char* const nothing = "There are no files to add to the disc image.";
  const Case cases[] = {{"nothing staged", {}, nothing},
                        {"no files", {{empty, false}}, nothing},
                        {"excluded", {{Staged(), true}}, nothing},
                        {"cannot be measured", {{missing, false}}, nothing}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    CTarnDiscWriter writer;
    EXPECT_TRUE(writer.SetRecorderUniqueId(OLESTR("drive-1")));
    for (const auto& [path, excluded] : c.directories) {
      EXPECT_TRUE(writer.AddDirectory(path, false, excluded));
    }
    const std::filesystem::path before = std::filesystem::current_path();
    EXPECT_FALSE(writer.Write());
    EXPECT_EQ(errorOf(writer), c.expected);
    EXPECT_EQ(std::filesystem::current_path(), before);
    EXPECT_EQ(DiscContent(), "");
  }
}

TEST_F(DiscWriter, StagesDirectories) {
  CTarnDiscWriter writer;
  EXPECT_FALSE(writer.AddDirectory(OLESTR("  "), false, false));
  EXPECT_EQ(errorOf(writer),
            "The directory name cannot be processed by the directory information list for the "
            "directory.");
  CImapi2DirItem missing(false, false);
  ASSERT_TRUE(missing.SetPath(OLESTR(" /no/such/place ")));
  EXPECT_EQ(missing.MeasureBytes(), 0U);
  EXPECT_EQ(errorOf(missing),
            "The directory name cannot be processed for the source directory /no/such/place.");
  CImapi2DirItemList list(/*allowDuplicates=*/false);
  ASSERT_TRUE(list.Stage(missing));
  CImapi2DirItem* found = nullptr;
  EXPECT_TRUE(list.Find(CImapi2DirItemList::Search::ByKey, OLESTR(" 1 "), found));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->Path(), OLESTR("/no/such/place"));
  EXPECT_FALSE(list.Find(static_cast<CImapi2DirItemList::Search>(2), OLESTR("1"), found));
  EXPECT_EQ(errorOf(list), "The search query for item lookup is invalid.");
}

TEST_F(DiscWriter, StagesFilesWhereTheImageBuilderCan) {
  const auto writer = NewWriter();
  writer->SetStageFiles(true, OLESTR("/staging"));
  EXPECT_TRUE(writer->Write());
  EXPECT_EQ(service_.workingDirectory, OLESTR("/staging"));
  service_.Disc() = test::FakeDisc{};
  service_.faults = {{.call = "IFileSystemImage::put_StageFiles", .result = E_NOTIMPL}};
  EXPECT_TRUE(NewWriter()->Write());
  service_.Disc() = test::FakeDisc{};
  service_.faults = {{.call = "IDiscFormat2Data::SetWriteSpeed", .result = S_IMAPI_SPEEDADJUSTED}};
  EXPECT_TRUE(NewWriter()->Write()) << "an adjusted speed is success";
}

TEST_F(DiscWriter, AsksABusyDriveTenTimes) {
  struct Case {
    const char* call;
    int skip;
    const char* operation;
  };
  const Case cases[] = {
      {"IDiscRecorder2::InitializeDiscRecorder", 1, "CDiscRecorder2::InitializeDiscRecorder"},
      {"IDiscFormat2Erase::IsRecorderSupported", 0, "CDiscFormat2Erase::IsRecorderSupported"},
      {"IDiscFormat2Data::IsRecorderSupported", 1, "CDiscFormat2Data::IsRecorderSupported"},
      {"IFileSystemImage::get_Root", 0, "CFileSystemImage::GetRoot"},
      {"IDiscFormat2Data::SetWriteSpeed", 0, "CDiscFormat2Data::SetWriteSpeed"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.operation);
    for (const bool becomesReady : {true, false}) {
      service_.Disc() = test::rewritableDiscWithData();
      service_.calls.clear();
      sleeps_.waitsMs.clear();
      service_.faults = {{.call = c.call,
                          .result = E_IMAPI_RECORDER_MEDIA_BECOMING_READY,
                          .skip = c.skip,
                          .times = becomesReady ? 9 : INT_MAX}};
      const auto writer = NewWriter();
      EXPECT_EQ(writer->Write(), becomesReady);
      EXPECT_EQ(sleeps_.waitsMs, std::vector<DWORD>(becomesReady ? 9 : 10, 5000));
      if (becomesReady) continue;
      EXPECT_EQ(service_.CountOf(c.call), c.skip + 10);
      EXPECT_EQ(errorWithoutLine(*writer),
                test::composed(c.operation, {"The drive reported that it is in the process of "
                                             "becoming ready. Please try the request again "
                                             "later."}));
    }
  }
}

TEST_F(DiscWriter, AnswersWithADriveOfTheList) {
  struct Case {
    const char* what;
    std::int32_t index;
    std::function<void(test::FakeDiscService&)> arrange;
    std::string expected;
  };
  const auto nothing = [](test::FakeDiscService&) {};
  const Case cases[] = {
      {"the first", 0, nothing, ""},
      {"before the first", -1, nothing, "The index number for the requested recorder is invalid."},
      {"past the last", 1, nothing,
       "The index number for the requested recorder exceeds the total number of recorders "
       "present."},
      {"no drive", 0, [](auto& s) { s.drives.clear(); }, "There is no recordable drive present."},
      {"no recorder", 0, [](auto& s) { s.drives.front().isRecorder = false; },
       "There is no recordable drive present."},
      {"no environment", 0, [](auto& s) { s.isSupportedEnvironment = false; },
       "There is no recordable drive present."},
      {"a failure", 0, failing("IDiscRecorder2::get_VendorId"),
       driveFailure("CDiscRecorder2::GetVendorId")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    service_.drives = {test::FakeDrive{}};
    service_.faults.clear();
    service_.isSupportedEnvironment = true;
    c.arrange(service_);
    const auto writer = NewWriter();
    CDiscUnitInfo recorder;
    EXPECT_EQ(writer->GetRecorder(recorder, c.index, true, true, true), c.expected.empty());
    EXPECT_EQ(errorWithoutLine(*writer), c.expected);
    EXPECT_EQ(recorder.CurrentMedia().IsBlank(), c.expected.empty());
    EXPECT_EQ(writer->StagedCount(), 1U) << "the staged directories stay";
  }
}

}  // namespace
}  // namespace quillon
