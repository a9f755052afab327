#include "dicomobjects/dicom_object_list.h"

#include <gtest/gtest.h>

#include <string>

#include "element_map.h"
#include "support/text.h"

namespace quillon {
namespace {

using test::Plain;
using test::TempDir;

class ObjectList : public ::testing::Test {
 protected:
  Text file(const std::string& uid, const std::string& number) {
    return test::imageElements()
        .text(0x00080018, "UI", uid)
        .text(0x00200013, "IS", number)
        .write(directory_, std::to_string(++files_));
  }
  // The instance number of what is found, by its key unless told to go by its own UID.
  std::string found(const std::string& uid, bool isSopInstance = false) {
    const Text wide(uid.begin(), uid.end());
    const CDicomObjectProperties* object =
        isSopInstance ? list_.FindBySopInstanceUid(wide) : list_.FindByInstanceUid(wide);
    return object == nullptr ? "none" : Plain(object->InstanceNumber());
  }

  TempDir directory_;
  CDicomObjectList list_;

 private:
  int files_ = 0;
};

TEST_F(ObjectList, FindsByUidAndByKeyAndTheFirstWins) {
  const std::string one = "1.2.826.0.1.3680043.9.1";
  const std::string two = "1.2.826.0.1.3680043.9.2";
  const std::string root = "1.2.840.987654.99.";
  // Frames of an image whose own UID is their key, and then that image.
  ASSERT_TRUE(list_.AddObject(file(root + one + ".1", "1")));
  ASSERT_TRUE(list_.AddObject(file(root + one + ".2", "2")));
  EXPECT_EQ(found(one, /*isSopInstance=*/true), "none");
  ASSERT_TRUE(list_.AddObject(file(one, "3")));
  ASSERT_TRUE(list_.AddObject(file(two, "4")));
  ASSERT_TRUE(list_.AddObject(file(two, "5")));
  ASSERT_EQ(list_.GetCount(), 5U);

  EXPECT_EQ(found(root + one + ".1"), "1");
  EXPECT_EQ(found(root + one + ".2"), "2");
  EXPECT_EQ(found(one), "1");
  EXPECT_EQ(found(one, /*isSopInstance=*/true), "3");
  EXPECT_EQ(found(two), "4");
  EXPECT_EQ(found("1.2.826.0.1.3680043.9"), "none");
  EXPECT_EQ(list_.ErrorMessage(), OLESTR(""));
  EXPECT_EQ(found(""), "none");
  EXPECT_EQ(list_.ErrorMessage(), OLESTR("The instance UID is invalid."));

  list_.RemoveAll();
  EXPECT_EQ(list_.GetCount(), 0U);
  EXPECT_EQ(found(two), "none");
  ASSERT_TRUE(list_.AddObject(file(two, "6")));
  EXPECT_EQ(found(two), "6");
  EXPECT_EQ(found(one), "none");
}

TEST_F(ObjectList, StaysAsItWasWhenAFileIsRefused) {
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.1", "1")));
  EXPECT_FALSE(list_.AddObject(Text()));
  EXPECT_EQ(list_.ErrorMessage(), OLESTR("The filename is invalid."));
  const Text missing = test::WideOf(directory_ / "missing");
  EXPECT_FALSE(list_.AddObject(missing));
  EXPECT_EQ(list_.ErrorMessage(),
            OLESTR("Cannot read the DICOM file \"") + missing + OLESTR("\" for processing."));
  EXPECT_FALSE(list_.AddObject(file("1.2.3.4", "2")));
  EXPECT_EQ(list_.ErrorMessage(), OLESTR("The instance UID is invalid."));
  EXPECT_EQ(list_.GetCount(), 1U);
}

TEST_F(ObjectList, TakesALoadedFileWithoutReadingItAgain) {
  const Text path = file("1.2.3.4", "2");
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(path, true));
  const std::uintmax_t sizeBytes = std::filesystem::file_size(std::filesystem::path(path));
  std::filesystem::remove(std::filesystem::path(path));
  EXPECT_FALSE(list_.AddObject(util, false));
  ASSERT_TRUE(list_.AddObject(util, true));
  const CDicomObjectProperties* object = list_.FindByInstanceUid(OLESTR("1.2.3.4"));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->FileName(), path);
  EXPECT_EQ(object->FileSize(), sizeBytes);
}

