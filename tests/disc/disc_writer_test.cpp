#include "disc/disc_writer.h"

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
    writer->SetStageFiles(true, OLESTR("/staging"));
    return writer;
  }
  [[nodiscard]] const test::FakeDrive& Drive() const { return service_.drives.front(); }
  // "full" or "quick" for an erased disc, "burned" for one that holds the image.
  std::string DiscContent() {
    const test::FakeDisc& disc = service_.Disc();
    return disc.erase + (disc.burnedBytes != 0 ? "burned" : "");
  }

  // Writes in vain, and looks at what is left.
  void ExpectFailure(const std::string& error, const std::string& content) {
    const auto writer = NewWriter();
    EXPECT_FALSE(writer->Write());
    EXPECT_EQ(errorWithoutLine(*writer), error);
    EXPECT_EQ(service_.liveObjects, 0) << "every object is released";
    EXPECT_EQ(writer->StagedCount(), 0U);
    EXPECT_EQ(Drive().lockedBy, OLESTR("")) << "the drive is unlocked";
    EXPECT_EQ(DiscContent(), content);
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

TEST_F(DiscWriter, WritesAsToldWhateverTheDriveIsChosenBy) {
  const std::pair<RecorderIdType, Text> identifiers[] = {
      {RecorderIdType::LegacyDeviceNumber, OLESTR("0")},
      {RecorderIdType::Manufacturer, test::WideOf(kFakeDriveName)},
      {RecorderIdType::VolumePath, OLESTR("D:\\")},
      {RecorderIdType::VolumeName, OLESTR("\\\\?\\Volume{1}\\")}};
  for (const auto& [type, identifier] : identifiers) {
    SCOPED_TRACE(test::Plain(identifier));
    service_ = {};
    CTarnDiscWriter writer;
    writer.SetRecorderIdentifier(identifier, static_cast<std::int32_t>(type));
    writer.SetStrictCompliance(false);
    writer.SetRequestedWriteSpeed(1800);
    EXPECT_TRUE(writer.AddDirectory(Staged(), /*includeBaseDirectory=*/true, false));
    ASSERT_TRUE(writer.Write()) << errorOf(writer);
    EXPECT_EQ(DiscContent(), "burned");
    EXPECT_EQ(service_.trees.front(), std::pair(dir_.path().string(), true));
    EXPECT_FALSE(service_.isStrict);
    EXPECT_EQ(service_.askedSpeed, 1800);
    CDiscUnitInfo recorder;
    EXPECT_TRUE(writer.GetRecorder(recorder, 0, true, false, false));
    EXPECT_EQ(service_.liveObjects, 0) << "what the write has left is released";
  }
}

TEST_F(DiscWriter, ErasesNothingWhereTheEraserFindsNothing) {
  for (const bool unlocks : {true, false}) {
    service_ = {};
    service_.Disc() = test::rewritableDiscWithData();
    service_.Disc().isBlankToEraser = true;
    service_.Disc().freeSectors = 1000;
    if (!unlocks) FailCall("IDiscRecorder2::ReleaseExclusiveAccess", /*skip=*/1);
    const auto writer = NewWriter();
    EXPECT_EQ(writer->Write(), unlocks);
    EXPECT_EQ(errorWithoutLine(*writer),
              unlocks ? "" : driveFailure("IDiscRecorder2::ReleaseExclusiveAccess"));
    EXPECT_EQ(DiscContent(), unlocks ? "burned" : "");
    EXPECT_EQ(Drive().lockedBy, OLESTR(""));
  }
}

std::string forDevice(const std::string& before, const std::string& after = ".") {
  return before + kFakeDriveName + after;
}

TEST_F(DiscWriter, SaysWhatStandsInTheWay) {
  using Service = test::FakeDiscService;
  const struct {
    const char* what;
    bool mustErase;
    std::function<void(Service&)> arrange;
    std::string expected;
  } cases[] = {
      {"another drive", false, [](Service& s) { s.drives.front().uniqueId = OLESTR("drive-2"); },
       "Cannot find the recorder corresponding to the unique identifier drive-1."},
      {"no recorder", false, [](Service& s) { s.drives.front().isRecorder = false; },
       forDevice("The ", " is not an optical disc recorder.")},
      {"no identifier of its own", false, [](Service& s) { s.drives.front().activeId = Text(); },
       forDevice("The unique identifier for the ", " is invalid.")},
      {"drive cannot erase", true, [](Service& s) { s.drives.front().canErase = false; },
       forDevice("The ", " is does not support erasing media.")},
      {"cannot be erased", true, [](Service& s) { s.Disc().isErasable = false; },
       forDevice("The current media in the ", " is not eraseable.")},
      {"media not supported", false, [](Service& s) { s.Disc().isSupported = false; },
       forDevice("The current media in the ", " is not writeable.")},
      {"no free space", false, [](Service& s) { s.Disc().freeSectors = 0; },
       forDevice("There is no free space on the current media in the ")},
      {"too little", false, [](Service& s) { s.Disc().freeSectors = 2; },
       forDevice("The disc image size exceeds the capacity of the current media in the ")},
      {"nothing in it", false, [](Service& s) { s.imageBytes = 0; },
       "There is no data in the disc image stream."},
      {"a byte too large", false, [](Service& s) { s.imageBytes = 1000 * 2048 + 1; },
       forDevice("The disc image size exceeds the capacity of the current media in the ")},
      {"no speed", false, [](Service& s) { s.Disc().currentSpeed = 0; },
       "The write speed value is invalid."},
      {"erase and unlock", true,
       [](Service& s) {
         s.faults = {{.call = "IDiscFormat2Erase::EraseMedia", .result = E_ACCESSDENIED},
                     {.call = "IDiscRecorder2::ReleaseExclusiveAccess", .skip = 1}};
       },
       test::composed("CDiscFormat2Erase::EraseMedia", {test::kAccessDenied})},
      {"write and unlock", false,
       [](Service& s) {
         s.faults = {{.call = "IDiscFormat2Data::Write", .result = E_ACCESSDENIED},
                     {.call = "IDiscRecorder2::ReleaseExclusiveAccess", .skip = 2}};
       },
       test::composed("CDiscFormat2Data::Write", {test::kAccessDenied})}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    service_ = {};
    if (c.mustErase) service_.Disc() = test::rewritableDiscWithData();
    c.arrange(service_);
    ExpectFailure(c.expected, "");
  }
}

TEST_F(DiscWriter, NamesTheFailingCallAndLeavesNothingBehind) {
  const test::FakeDisc disc = test::rewritableDiscWithData();
  service_.Disc() = disc;
  ASSERT_TRUE(NewWriter()->Write());
  const std::vector<std::string> calls = service_.calls;
  std::string content;
  for (std::size_t n = 0; n < calls.size(); ++n) {
    SCOPED_TRACE(testing::Message() << "call " << n << ": " << calls[n]);
    RenewWithFailingCall(n);
    service_.Disc() = disc;
    ExpectFailure(driveFailure(calls, n), content);
    if (calls[n] == "IDiscFormat2Erase::EraseMedia") content = "full";
    if (n > 0 && calls[n - 1] == "IDiscFormat2Data::Write") content += "burned";
  }
  EXPECT_EQ(content, "fullburned");
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
  const std::string notFound = "Cannot find the recorder corresponding to the ";
  const struct {
    Text identifier;
    std::int32_t type;
    std::string expected;
    bool isLookedFor = false;
  } cases[] = {
      {OLESTR("drive-1"), 5, "The recorder identifier type is invalid."},
      {OLESTR("drive-1"), -1, "The recorder identifier type is invalid."},
      {OLESTR(""), 2, "The information used to select the recorder for recording is invalid."},
      {OLESTR("9"), 0, notFound + "legacy device number 9.", true},
      {OLESTR("9"), 1, notFound + "manufacturer 9.", true},
      {OLESTR("9"), 2, notFound + "unique identifier 9.", true},
      {OLESTR("9"), 3, notFound + "volume path 9.", true},
      {OLESTR("9"), 4, notFound + "volume name 9.", true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.expected);
    const auto writer = NewWriter();
    writer->SetRecorderIdentifier(c.identifier, c.type);
    EXPECT_FALSE(writer->Write());
    EXPECT_EQ(errorOf(*writer), c.expected);
    EXPECT_EQ(writer->StagedCount() == 0, c.isLookedFor) << "else nothing was begun";
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

TEST_F(DiscWriter, TakesWhatIsNoFailureForSuccess) {
  const test::Fault answers[] = {
      {.call = "IFileSystemImage::put_StageFiles", .result = E_NOTIMPL},
      {.call = "IDiscFormat2Data::SetWriteSpeed", .result = S_IMAPI_SPEEDADJUSTED}};
  for (const test::Fault& answer : answers) {
    service_ = {};
    service_.faults = {answer};
    EXPECT_TRUE(NewWriter()->Write()) << answer.call;
    EXPECT_EQ(service_.workingDirectory, OLESTR("/staging"));
  }
}

TEST_F(DiscWriter, AsksABusyDriveTenTimes) {
  const std::pair<const char*, int> calls[] = {
      {"IDiscRecorder2::InitializeDiscRecorder", 1}, {"IDiscFormat2Erase::IsRecorderSupported", 0},
      {"IDiscFormat2Data::IsRecorderSupported", 1},  {"IFileSystemImage::get_Root", 0},
      {"IDiscFormat2Data::SetWriteSpeed", 0},
  };
  for (const auto& [call, skip] : calls) {
    ExpectTenAttempts(call, skip, [this] {
      const auto writer = NewWriter();
      const bool isWritten = writer->Write();
      return std::pair(isWritten, errorWithoutLine(*writer));
    });
  }
}

TEST_F(DiscWriter, AnswersWithADriveOfTheList) {
  const struct {
    std::int32_t index;
    const char* expected;
  } cases[] = {{0, ""},
               {-1, "The index number for the requested recorder is invalid."},
               {1,
                "The index number for the requested recorder exceeds the total number of "
                "recorders present."}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.index);
    const auto writer = NewWriter();
    CDiscUnitInfo recorder;
    EXPECT_EQ(writer->GetRecorder(recorder, c.index, true, true, true), c.index == 0);
    EXPECT_EQ(errorOf(*writer), c.expected);
    EXPECT_EQ(recorder.CurrentMedia().IsBlank(), c.index == 0);
    EXPECT_EQ(writer->StagedCount(), 1U) << "the staged directories stay";
  }
}

}  // namespace
}  // namespace quillon
