// Which recorders and classes there are, and discs that go in and out.
#include "recorder_fixture.h"
#include "recording/disc_recorders.h"

namespace quillon::test {
namespace {

class Catalogue : public RecorderTest {
 protected:
  void setService(std::string_view name) const {
    std::string text = "Windows Registry Editor Version 5.00\n\n";
    text.append("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon\\DiscMastering]\n");
    text.append("\"Service\"=\"").append(name).append("\"\n");
    writeText(dir_ / "registry.reg", text);
  }
  static std::vector<std::string> identifiers() {
    ComPtr<IDiscMaster2> master;
    EXPECT_EQ(CoCreateInstance(CLSID_MsftDiscMaster2, nullptr, CLSCTX_INPROC_SERVER,
                               IID_IDiscMaster2, master.PutVoid()),
              S_OK);
    ComPtr<IEnumVARIANT> enumerator;
    EXPECT_EQ(master->get__NewEnum(enumerator.Put()), S_OK);
    EXPECT_EQ(enumerator->Reset(), S_OK);
    std::vector<std::string> found;
    VARIANT item{};
    ULONG fetched = 0;
    while (enumerator->Next(1, &item, &fetched) == S_OK) {
      EXPECT_EQ(item.vt, VT_BSTR);
      found.push_back(narrow({item.bstrVal, SysStringLen(item.bstrVal)}));
      VariantClear(&item);
    }
    EXPECT_EQ(fetched, 0U);
    VARIANT_BOOL isSupported = VARIANT_FALSE;
    EXPECT_EQ(master->get_IsSupportedEnvironment(&isSupported), S_OK);
    EXPECT_EQ(isSupported != VARIANT_FALSE, !found.empty());
    return found;
  }
};

TEST_F(Catalogue, TheServiceSaysWhichClassesThereAre) {
  const struct {
    const char* service;
    HRESULT current;
  } kCases[] = {
      {"", S_OK},
      {"auto", S_OK},
      {"virtual", S_OK},
      {"legacy", REGDB_E_CLASSNOTREG},
      {"none", REGDB_E_CLASSNOTREG},
      {"virtual", S_OK},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.service);
    setService(c.service);
    for (const CLSID& clsid : {CLSID_MsftDiscMaster2, CLSID_MsftDiscRecorder2,
                               CLSID_MsftDiscFormat2Data, CLSID_MsftDiscFormat2Erase}) {
      ComPtr<IUnknown> object;
      EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                 IID_IUnknown, object.PutVoid()),
                c.current);
      EXPECT_EQ(object == nullptr, c.current != S_OK);
    }
    if (c.current == S_OK) {
      EXPECT_EQ(identifiers(), std::vector<std::string>{(dir_ / "recorders" / "one").string()});
    }
  }
}

TEST_F(Catalogue, AServiceThatIsNotKnownIsRefusedWithTheNamesOfThoseThatAre) {
  setService("virtaul");
  ComPtr<IDiscMaster2> master;
  ASSERT_EQ(CoCreateInstance(CLSID_MsftDiscMaster2, nullptr, CLSCTX_INPROC_SERVER, IID_IDiscMaster2,
                             master.PutVoid()),
            S_OK);
  ComPtr<IEnumVARIANT> enumerator;
  EXPECT_EQ(master->get__NewEnum(enumerator.Put()), E_FAIL);
  EXPECT_EQ(errorDescription(),
            "The registry names the disc-mastering service \"virtaul\"; there are auto, virtual, "
            "drives, legacy and none.");
}

TEST_F(Catalogue, AChosenRecorderIsTheOnlyOne) {
  ASSERT_EQ(platform::createVirtualRecorder("two").code, S_OK);
  setService("virtual");
  platform::chooseDiscRecorder("two");
  EXPECT_EQ(identifiers(), std::vector<std::string>{(dir_ / "recorders" / "two").string()});
  // It need not be one of the service's: naming it is request enough.
  setService("drives");
  EXPECT_EQ(identifiers(), std::vector<std::string>{(dir_ / "recorders" / "two").string()});
  platform::chooseDiscRecorder("three");
  EXPECT_EQ(identifiers(), std::vector<std::string>{});
  platform::chooseDiscRecorder("");
  setService("virtual");
  EXPECT_EQ(identifiers().size(), 2U);
}

TEST_F(Catalogue, TheFirstRecorderIsMadeWithABlankDiscInIt) {
  const ScopedEnvironment elsewhere("QUILLON_RECORDERS", (dir_ / "other/below").string());
  setService("virtual");
  EXPECT_EQ(identifiers().size(), 1U);
  Client client;
  LONG total = 0;
  EXPECT_EQ(client.data->get_TotalSectorsOnMedia(&total), S_OK);
  EXPECT_EQ(total, 359849);
  EXPECT_EQ(client.write(100), S_OK);
  EXPECT_EQ(client.recorder->EjectMedia(), S_OK);
  EXPECT_EQ(client.status(), -1) << "no second disc comes by itself";
  EXPECT_EQ(identifiers().size(), 1U);
}

