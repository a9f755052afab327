// What a disc of each kind takes, refuses and says of itself.
#include "recorder_fixture.h"

namespace quillon::test {
namespace {

// State bits.
constexpr LONG kOverwritable = 0x1;
constexpr LONG kBlank = 0x2;
constexpr LONG kAppendable = 0x4;
constexpr LONG kDamaged = 0x400;
constexpr LONG kEraseRequired = 0x800;
constexpr LONG kProtected = 0x2000;
constexpr LONG kFinalised = 0x4000;
constexpr LONG kUnsupported = 0x8000;

constexpr HRESULT kNotErasable = E_IMAPI_ERASE_MEDIA_IS_NOT_ERASABLE;
constexpr HRESULT kBadState = E_IMAPI_DF2DATA_INVALID_MEDIA_STATE;
constexpr HRESULT kNotBlank = E_IMAPI_DF2DATA_MEDIA_NOT_BLANK;

struct TypeCase {
  const char* media;
  LONG physicalType;
  LONG profile;
  LONG usualSectors;
  LONG fastest;
  LONG stateWhenBlank;
  LONG stateWhenWritten;
  LONG freeWhenWritten;  // of 20000 sectors, with 600 written
  HRESULT secondWrite;
  HRESULT erase;
};

// clang-format off
constexpr TypeCase kTypes[] = {
    {"cd-r",       2, 0x09,   359849,  3600, kBlank, kAppendable, 8000, kNotBlank, kNotErasable},
    {"cd-rw",      3, 0x0A,   359849,  1800, kBlank, kAppendable, 8000, kNotBlank, S_OK},
    {"dvd-r",      9, 0x11,  2298496, 10820, kBlank, kFinalised,     0, kBadState, kNotErasable},
    {"dvd-rw",    10, 0x14,  2298496,  4057, kBlank, kFinalised | kEraseRequired, 0, kNotBlank, S_OK},
    {"dvd+r",      6, 0x1B,  2295104, 10820, kBlank, kFinalised,     0, kBadState, kNotErasable},
    {"dvd+rw",     7, 0x1A,  2295104,  5410, kBlank | kOverwritable, kOverwritable, 19400, kNotBlank, S_OK},
    {"dvd+r-dl",   8, 0x2B,  4173824,  5410, kBlank, kFinalised,     0, kBadState, kNotErasable},
    {"dvd+rw-dl", 13, 0x2A,  4173824,  2705, kBlank | kOverwritable, kOverwritable, 19400, kNotBlank, S_OK},
    {"bd-r",      18, 0x41, 12219392, 13170, kBlank, kAppendable, 19368, kNotBlank, kNotErasable},
    {"bd-re",     19, 0x43, 11826176,  4390, kBlank | kOverwritable, kOverwritable, 19400, kNotBlank, S_OK},
};
// clang-format on

class DiscTypes : public RecorderTest {
 protected:
  // Facts that do not depend on what is done with the disc.
  static void expectIdentity(const TypeCase& c, const Client& client) {
    IMAPI_MEDIA_PHYSICAL_TYPE type = IMAPI_MEDIA_TYPE_UNKNOWN;
    EXPECT_EQ(client.data->get_CurrentPhysicalMediaType(&type), S_OK);
    EXPECT_EQ(type, c.physicalType);
    SAFEARRAY* profiles = nullptr;
    ASSERT_EQ(client.recorder->get_CurrentProfiles(&profiles), S_OK);
    ASSERT_EQ(profiles->rgsabound[0].cElements, 1U);
    EXPECT_EQ(static_cast<VARIANT*>(profiles->pvData)->vt, VT_I4);
    EXPECT_EQ(static_cast<VARIANT*>(profiles->pvData)->lVal, c.profile);
    SafeArrayDestroy(profiles);
    SAFEARRAY* speeds = nullptr;
    ASSERT_EQ(client.data->get_SupportedWriteSpeeds(&speeds), S_OK);
    EXPECT_EQ(static_cast<VARIANT*>(speeds->pvData)->vt, VT_UI4);
    SafeArrayDestroy(speeds);
    LONG speed = 0;
    EXPECT_EQ(client.data->get_CurrentWriteSpeed(&speed), S_OK);
    EXPECT_EQ(speed, c.fastest);
  }
  void expectContents(const std::vector<std::uint8_t>& bytes) const {
    EXPECT_TRUE(readBytes(file("disc.iso")) == bytes);
  }
};

TEST_F(DiscTypes, TakeWhatFitsAndAreWrittenAgainOnlyAsTheirKindAllows) {
  for (const TypeCase& c : kTypes) {
    SCOPED_TRACE(c.media);
    ASSERT_NO_FATAL_FAILURE(insertBlank(c.media, 20000));
    Client client;
    expectIdentity(c, client);
    EXPECT_TRUE(client.isUsable());
    EXPECT_EQ(client.status(), c.stateWhenBlank);
    EXPECT_EQ(client.freeSectors(), 20000);
    EXPECT_TRUE(client.isBlank(true));

    EXPECT_EQ(client.write(20001), E_IMAPI_DF2DATA_STREAM_TOO_LARGE_FOR_CURRENT_MEDIA);
    EXPECT_EQ(client.status(), c.stateWhenBlank);
    EXPECT_EQ(client.write(600, 1), S_OK);
    expectContents(patternBytes(600, 1));
    EXPECT_EQ(client.status(), c.stateWhenWritten);
    EXPECT_EQ(client.freeSectors(), c.freeWhenWritten);
    EXPECT_FALSE(client.isBlank(true) || client.isBlank(false));

    EXPECT_EQ(client.write(20, 2), c.secondWrite);
    expectContents(patternBytes(600, 1));
    EXPECT_EQ(client.eraseDisc(false), c.erase);
    if (c.erase != S_OK) {
      EXPECT_EQ(client.eraseDisc(true), c.erase);
      expectContents(patternBytes(600, 1));
      EXPECT_EQ(client.status(), c.stateWhenWritten);
    } else {
      EXPECT_EQ(client.status(), c.stateWhenBlank);
      EXPECT_EQ(client.write(20000, 3), S_OK) << "exactly its capacity";
      expectContents(patternBytes(20000, 3));
    }
  }
}

TEST_F(DiscTypes, HaveTheCapacityOfTheirKind) {
  for (const TypeCase& c : kTypes) {
    SCOPED_TRACE(c.media);
    std::string leftAt;
    ASSERT_EQ(platform::ejectVirtualDisc("one", leftAt).code, S_OK);
    platform::DiscToInsert disc;
    disc.media = c.media;
    ASSERT_EQ(platform::insertVirtualDisc("one", disc).code, S_OK);
    LONG total = 0;
    EXPECT_EQ(Client().data->get_TotalSectorsOnMedia(&total), S_OK);
    EXPECT_EQ(total, c.usualSectors);
  }
}

TEST_F(DiscTypes, QuickErasingLeavesTheDataAndFullErasingNone) {
  for (const char* media : {"cd-rw", "dvd+rw"}) {
    for (const bool full : {false, true}) {
      SCOPED_TRACE(std::string(media) + (full ? " full" : " quick"));
      ASSERT_NO_FATAL_FAILURE(insertBlank(media, 5000));
      Client client;
      ASSERT_EQ(client.write(2000), S_OK);
      // Another name of the same bytes: what becomes of them when the file is shortened?
      const auto witness = dir_ / "witness.iso";
      std::filesystem::remove(witness);
      std::filesystem::create_hard_link(file("disc.iso"), witness);
      ASSERT_EQ(client.eraseDisc(full), S_OK);
      const std::vector<std::uint8_t> left = readBytes(witness);
      const std::vector<std::uint8_t> before = patternBytes(2000, 1);
      if (full) {
        EXPECT_TRUE(left.empty());
      } else {
        ASSERT_EQ(left.size(), before.size());
        EXPECT_EQ(std::count(left.begin(), left.begin() + 512 * 2048, 0), 512 * 2048);
        EXPECT_TRUE(std::equal(left.begin() + 512 * 2048, left.end(), before.begin() + 512 * 2048));
      }
      EXPECT_TRUE(client.isBlank(false));
      EXPECT_EQ(client.isBlank(true), full || std::string(media) == "cd-rw");
      EXPECT_EQ(discStatus().state, full ? "blank" : "erased");
    }
  }
}

TEST_F(DiscTypes, SayWhyTheyCannotBeUsed) {
  const struct {
    const char* what;
    const char* record;  // of disc.txt; the image has 40 sectors
    LONG status;
    bool isUsable;
    HRESULT write;
    HRESULT erase;
  } kCases[] = {
      {"pressed", "media=cd-rom\nstate=finalised\ncapacity=40\nused=40",
       kFinalised | kUnsupported | kProtected, false, E_IMAPI_DF2DATA_MEDIA_NOT_SUPPORTED,
       kNotErasable},
      {"finalised", "media=cd-r\nstate=finalised\ncapacity=99\nused=40", kFinalised, false,
       kBadState, kNotErasable},
      {"finalised, but erasable", "media=cd-rw\nstate=finalised\ncapacity=99\nused=40",
       kFinalised | kEraseRequired, true, kNotBlank, S_OK},
      {"protected", "media=cd-rw\nstate=blank\ncapacity=99\nused=0\nprotected=yes",
       kBlank | kProtected, false, E_IMAPI_RECORDER_MEDIA_WRITE_PROTECTED,
       E_IMAPI_RECORDER_MEDIA_WRITE_PROTECTED},
      {"damaged", "media=cd-r\nstate=damaged\ncapacity=99\nused=40", kDamaged, false, kBadState,
       kNotErasable},
      {"damaged, but erasable", "media=cd-rw\nstate=damaged\ncapacity=99\nused=40",
       kDamaged | kEraseRequired, false, kBadState, S_OK},
      {"left in the middle of writing", "media=cd-r\nstate=writing\ncapacity=99\nused=0", kDamaged,
       false, kBadState, kNotErasable},
      {"left in the middle of erasing", "media=dvd+rw\nstate=erasing\ncapacity=99\nused=40",
       kOverwritable | kDamaged | kEraseRequired, false, kBadState, S_OK},
      {"shorter than it should be", "media=cd-r\nstate=appendable\ncapacity=99\nused=41", kDamaged,
       false, kBadState, kNotErasable},
      {"image gone in the middle of taking it out",
       "media=cd-r\nstate=appendable\ncapacity=99\nused=40\nleaving as=X.iso", kAppendable, true,
       kNotBlank, kNotErasable},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    writeText(file("disc.txt"), c.record);
    writeBytes(file("disc.iso"), patternBytes(40, 5));
    Client client;
    EXPECT_EQ(client.status(), c.status);
    EXPECT_EQ(client.isUsable(), c.isUsable);
    EXPECT_EQ(client.write(10), c.write);
    EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(40, 5));
    EXPECT_EQ(client.eraseDisc(true), c.erase);
    if (c.erase == S_OK) {
      EXPECT_TRUE(client.isUsable());
    }
  }
}

TEST_F(DiscTypes, WithoutADiscThereIsNothingToUse) {
  Client client;
  EXPECT_FALSE(client.isUsable());
  LONG number = 0;
  IMAPI_MEDIA_PHYSICAL_TYPE type = IMAPI_MEDIA_TYPE_UNKNOWN;
  EXPECT_EQ(client.data->get_FreeSectorsOnMedia(&number), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
  EXPECT_EQ(client.data->get_CurrentPhysicalMediaType(&type), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
  EXPECT_EQ(client.data->SetWriteSpeed(-1, VARIANT_FALSE), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
  EXPECT_EQ(client.write(1), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
  EXPECT_EQ(client.eraseDisc(false), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
  EXPECT_EQ(client.recorder->EjectMedia(), S_OK);
  writeText(file("disc.txt"), "media = floppy\n");
  EXPECT_EQ(client.write(1), E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE);
  // The image has its new name, the record was not removed any more.
  writeText(file("disc.txt"),
            "media=cd-r\nstate=appendable\ncapacity=99\nused=40\nleaving as=X.iso");
  EXPECT_EQ(client.write(1), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
}

TEST_F(DiscTypes, SpeedsAreAdjustedToWhatTheDiscHas) {
  const struct {
    LONG requested;
    VARIANT_BOOL isPureCav;
    HRESULT result;
    LONG current;
  } kCases[] = {
      {-1, VARIANT_FALSE, S_OK, 3600},
      {1200, VARIANT_FALSE, S_OK, 1200},
      {1300, VARIANT_FALSE, S_IMAPI_SPEEDADJUSTED, 1200},
      {9999, VARIANT_FALSE, S_IMAPI_SPEEDADJUSTED, 3600},
      {1, VARIANT_FALSE, S_IMAPI_SPEEDADJUSTED, 300},
      {1200, VARIANT_TRUE, S_IMAPI_ROTATIONADJUSTED, 1200},
      {1, VARIANT_TRUE, S_IMAPI_BOTHADJUSTED, 300},
      {0, VARIANT_FALSE, E_INVALIDARG, 300},
  };
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 500));
  const Client client;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.requested);
    EXPECT_EQ(client.data->SetWriteSpeed(c.requested, c.isPureCav), c.result);
    LONG speed = 0;
    EXPECT_EQ(client.data->get_CurrentWriteSpeed(&speed), S_OK);
    EXPECT_EQ(speed, c.current);
  }
}

TEST_F(DiscTypes, ADriveWritesWhatItsIdentityLists) {
  writeText(file("recorder.txt"), "vendor = ACME\nproduct = Reader\nmedia = cd-r cd-rw\n");
  ASSERT_NO_FATAL_FAILURE(insertBlank("dvd-r", 500));
  Client client;
  EXPECT_FALSE(client.isUsable());
  EXPECT_EQ(client.write(1), E_IMAPI_DF2DATA_MEDIA_NOT_SUPPORTED);
  writeText(file("recorder.txt"), "vendor = ACME\nmedia =\n");
  const ComPtr<IDiscRecorder2> old = client.recorder;
  BSTR identifier = nullptr;
  ASSERT_EQ(old->get_ActiveDiscRecorder(&identifier), S_OK);
  EXPECT_EQ(old->InitializeDiscRecorder(identifier), S_OK);
  SysFreeString(identifier);
  VARIANT_BOOL isSupported = VARIANT_TRUE;
  EXPECT_EQ(client.data->IsRecorderSupported(old.Get(), &isSupported), S_OK);
  EXPECT_EQ(isSupported, VARIANT_FALSE);
  EXPECT_EQ(client.data->put_Recorder(old.Get()), E_IMAPI_DF2DATA_RECORDER_NOT_SUPPORTED);
}

}  // namespace
}  // namespace quillon::test
