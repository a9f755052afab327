#include <functional>

#include "disc/tarnimapiutil.h"
#include "disc_test_support.h"

namespace quillon {
namespace {

using test::composed;
using test::errorOf;
using test::errorWithoutLine;
using test::kAccessDenied;
using test::resultOf;

class Wrappers : public test::WithDiscService {};

TEST_F(Wrappers, ComposeTheTextOfAFailingCall) {
  struct Case {
    const char* what;
    test::Fault fault;
    std::string expected;
  };
  const std::string eject = "CDiscRecorder2::EjectMedia";
  const Case cases[] = {
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
  for (Case c : cases) {
    SCOPED_TRACE(c.what);
    CDiscRecorder2 recorder;
    ASSERT_TRUE(recorder.InitializeDiscRecorder(Text(OLESTR("drive-1"))));
    SetErrorInfo(0, test::errorObject(OLESTR("An earlier failure.")).Get());
    c.fault.call = "IDiscRecorder2::EjectMedia";
    service_.faults = {c.fault};
    recorder.SetDetailedMessages(false);  // makes no difference here
    EXPECT_FALSE(recorder.EjectMedia());
    EXPECT_EQ(errorWithoutLine(recorder), c.expected);
    EXPECT_EQ(recorder.GetLastResult(), c.fault.result);
  }
}

TEST_F(Wrappers, ComposeTheTextOfAFailingCreation) {
  service_.faults = {{.call = "Create MsftDiscRecorder2", .result = REGDB_E_CLASSNOTREG},
                     {.call = "Create MsftDiscMaster2", .result = E_ACCESSDENIED}};
  CDiscRecorder2 recorder;
  EXPECT_FALSE(recorder.EjectMedia());
  EXPECT_EQ(errorWithoutLine(recorder),
            composed("CDiscRecorder2::Create",
                     {test::systemSentence(REGDB_E_CLASSNOTREG, "Class not registered")}));
  CDiscMaster2 master;
  bool supported = false;
  EXPECT_FALSE(master.GetIsSupportedEnvironment(supported));
  EXPECT_EQ(errorWithoutLine(master),
            "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\n"
            "Cannot create the disc master object for this reason:\n\n" +
                kAccessDenied + "\n\n");
  CImapiImageStream stream;  // nothing has handed one out
  STATSTG stat{};
  EXPECT_FALSE(stream.Stat(&stat, STATFLAG_NONAME));
  EXPECT_NE(errorOf(stream).find("\n\nCannot create the stream object for this reason:\n\n"),
            std::string::npos);
}

// Each operation makes the call that it stands for, and names itself when that fails.
TEST_F(Wrappers, NameTheOperationThatFailed) {
  CDiscMaster2 master;
  CDiscMaster2Iterator drives;
  CDiscRecorder2 recorder;
  CDiscFormat2Data data;
  CDiscFormat2Erase erase;
  CFileSystemImage image;
  CFileSystemImageResult result;
  CFsiDirectoryItem root;
  CImapiImageStream stream;
  ASSERT_TRUE(master.GetDiscDevices(drives));
  ASSERT_TRUE(recorder.InitializeDiscRecorder(Text(OLESTR("drive-1"))));
  ASSERT_TRUE(data.SetRecorder(recorder) && erase.SetRecorder(recorder));
  ASSERT_TRUE(image.GetRoot(root) && image.CreateResultImage(result));
  ASSERT_TRUE(result.GetImageStream(stream));

  bool flag = false;
  LONG number = 0;
  Text text;
  std::vector<LONG> numbers;
  std::vector<Text> texts;
  STATSTG stat{};
  IMAPI_FORMAT2_DATA_MEDIA_STATE state{};
  IMAPI_MEDIA_WRITE_PROTECT_STATE protection{};
  IMAPI_MEDIA_PHYSICAL_TYPE type{};
  CDiscMaster2Iterator moreDrives;
  CFsiDirectoryItem anotherRoot;
  CFileSystemImageResult anotherResult;
  CImapiImageStream anotherStream;
  struct Case {
    const char* call;  // the platform's method
    CImapiItem& wrapper;
    const char* operation;
    std::function<bool()> run;
  };
  const Case cases[] = {
      {"IDiscMaster2::get_IsSupportedEnvironment", master, "GetIsSupportedEnvironment",
       [&] { return master.GetIsSupportedEnvironment(flag); }},
      {"IDiscMaster2::get__NewEnum", master, "GetDiscDevices",
       [&] { return master.GetDiscDevices(moreDrives); }},
      {"IEnumVARIANT::Reset", drives, "Reset", [&] { return drives.Reset(); }},
      {"IEnumVARIANT::Next", drives, "Next", [&] { return drives.Next(); }},
      {"IDiscRecorder2::InitializeDiscRecorder", recorder, "InitializeDiscRecorder",
       [&] { return recorder.InitializeDiscRecorder(Text(OLESTR("drive-1"))); }},
      {"IDiscRecorder2::AcquireExclusiveAccess", recorder, "AcquireExclusiveAccess",
       [&] { return recorder.AcquireExclusiveAccess(true, Text(OLESTR("a"))); }},
      {"IDiscRecorder2::ReleaseExclusiveAccess", recorder, "ReleaseExclusiveAccess",
       [&] { return recorder.ReleaseExclusiveAccess(); }},
      {"IDiscRecorder2::EjectMedia", recorder, "EjectMedia", [&] { return recorder.EjectMedia(); }},
      {"IDiscRecorder2::get_ActiveDiscRecorder", recorder, "GetActiveDiscRecorder",
       [&] { return recorder.GetActiveDiscRecorder(text); }},
      {"IDiscRecorder2::get_VendorId", recorder, "GetVendorId",
       [&] { return recorder.GetVendorId(text); }},
      {"IDiscRecorder2::get_ProductId", recorder, "GetProductId",
       [&] { return recorder.GetProductId(text); }},
      {"IDiscRecorder2::get_ProductRevision", recorder, "GetProductRevision",
       [&] { return recorder.GetProductRevision(text); }},
      {"IDiscRecorder2::get_VolumeName", recorder, "GetVolumeName",
       [&] { return recorder.GetVolumeName(text); }},
      {"IDiscRecorder2::get_VolumePathNames", recorder, "GetVolumePathNames",
       [&] { return recorder.GetVolumePathNames(texts); }},
      {"IDiscRecorder2::get_SupportedProfiles", recorder, "GetSupportedProfiles",
       [&] { return recorder.GetSupportedProfiles(numbers); }},
      {"IDiscRecorder2::get_CurrentProfiles", recorder, "GetCurrentProfiles",
       [&] { return recorder.GetCurrentProfiles(numbers); }},
      {"IDiscRecorder2::get_SupportedFeaturePages", recorder, "GetSupportedFeaturePages",
       [&] { return recorder.GetSupportedFeaturePages(numbers); }},
      {"IDiscRecorder2::get_CurrentFeaturePages", recorder, "GetCurrentFeaturePages",
       [&] { return recorder.GetCurrentFeaturePages(numbers); }},
      {"IDiscRecorder2::get_SupportedModePages", recorder, "GetSupportedModePages",
       [&] { return recorder.GetSupportedModePages(numbers); }},
      {"IDiscRecorder2::get_DeviceCanLoadMedia", recorder, "GetDeviceCanLoadMedia",
       [&] { return recorder.GetDeviceCanLoadMedia(flag); }},
      {"IDiscRecorder2::get_LegacyDeviceNumber", recorder, "GetLegacyDeviceNumber",
       [&] { return recorder.GetLegacyDeviceNumber(number); }},
      {"IDiscFormat2Data::IsRecorderSupported", data, "IsRecorderSupported",
       [&] { return data.IsRecorderSupported(recorder, flag); }},
      {"IDiscFormat2Erase::IsCurrentMediaSupported", erase, "IsCurrentMediaSupported",
       [&] { return erase.IsCurrentMediaSupported(recorder, flag); }},
      {"IDiscFormat2Data::get_MediaPhysicallyBlank", data, "GetMediaPhysicallyBlank",
       [&] { return data.GetMediaPhysicallyBlank(flag); }},
      {"IDiscFormat2Erase::get_MediaHeuristicallyBlank", erase, "GetMediaHeuristicallyBlank",
       [&] { return erase.GetMediaHeuristicallyBlank(flag); }},
      {"IDiscFormat2Data::put_Recorder", data, "SetRecorder",
       [&] { return data.SetRecorder(recorder); }},
      {"IDiscFormat2Erase::put_ClientName", erase, "SetClientName",
       [&] { return erase.SetClientName(Text(OLESTR("a"))); }},
      {"IDiscFormat2Data::get_SupportedMediaTypes", data, "GetSupportedMediaTypes",
       [&] { return data.GetSupportedMediaTypes(numbers); }},
      {"IDiscFormat2Data::get_CurrentMediaStatus", data, "GetCurrentMediaStatus",
       [&] { return data.GetCurrentMediaStatus(state); }},
      {"IDiscFormat2Data::get_WriteProtectStatus", data, "GetWriteProtectStatus",
       [&] { return data.GetWriteProtectStatus(protection); }},
      {"IDiscFormat2Data::get_CurrentPhysicalMediaType", data, "GetCurrentPhysicalMediaType",
       [&] { return data.GetCurrentPhysicalMediaType(type); }},
      {"IDiscFormat2Data::get_FreeSectorsOnMedia", data, "GetFreeSectorsOnMedia",
       [&] { return data.GetFreeSectorsOnMedia(number); }},
      {"IDiscFormat2Data::get_TotalSectorsOnMedia", data, "GetTotalSectorsOnMedia",
       [&] { return data.GetTotalSectorsOnMedia(number); }},
      {"IDiscFormat2Data::get_SupportedWriteSpeeds", data, "GetSupportedWriteSpeeds",
       [&] { return data.GetSupportedWriteSpeeds(numbers); }},
      {"IDiscFormat2Data::get_RequestedWriteSpeed", data, "GetRequestedWriteSpeed",
       [&] { return data.GetRequestedWriteSpeed(number); }},
      {"IDiscFormat2Data::get_CurrentWriteSpeed", data, "GetCurrentWriteSpeed",
       [&] { return data.GetCurrentWriteSpeed(number); }},
      {"IDiscFormat2Data::SetWriteSpeed", data, "SetWriteSpeed",
       [&] { return data.SetWriteSpeed(-1, false); }},
      {"IDiscFormat2Data::Write", data, "Write", [&] { return data.Write(stream); }},
      {"IDiscFormat2Erase::put_FullErase", erase, "SetFullErase",
       [&] { return erase.SetFullErase(true); }},
      {"IDiscFormat2Erase::EraseMedia", erase, "EraseMedia", [&] { return erase.EraseMedia(); }},
      {"IFileSystemImage::get_Root", image, "GetRoot", [&] { return image.GetRoot(anotherRoot); }},
      {"IFileSystemImage::SetMaxMediaBlocksFromDevice", image, "SetMaxMediaBlocksFromDevice",
       [&] { return image.SetMaxMediaBlocksFromDevice(recorder); }},
      {"IFileSystemImage::ChooseImageDefaults", image, "ChooseImageDefaults",
       [&] { return image.ChooseImageDefaults(recorder); }},
      {"IFileSystemImage::put_VolumeName", image, "SetVolumeName",
       [&] { return image.SetVolumeName(Text(OLESTR("a"))); }},
      {"IFileSystemImage::put_WorkingDirectory", image, "SetWorkingDirectory",
       [&] { return image.SetWorkingDirectory(Text(OLESTR("a"))); }},
      {"IFileSystemImage::put_StrictFileSystemCompliance", image, "SetStrictFileSystemCompliance",
       [&] { return image.SetStrictFileSystemCompliance(true); }},
      {"IFileSystemImage::put_FileSystemsToCreate", image, "SetFileSystemsToCreate",
       [&] { return image.SetFileSystemsToCreate(7); }},
      {"IFileSystemImage::put_StageFiles", image, "SetStageFiles",
       [&] { return image.SetStageFiles(true); }},
      {"IFileSystemImage::CreateResultImage", image, "CreateResultImage",
       [&] { return image.CreateResultImage(anotherResult); }},
      {"IFileSystemImageResult::get_ImageStream", result, "GetImageStream",
       [&] { return result.GetImageStream(anotherStream); }},
      {"IFsiDirectoryItem::AddTree", root, "AddTree",
       [&] { return root.AddTree(Text(OLESTR("a")), false); }},
      {"IStream::Stat", stream, "Stat", [&] { return stream.Stat(&stat, STATFLAG_NONAME); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.call);
    service_.faults.clear();
    FailCall(c.call);
    EXPECT_FALSE(c.run());
    const std::string name = test::Plain(c.wrapper.ClassName()) + "::" + c.operation;
    EXPECT_EQ(errorWithoutLine(c.wrapper), test::driveFailure(name));
  }
}

TEST_F(Wrappers, TellOneFailingLineFromAnother) {
  FailCall("IDiscRecorder2::EjectMedia");
  FailCall("IDiscRecorder2::ReleaseExclusiveAccess");
  CDiscRecorder2 recorder;
  EXPECT_FALSE(recorder.EjectMedia());
  const std::string firstText = errorOf(recorder);
  EXPECT_FALSE(recorder.ReleaseExclusiveAccess());
  const std::string secondText = errorOf(recorder);
  const auto lineOf = [](const std::string& text) {
    const std::size_t at = text.find("Line: ");
    return at == std::string::npos ? std::string() : text.substr(at, text.find('\n', at) - at);
  };
  EXPECT_NE(lineOf(firstText), "");
  EXPECT_NE(lineOf(firstText), lineOf(secondText));
}

TEST_F(Wrappers, TakeAPositiveResultForSuccess) {
  service_.faults = {{.call = "IDiscFormat2Data::SetWriteSpeed", .result = S_IMAPI_SPEEDADJUSTED}};
  CDiscRecorder2 recorder;
  CDiscFormat2Data format;
  ASSERT_TRUE(recorder.InitializeDiscRecorder(Text(OLESTR("drive-1"))) &&
              format.SetRecorder(recorder));
  EXPECT_TRUE(format.SetWriteSpeed(1200, false));
  EXPECT_EQ(format.GetLastResult(), S_IMAPI_SPEEDADJUSTED);
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

TEST_F(Wrappers, TakeArraysOfBothKindsOf32BitIntegers) {
  struct Case {
    const char* what;
    VARTYPE elements;
    VARTYPE array;
    bool taken;
  };
  const Case cases[] = {{"signed", VT_I4, VT_VARIANT, true},
                        {"unsigned", VT_UI4, VT_VARIANT, true},
                        {"16 bits", VT_I2, VT_VARIANT, false},
                        {"no variants", VT_I4, VT_I4, false}};
  CDiscRecorder2 recorder;
  CDiscFormat2Data format;
  ASSERT_TRUE(recorder.InitializeDiscRecorder(Text(OLESTR("drive-1"))) &&
              format.SetRecorder(recorder));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    service_.speedType = c.elements;
    service_.speedArrayType = c.array;
    std::vector<LONG> speeds = {7};
    EXPECT_EQ(format.GetSupportedWriteSpeeds(speeds), c.taken);
    EXPECT_EQ(speeds, c.taken ? (std::vector<LONG>{1800, 3600}) : std::vector<LONG>{7});
    EXPECT_EQ(format.GetLastResult(), S_OK) << "the call itself has succeeded";
  }
}

}  // namespace
}  // namespace quillon