TEST(ObjectPropertiesCopies, ShareNothingWithTheOriginal) {
  CDicomObjectProperties original;
  static_cast<void>(original.SetModality(OLESTR("CT")));
  original.Image()->rows = 4;
  static_cast<void>(original.Image()->SetInstanceNumber(OLESTR("9")));
  original.SetErrorMessage(TextView(OLESTR("a sentence")));
  CDicomObjectProperties copy(original);
  original.Image()->rows = 5;
  original.Clear();
  EXPECT_EQ(copy.Modality(), OLESTR("CT"));
  EXPECT_EQ(copy.Image()->rows, 4);
  EXPECT_EQ(copy.InstanceNumber(), OLESTR("9"));
  EXPECT_EQ(copy.ErrorMessage(), OLESTR("a sentence"));
  copy = CDicomObjectProperties();
  EXPECT_EQ(copy.ImageIfAny(), nullptr);
}

TEST(ObjectPropertiesTexts, AreRefusedBeyondTheirLimit) {
  using Properties = CDicomObjectProperties;
  struct {
    const char* what;
    bool (Properties::*set)(TextView);
    const Text& (Properties::*get)() const;
    std::size_t limit;
  } const cases[] = {
      {"file name", &Properties::SetFileName, &Properties::FileName, 260},
      {"frame key", &Properties::SetFrameKey, &Properties::FrameKey, 260},
      {"version name", &Properties::SetImplementationVersionName,
       &Properties::ImplementationVersionName, 1024},
      {"class UID", &Properties::SetImplementationClassUid, &Properties::ImplementationClassUid,
       1024},
      {"instance key", &Properties::SetInstanceKey, &Properties::InstanceKey, 1024},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CDicomObjectProperties properties;
    const Text longest(c.limit, OLESTR('a'));
    EXPECT_TRUE((properties.*c.set)(longest));
    EXPECT_FALSE((properties.*c.set)(Text(c.limit + 1, OLESTR('b'))));
    EXPECT_FALSE((properties.*c.set)(Text()));
    EXPECT_EQ((properties.*c.get)(), longest);
    properties.SetAllowEmpty(true);
    EXPECT_TRUE((properties.*c.set)(Text()));
    EXPECT_EQ((properties.*c.get)(), OLESTR(""));
  }
}

TEST(SopClassTexts, FollowTheUid) {
  CDicomObjectProperties properties;
  EXPECT_TRUE(properties.SetSopClassUid(OLESTR("1.2.840.10008.5.1.4.1.1.1.2.1")));
  EXPECT_EQ(properties.SopClassCode(), OLESTR("MGPRC"));
  EXPECT_EQ(properties.SopClassName(),
            OLESTR("Digital Mammography Image Storage - For Processing"));
  EXPECT_FALSE(properties.SetSopClassUid({}));
  EXPECT_EQ(properties.SopClassCode(), OLESTR("MGPRC"));
  EXPECT_TRUE(properties.SetSopClassUid(OLESTR("1.2.840.10008.5.1.4.1.1.1.2.1.1")));
  EXPECT_EQ(properties.SopClassCode(), OLESTR(""));
  EXPECT_EQ(properties.SopClassName(), OLESTR(""));
  EXPECT_TRUE(properties.SetTransferSyntax(OLESTR("1.2.840.987654.1.2.1")));
  EXPECT_EQ(properties.TransferSyntaxName(), OLESTR("Tarn Private Wavelet Compression"));
}

}  // namespace
}  // namespace quillon
