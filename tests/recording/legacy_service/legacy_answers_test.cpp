// What the legacy service says of recorders and discs, and what it refuses.
#include "legacy_fixture.h"

namespace quillon::test {
namespace {

constexpr IID kRedBook = {
    0xE3BC42CD, 0x4E5C, 0x11D3, {0x91, 0x44, 0x00, 0x10, 0x4B, 0xA1, 0x1C, 0x5E}};

class LegacyAnswers : public LegacyTest {};

TEST_F(LegacyAnswers, TheDiscInTheDriveIsWhatItsTypeAndFlagsSay) {
  // Flags: 1 blank, 2 rewritable, 4 writable, 8 of no use for the service.
  const struct {
    const char* what;
    std::function<void()> insert;
    const char* medium;
  } cases[] = {
      {"no disc", [&] {}, "0/0"},
      {"blank CD-R", [&] { insertBlank("cd-r", 20000); }, "5/5"},
      {"CD-R with data", [&] { insertImage("cd-r", 300); }, "1/0"},
      {"blank CD-RW", [&] { insertBlank("cd-rw", 20000); }, "5/7"},
      {"CD-RW with data", [&] { insertImage("cd-rw", 300); }, "1/6"},
      {"protected CD-RW", [&] { insertImage("cd-rw", 300, true); }, "1/2"},
      {"pressed CD", [&] { insertImage("cd-rom", 300); }, "1/0"},
      {"blank DVD-R", [&] { insertBlank("dvd-r", 20000); }, "6/8"},
      {"BD-RE with data", [&] { insertImage("bd-re", 300); }, "6/8"},
  };
  ASSERT_EQ(master_->Open(), S_OK);
  recorder_ = firstRecorder();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    takeDiscOut();
    c.insert();
    EXPECT_EQ(medium(*recorder_), c.medium);
  }
}

TEST_F(LegacyAnswers, WhatCannotBeDoneIsRefusedWithItsCode) {
  const struct {
    const char* what;
    std::function<HRESULT()> call;
    HRESULT expected;
  } cases[] = {
      {"recorders before Open", [&] { return master_->EnumDiscRecorders(nullptr); },
       IMAPI_E_NOTOPENED},
      {"recording before Open", [&] { return master_->RecordDisc(0, 0); }, IMAPI_E_NOTOPENED},
      {"Close before Open", [&] { return master_->Close(); }, IMAPI_E_NOTOPENED},
      {"first Open", [&] { return master_->Open(); }, S_OK},
      {"second Open", [&] { return master_->Open(); }, IMAPI_E_ALREADYOPEN},
      {"Open of another client", [&] { return newMaster()->Open(); }, IMAPI_E_STASHINUSE},
      {"Open in another process",
       [&] {
         return HRESULT{
             inProcess([] { return newMaster()->Open() == IMAPI_E_STASHINUSE ? 7 : 1; })};
       },
       7},
      {"recording without a format", [&] { return master_->RecordDisc(0, 0); },
       IMAPI_E_NOACTIVEFORMAT},
      {"audio discs",
       [&] { return master_->SetActiveDiscMasterFormat(kRedBook, joliet_.PutVoid()); },
       E_NOINTERFACE},
      {"data discs",
       [&] { return master_->SetActiveDiscMasterFormat(IID_IJolietDiscMaster, joliet_.PutVoid()); },
       S_OK},
      {"recording without a recorder", [&] { return master_->RecordDisc(0, 0); },
       IMAPI_E_NOACTIVERECORDER},
      {"no recorder", [&] { return master_->SetActiveDiscRecorder(nullptr); }, E_POINTER},
      {"a recorder",
       [&] {
         recorder_ = firstRecorder();
         return master_->SetActiveDiscRecorder(recorder_.Get());
       },
       S_OK},
      {"recording nothing", [&] { return master_->RecordDisc(0, 0); }, IMAPI_E_INVALIDIMAGE},
      {"adding nothing", [&] { return joliet_->AddData(nullptr, 1); }, E_POINTER},
      {"an empty tree",
       [&] {
         EXPECT_EQ(add("tree"), S_OK);
         return master_->RecordDisc(0, 0);
       },
       IMAPI_E_INVALIDIMAGE},
      {"a name of 65 units",
       [&] {
         writeText(dir_ / ("tree/" + std::string(65, 'n')), "x");
         const HRESULT hr = add("tree");
         std::filesystem::remove(dir_ / ("tree/" + std::string(65, 'n')));
         return hr;
       },
       IMAPI_E_BADJOLIETNAME},
      {"a directory that links to itself",
       [&] {
         std::filesystem::create_directory(dir_ / "loop");
         std::filesystem::create_directory_symlink(".", dir_ / "loop/again");
         return add("loop");
       },
       IMAPI_E_FILEACCESS},
      {"more than the disc holds",
       [&] {
         writeText(dir_ / "tree/LARGE", "x");
         std::filesystem::resize_file(dir_ / "tree/LARGE", 20000 * kSector);
         return add("tree");
       },
       IMAPI_E_DISCFULL},
      {"more than the disc holds, known without a disc only when it is written",
       [&] {
         takeDiscOut();
         EXPECT_EQ(add("tree"), S_OK);
         insertBlank("cd-r", 20000);
         return master_->RecordDisc(0, 0);
       },
       IMAPI_E_DISCFULL},
      {"a CD-R that holds something",
       [&] {
         insertImage("cd-r", 300);
         return master_->RecordDisc(0, 0);
       },
       IMAPI_E_CANNOT_WRITE_TO_MEDIA},
      {"a DVD",
       [&] {
         insertBlank("dvd+rw", 30000);
         return master_->RecordDisc(0, 0);
       },
       IMAPI_E_MEDIUM_INVALIDTYPE},
      {"erasing a DVD",
       [&] {
         EXPECT_EQ(recorder_->OpenExclusive(), S_OK);
         return recorder_->Erase(0);
       },
       IMAPI_E_MEDIUM_INVALIDTYPE},
      {"opening an open recorder", [&] { return recorder_->OpenExclusive(); }, IMAPI_E_ALREADYOPEN},
      {"opening a recorder that another client has",
       [&] { return firstRecorder()->OpenExclusive(); }, IMAPI_E_DEVICE_NOTACCESSIBLE},
      {"closing a recorder", [&] { return recorder_->Close(); }, S_OK},
      {"closing it again", [&] { return recorder_->Close(); }, IMAPI_E_NOTINITIALIZED},
      {"erasing a CD-R",
       [&] {
         insertImage("cd-r", 300);
         EXPECT_EQ(recorder_->OpenExclusive(), S_OK);
         const HRESULT hr = recorder_->Erase(1);
         EXPECT_EQ(recorder_->Close(), S_OK);
         return hr;
       },
       IMAPI_E_MEDIUM_INVALIDTYPE},
      {"recording without a disc",
       [&] {
         takeDiscOut();
         return master_->RecordDisc(0, 0);
       },
       IMAPI_E_MEDIUM_NOTPRESENT},
      {"Close", [&] { return master_->Close(); }, S_OK},
      {"a format after Close", [&] { return add("tree"); }, IMAPI_E_NOTOPENED},
      {"an old format after a new Open",
       [&] {
         EXPECT_EQ(master_->Open(), S_OK);
         return add("tree");
       },
       IMAPI_E_WRONGFORMAT},
      {"Open of another client, when the first one is gone",
       [&] {
         master_.Reset();  // the format stays
         return newMaster()->Open();
       },
       S_OK},
  };
  insertBlank("cd-r", 20000);
  // In one go: each case starts from what the one before has left.
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.call(), c.expected);
  }
}

