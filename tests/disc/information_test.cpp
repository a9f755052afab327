#include "disc/disc_unit_info.h"
#include "disc_test_support.h"

namespace quillon {
namespace {

using test::errorOf;
using test::errorWithoutLine;
using test::Plain;

std::string nameOf(const CImapi2Enumerator& item) {
  Text name;
  item.GetName(name);
  return Plain(name);
}

TEST(NamedCodes, TakeTheirNamesFromTheirTables) {
  const struct {
    const char* what;
    CImapi2Enumerator kind;
    std::int32_t value;
    const char* expected;
  } cases[] = {
      {"a row", CPhysicalMediaType(), 13, "DVD+RW Dual Layer"},
      {"a row out of order", CProfileType(), 0x20, "Double Density CD-ROM"},
      {"the last profile", CProfileType(), 0xFFFF, "Non-Standard"},
      {"no row", CProfileType(), 0x1234, "4660"},
      {"undefined", CProfileType(), -1, "Undefined"},
      {"page 0 is no bit set", CFeaturePageType(), 0, "Profile List"},
      {"bits of a value without bits", CMediaState(), 0, "Unknown"},
      {"undefined bits", CMediaState(), -1, "Undefined"},
      {"one bit with two names", CMediaState(), 0x1,
       "Informational Mask, Overwrite Only, Randomly Writable"},
      {"a bit within a mask", CMediaState(), 0x2, "Informational Mask, Blank"},
      {"bits within both masks", CMediaState(), 0x4004,
       "Informational Mask, Unsupported Mask, Appendable, Finalized"},
      {"bits without a row", CMediaState(), 0x10, "16"},
      {"no row for 0", CWriteProtectState(), 0, "0"},
      {"three bits", CFsiFileSystems(), 7, "ISO 9660, Joliet, UDF"},
      {"none", CFsiFileSystems(), 0, "None"},
      {"a mode page", CPageType(), 0x1A, "Power Condition"},
  };
  for (auto c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_TRUE(c.kind.Set(c.value));
    EXPECT_EQ(nameOf(c.kind), c.expected);
    EXPECT_EQ(c.kind.Value(), c.value);
  }
}

TEST(NamedCodes, ResetWhenTheyRefuse) {
  CProfileType profile;
  ASSERT_TRUE(profile.Set(0x1234, OLESTR("  Odd one ")));
  EXPECT_EQ(nameOf(profile), "Odd one");
  EXPECT_FALSE(profile.Set(-2));
  EXPECT_EQ(nameOf(profile), "Undefined");
  ASSERT_TRUE(profile.Set(8));
  EXPECT_FALSE(profile.Set(0x1234, OLESTR("  "))) << "a code must have a name";
  EXPECT_EQ(profile.Value(), -1);
}

TEST(SpeedFactor, IsRoundedUpToTheMediumsBaseSpeed) {
  const struct {
    std::int32_t type, speed, factor;  // -2: refused
  } cases[] = {{2, 3600, 48}, {2, 3601, 49}, {6, 2770, 5}, {1, 75, 1},  {3, 1, 1},
               {19, 680, 1},  {13, 681, 2},  {2, 0, 0},    {12, 0, 0},  {0, -1, -1},
               {12, 75, -2},  {0, 75, -2},   {20, 75, -2}, {-1, 75, -2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "type " << c.type << ", speed " << c.speed);
    CCurrentDiscMedia media;
    ASSERT_TRUE(media.SetPhysicalType(c.type));
    std::int32_t factor = -2;
    EXPECT_EQ(media.GetSpeedFactor(c.speed, factor), c.factor != -2);
    EXPECT_EQ(factor, c.factor);
    EXPECT_EQ(errorOf(media), c.factor == -2 ? "The media type value is invalid." : "");
  }
}

TEST(SpeedFactor, BelowTheFastestIsRefused) {
  CWriteSpeedInfo info;
  EXPECT_TRUE(info.SetWriteFactor(-1));
  EXPECT_FALSE(info.SetWriteFactor(-2));
  EXPECT_EQ(errorOf(info), "The given write factor value is invalid.");
  EXPECT_EQ(info.WriteFactor(), -1);
}

TEST(RecordingTime, IsEstimatedFromTheSpeed) {
  constexpr std::uint64_t kSecond = 75 * 2048;  // at 75 sectors per second
  const struct {
    const char* what;
    std::uint64_t size;
    std::int32_t speed;
    std::vector<LONG> speeds;
    std::uint64_t seconds;
    const char* error;
  } cases[] = {
      {"whole seconds", 4 * kSecond, 75, {}, 4, ""},
      {"a byte more", 4 * kSecond + 1, 75, {}, 5, ""},
      {"more than 4 GB", 100000 * kSecond, 75, {}, 100000, ""},
      {"fastest", 4 * kSecond, -1, {75, 300, 150}, 1, ""},
      {"nothing", 0, 75, {}, 0, "The content size value is invalid."},
      {"no speed", kSecond, 0, {75}, 0, "The write speed value is invalid."},
      {"none supported", kSecond, -1, {}, 0, "The write speed value is invalid."},
      {"only a standing one", kSecond, -1, {0}, 0, "The sector size value is invalid."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CCurrentDiscMedia media;
    ASSERT_TRUE(media.SetPhysicalType(2) && media.SetCurrentWriteSpeed(c.speed) &&
                media.SetSupportedWriteSpeeds(c.speeds));
    std::uint64_t seconds = 0;
    EXPECT_EQ(media.EstimateRecordingTime(c.size, seconds), c.seconds != 0);
    EXPECT_EQ(seconds, c.seconds);
    EXPECT_EQ(errorOf(media), c.error);
  }
}

TEST(Rewritable, AreFourTypesOfMedia) {
  for (std::int32_t type = -1; type <= 19; ++type) {
    CCurrentDiscMedia media;
    ASSERT_TRUE(media.SetPhysicalType(type));
    EXPECT_EQ(media.IsRewritable(), type == 3 || type == 7 || type == 10 || type == 13) << type;
  }
}

class DriveInformation : public test::WithDiscService {
 protected:
  bool Query() { return unit_.Query(OLESTR("drive-1"), /*queryMedia=*/true, /*forceAccess=*/true); }
  void ExpectUnlocked() const { EXPECT_EQ(service_.drives.front().lockedBy, OLESTR("")); }

  CDiscUnitInfo unit_;
};

TEST_F(DriveInformation, IsReadWithTheMedium) {
  service_.Disc().freeSectors = 100;
  service_.numberType = service_.speedType = VT_UI4;
  ASSERT_TRUE(Query()) << errorOf(unit_);
  Text name;
  EXPECT_TRUE(unit_.GetDeviceName(name));
  EXPECT_EQ(Plain(name), test::kFakeDriveName);
  EXPECT_TRUE(unit_.IsDataFormatSupported());
  EXPECT_EQ(unit_.VolumePaths(), std::vector<Text>{OLESTR("D:\\")});
  const CImapi2Enumerator& second = *unit_.CurrentProfiles().At(1);
  EXPECT_EQ(nameOf(second), "4660");
  EXPECT_EQ(second.GetKey(), OLESTR("2"));
  const CCurrentDiscMedia& media = unit_.CurrentMedia();
  EXPECT_TRUE(media.IsSupported() && media.IsBlank() && !media.IsRewritable());
  EXPECT_EQ(nameOf(media.MediaState()), "Informational Mask, Blank");
  EXPECT_EQ(media.SupportedWriteSpeeds().At(1)->WriteFactor(), 48);
  EXPECT_EQ(media.SupportedWriteSpeeds().At(1)->GetKey(), OLESTR("2"));
  EXPECT_EQ(media.CurrentWriteSpeed(), -1);
  EXPECT_EQ(media.FreeSectors(), 100);
  EXPECT_EQ(media.TotalSectors(), 1000);
  EXPECT_EQ(service_.drives.front().locks, 1);
  ExpectUnlocked();
  const CDiscUnitInfo copy = unit_;
  EXPECT_EQ(copy.CurrentMedia().SupportedWriteSpeeds().GetCount(), 2U);
  unit_.Reset();
  EXPECT_FALSE(unit_.GetDeviceName(name));
  EXPECT_EQ(Plain(unit_.DisplayName()), "current optical disc device");
}

TEST_F(DriveInformation, OfAnUnsupportedMediumIsThatAlone) {
  service_.Disc().isSupported = false;
  ASSERT_TRUE(Query());
  EXPECT_FALSE(unit_.CurrentMedia().IsSupported());
  EXPECT_FALSE(unit_.CurrentMedia().IsBlank());
  EXPECT_EQ(unit_.CurrentMedia().PhysicalType().Value(), -1);
  EXPECT_EQ(service_.drives.front().locks, 0);
}

TEST_F(DriveInformation, AsksForTheHeuristicsOnlyWhenNotPhysicallyBlank) {
  for (const bool isPhysicallyBlank : {false, true}) {
    service_ = {};
    service_.Disc().isPhysicallyBlank = isPhysicallyBlank;
    ASSERT_TRUE(Query());
    EXPECT_TRUE(unit_.CurrentMedia().IsBlank());
    EXPECT_EQ(service_.CountOf("IDiscFormat2Data::get_MediaHeuristicallyBlank"),
              isPhysicallyBlank ? 0 : 1);
  }
}

TEST_F(DriveInformation, RefusesWhatCannotBe) {
  const struct {
    const char* what;
    std::function<void(test::FakeDiscService&)> arrange;
    const char* expected;
  } cases[] = {
      {"legacy number", [](auto& s) { s.drives.front().legacyNumber = -1; },
       "The legacy device number is invalid."},
      {"speeds of a type without base speed",
       [](auto& s) { s.Disc().type = IMAPI_MEDIA_TYPE_DISK; }, "The media type value is invalid."},
      {"speeds of 16 bits", [](auto& s) { s.speedType = VT_I2; },
       "Cannot retrieve the write speed information."},
      {"speeds in another array", [](auto& s) { s.speedArrayType = VT_I4; },
       "Cannot retrieve the write speed information."},
      {"a negative speed", [](auto& s) { s.Disc().speeds = {-1}; },
       "The given write speed value is invalid."},
      {"the current speed", [](auto& s) { s.Disc().currentSpeed = -2; },
       "The write speed value is invalid."},
      {"free sectors", [](auto& s) { s.Disc().freeSectors = -1; },
       "The number of sectors value is invalid."},
      {"media state", [](auto& s) { s.Disc().state = -5; }, "Cannot query the current media."},
      {"profile", [](auto& s) { s.drives.front().profiles = {-5}; },
       "Cannot query the properties of the current recorder."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    service_ = {};
    c.arrange(service_);
    EXPECT_FALSE(Query());
    EXPECT_EQ(errorOf(unit_), c.expected);
    ExpectUnlocked();
  }
}

TEST_F(DriveInformation, IsAllOrNothingWhicheverCallFails) {
  ASSERT_TRUE(Query());
  const std::vector<std::string> calls = service_.calls;
  for (std::size_t n = 0; n < calls.size(); ++n) {
    SCOPED_TRACE(calls[n]);
    RenewWithFailingCall(n);
    EXPECT_FALSE(Query());
    EXPECT_EQ(errorWithoutLine(unit_), test::driveFailure(calls[n]));
    EXPECT_EQ(unit_.ProductId(), OLESTR(""));
    EXPECT_EQ(unit_.CurrentMedia().PhysicalType().Value(), -1);
    EXPECT_EQ(service_.liveObjects, 0);
    ExpectUnlocked();
  }
}

TEST_F(DriveInformation, KeepsTheFirstReasonWhenUnlockingFailsToo) {
  FailCall("IDiscFormat2Data::get_CurrentMediaStatus");
  service_.faults.push_back(
      {.call = "IDiscRecorder2::ReleaseExclusiveAccess", .result = E_ACCESSDENIED});
  EXPECT_FALSE(Query());
  EXPECT_EQ(errorWithoutLine(unit_),
            test::driveFailure("IDiscFormat2Data::get_CurrentMediaStatus"));
}

TEST_F(DriveInformation, WaitsForADriveThatIsBecomingReady) {
  for (const char* call :
       {"IDiscRecorder2::get_ActiveDiscRecorder", "IDiscFormat2Data::IsCurrentMediaSupported"}) {
    ExpectTenAttempts(call, 0, [this] {
      const bool isRead = Query();
      return std::pair(isRead, errorWithoutLine(unit_));
    });
  }
}

TEST_F(DriveInformation, ListsTheDrives) {
  service_.drives.push_back({.uniqueId = OLESTR("drive-2"), .isRecorder = false});
  service_.drives.push_back({.uniqueId = OLESTR("drive-3")});
  CDiscUnitInfoList drives;
  ASSERT_TRUE(drives.QueryAll(/*recordersOnly=*/true, false, false));
  ASSERT_EQ(drives.GetCount(), 2U);
  Text id;
  EXPECT_TRUE(drives.At(1)->GetUniqueId(id));
  EXPECT_EQ(id, OLESTR("drive-3"));
  EXPECT_EQ(drives.At(1)->GetKey(), OLESTR("2"));
  EXPECT_EQ(service_.drives.front().locks, 0) << "nobody asked for the media";
  ASSERT_TRUE(drives.QueryAll(/*recordersOnly=*/false, false, false));
  EXPECT_EQ(drives.GetCount(), 3U);

  FailCall("IDiscRecorder2::get_VolumeName", /*skip=*/2);
  EXPECT_FALSE(drives.QueryAll(false, false, false));
  EXPECT_EQ(errorWithoutLine(drives), test::driveFailure("IDiscRecorder2::get_VolumeName"));
  EXPECT_EQ(drives.GetCount(), 0U);
  service_.faults.clear();
  service_.drives[1].uniqueId.clear();
  EXPECT_FALSE(drives.QueryAll(false, false, false));
  EXPECT_EQ(errorOf(drives), "The unique identifier is invalid.");
  service_.drives.resize(1);
  service_.idType = VT_I4;
  EXPECT_FALSE(drives.QueryAll(false, false, false));
  EXPECT_EQ(errorOf(drives), "The unique identifier is invalid.") << "it is no text";
  service_.isSupportedEnvironment = false;
  EXPECT_TRUE(drives.QueryAll(false, false, false));
  EXPECT_EQ(drives.GetCount(), 0U);
}

TEST_F(DriveInformation, IsFoundByWhatIdentifiesTheDrive) {
  service_.drives.push_back({.uniqueId = OLESTR("drive-2"),
                             .product = OLESTR("READER"),
                             .volumeName = OLESTR("V2"),
                             .volumePaths = {OLESTR("E:\\"), OLESTR("F:\\")},
                             .legacyNumber = 7});
  using Type = RecorderIdType;
  constexpr const char* kNoNumber = "The legacy device number is invalid.";
  const struct {
    Type type;
    Text identifier;
    bool found;  // drive 2
    const char* error;
  } cases[] = {
      {Type::UniqueId, OLESTR("drive-2"), true, ""},
      {Type::UniqueId, OLESTR("DRIVE-2"), false, ""},
      {Type::UniqueId, OLESTR(""), false, "The unique identifier is invalid."},
      {Type::Manufacturer, OLESTR("TARN READER (Revision: 1.00)"), true, ""},
      {Type::Manufacturer, OLESTR(""), false, "The manufacturer information is invalid."},
      {Type::VolumePath, OLESTR(" F:\\ "), true, ""},
      {Type::VolumePath, OLESTR("F:"), false, ""},
      {Type::VolumePath, OLESTR(""), false, "The volume path is invalid."},
      {Type::VolumeName, OLESTR("V2"), true, ""},
      {Type::VolumeName, OLESTR(""), false, "The volume name is invalid."},
      {Type::LegacyDeviceNumber, OLESTR("7"), true, ""},
      {Type::LegacyDeviceNumber, OLESTR("8"), false, ""},
      {Type::LegacyDeviceNumber, OLESTR("-7"), false, kNoNumber},
      {Type::LegacyDeviceNumber, OLESTR("7x"), false, kNoNumber},
      {Type::LegacyDeviceNumber, OLESTR("2147483648"), false, kNoNumber},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.identifier));
    CDiscMaster2 master;
    CDiscMaster2Iterator drives;
    ASSERT_TRUE(master.GetDiscDevices(drives));
    EXPECT_EQ(unit_.Find(drives, c.type, c.identifier), c.found);
    EXPECT_EQ(errorOf(unit_), c.error);
    Text id;
    EXPECT_TRUE(unit_.GetUniqueId(id));
    EXPECT_EQ(id, c.found ? OLESTR("drive-2") : OLESTR(""));
  }
}

}  // namespace
}  // namespace quillon