TEST_F(Catalogue, RecordersAreListedByNameAndInitialisedByIdentifier) {
  EXPECT_EQ(platform::createVirtualRecorder("a two").code, S_OK);
  EXPECT_EQ(platform::createVirtualRecorder("one").code, HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS));
  for (const char* bad : {"", ".x", "a/b"}) {
    EXPECT_EQ(platform::createVirtualRecorder(bad).code, HRESULT_FROM_WIN32(ERROR_INVALID_NAME));
  }
  std::filesystem::create_directory(dir_ / "recorders" / "no recorder");
  const std::vector<std::string> found = identifiers();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0], (dir_ / "recorders" / "a two").string());
  const Client client;
  LONG number = -1;
  EXPECT_EQ(client.recorder->InitializeDiscRecorder(Bstr(wide("recorders/one"))), S_OK);
  EXPECT_EQ(client.recorder->get_LegacyDeviceNumber(&number), S_OK);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(client.recorder->InitializeDiscRecorder(Bstr(u"nowhere")),
            HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(errorDescription(),
            "There is no disc recorder with the unique identifier \"nowhere\".");
  BSTR vendor = nullptr;
  EXPECT_EQ(client.recorder->get_VendorId(&vendor), S_OK) << "it keeps the recorder that it had";
  EXPECT_EQ(narrow(vendor), "Quillon");
  SysFreeString(vendor);
}

TEST_F(Catalogue, EjectedDiscsKeepTheirContentsUnderTheNameOfTheVolume) {
  const struct {
    const char* volume;
    const char* name;
  } kCases[] = {
      {"QUILLON", "QUILLON.iso"},
      {"QUILLON", "QUILLON-2.iso"},
      {"QUILLON", "QUILLON-3.iso"},
      {"A/B: c", "A_B__c.iso"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 3000));
    ComPtr<PatternStream> stream;
    stream.Attach(new PatternStream(60));
    std::vector<std::uint8_t> bytes = stream->bytes();
    Client client;
    ASSERT_EQ(client.writeStream(*stream), S_OK);
    // The descriptor of an ISO 9660 volume.
    std::string descriptor = "\1CD001";
    descriptor.resize(40, '\1');
    descriptor.append(c.volume).append(32 - std::string_view(c.volume).size(), ' ');
    std::copy(descriptor.begin(), descriptor.end(), bytes.begin() + 16 * 2048);
    writeBytes(file("disc.iso"), bytes);
    EXPECT_EQ(client.recorder->EjectMedia(), S_OK);
    EXPECT_FALSE(discStatus().hasDisc);
    EXPECT_TRUE(readBytes(file("ejected") / c.name) == bytes);
  }
  platform::DiscToInsert again;
  again.image = (file("ejected") / "QUILLON-2.iso").string();
  ASSERT_EQ(platform::insertVirtualDisc("one", again).code, S_OK);
  EXPECT_EQ(discStatus().media, "cd-rw") << "it is the disc that it was";
  EXPECT_EQ(discStatus().state, "appendable");
  EXPECT_EQ(discStatus().capacitySectors, 3000U);
  EXPECT_EQ(discStatus().usedSectors, 60U);
}

TEST_F(Catalogue, DiscsThatCannotBeAreNotInserted) {
  writeBytes(dir_ / "image.iso", patternBytes(100, 1));
  writeBytes(dir_ / "odd.iso", std::vector<std::uint8_t>(3000));
  writeBytes(dir_ / "none.iso", {});
  const auto path = [this](const char* name) { return (dir_ / name).string(); };
  const auto text = [](const platform::DiscResult& result) { return narrow(result.text); };
  const struct {
    platform::DiscToInsert disc;
    std::string sentence;
  } kCases[] = {
      {{"floppy", {}, "", false}, "There is no kind of disc \"floppy\"."},
      {{"cd-r", 449850, "", false}, "A disc of the kind cd-r has 1 to 449849 sectors."},
      {{"cd-r", 0, "", false}, "A disc of the kind cd-r has 1 to 449849 sectors."},
      {{"cd-rom", {}, "", false}, "A pressed disc is never blank: it needs an image."},
      {{"cd-r", 99, path("image.iso"), false},
       "\"" + path("image.iso") +
           "\" does not fit on the disc: it has 100 sectors, the disc has room for 99."},
      {{"", {}, path("odd.iso"), false},
       "\"" + path("odd.iso") + "\" is no disc image: it does not end with a whole sector."},
      {{"", {}, path("none.iso"), false}, "\"" + path("none.iso") + "\" is no disc image."},
      {{"", {}, path("missing"), false},
       "The virtual recorder cannot read \"" + path("missing") + "\"."},
  };
  for (const auto& c : kCases) {
    const platform::DiscResult result = platform::insertVirtualDisc("one", c.disc);
    EXPECT_LT(result.code, 0);
    EXPECT_EQ(text(result), c.sentence);
    EXPECT_FALSE(discStatus().hasDisc);
  }
  platform::DiscToInsert image;
  image.image = path("image.iso");
  EXPECT_EQ(platform::insertVirtualDisc("one", image).code, S_OK);
  EXPECT_EQ(discStatus().media, "cd-rom");
  EXPECT_EQ(text(platform::insertVirtualDisc("one", image)),
            "There is a disc in the virtual recorder \"one\".");
  EXPECT_EQ(text(platform::insertVirtualDisc("two", image)),
            "There is no virtual recorder \"two\".");
}

}  // namespace
}  // namespace quillon::test