TEST_F(LegacyAnswers, OnlyDrivesThatWriteCdsAreThereForTheService) {
  writeText(file("recorder.txt"), "media = dvd-r dvd+rw\n");
  ASSERT_EQ(platform::createVirtualRecorder("two").code, S_OK);
  writeText(dir_ / "recorders/two/recorder.txt", "media = cd-r\n");
  ASSERT_EQ(platform::createVirtualRecorder("three").code, S_OK);
  ASSERT_EQ(master_->Open(), S_OK);
  ComPtr<IEnumDiscRecorders> recorders;
  ASSERT_EQ(master_->EnumDiscRecorders(recorders.Put()), S_OK);
  IDiscRecorder* found[3] = {};
  ULONG fetched = 0;
  EXPECT_EQ(recorders->Next(3, found, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 2U);
  const LONG types[] = {RECORDER_CDRW, RECORDER_CDR};  // "three", "two"
  for (ULONG i = 0; i < fetched; ++i) {
    LONG type = 0;
    EXPECT_EQ(found[i]->GetRecorderType(&type), S_OK);
    EXPECT_EQ(type, types[i]);
    found[i]->Release();
  }
  EXPECT_EQ(recorders->Reset(), S_OK);
  EXPECT_EQ(recorders->Skip(2), S_OK);
  EXPECT_EQ(recorders->Next(1, found, nullptr), S_FALSE);
}

TEST_F(LegacyAnswers, TheServiceThatIsConfiguredDecidesWhichClassesThereAre) {
  const struct {
    const char16_t* service;
    HRESULT current;
    HRESULT legacy;
    BOOL hasDrive;
  } cases[] = {
      {u"virtual", S_OK, S_OK, TRUE},
      {u"legacy", REGDB_E_CLASSNOTREG, S_OK, TRUE},
      {u"none", REGDB_E_CLASSNOTREG, REGDB_E_CLASSNOTREG, FALSE},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(narrow(c.service));
    chooseService(c.service);
    ComPtr<IUnknown> object;
    ComPtr<ICDBurn> burner;
    const auto create = [](const CLSID& clsid, const IID& iid, void** made) {
      return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, made);
    };
    EXPECT_EQ(create(CLSID_MsftDiscMaster2, IID_IUnknown, object.PutVoid()), c.current);
    EXPECT_EQ(create(CLSID_MSDiscMasterObj, IID_IUnknown, object.PutVoid()), c.legacy);
    ASSERT_EQ(create(CLSID_CDBurn, IID_ICDBurn, burner.PutVoid()), S_OK);
    BOOL has = 2;
    EXPECT_EQ(burner->HasRecordableDrive(&has), S_OK);
    EXPECT_EQ(has, c.hasDrive);
  }
}

}  // namespace
}  // namespace quillon::test
