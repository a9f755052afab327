#include "dicomobjects/dicom_object_list.h"

#include <gtest/gtest.h>

#include <string>

#include "element_map.h"
#include "support/text.h"

namespace quillon {
namespace {

using test::TempDir;

class ObjectList : public ::testing::Test {
 protected:
  Text file(const std::string& uid, const std::string& number) {
    return test::imageElements()
        .text(0x00080018, "UI", uid)
        .text(0x00200013, "IS", number)
        .write(directory_, std::to_string(++files_));
  }
  Text numberOf(const CDicomObjectProperties* object) {
    return object == nullptr ? Text(OLESTR("none")) : object->InstanceNumber();
  }

  TempDir directory_;
  CDicomObjectList list_;

 private:
  int files_ = 0;
};

TEST_F(ObjectList, FindsByUidAndByKeyAndTheFirstWins) {
  const std::string plain = "1.2.826.0.1.3680043.9.1";
  const std::string root = "1.2.840.987654.99.";
  // Frames of an image whose own UID is their key, and then that image.
  ASSERT_TRUE(list_.AddObject(file(root + plain + ".1", "1")));
  ASSERT_TRUE(list_.AddObject(file(root + plain + ".2", "2")));
  EXPECT_EQ(list_.FindBySopInstanceUid(OLESTR("1.2.826.0.1.3680043.9.1")), nullptr);
  ASSERT_TRUE(list_.AddObject(file(plain, "3")));
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.2", "4")));
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.2", "5")));
  ASSERT_EQ(list_.GetCount(), 5U);

  EXPECT_EQ(
      numberOf(list_.FindByInstanceUid(OLESTR("1.2.840.987654.99.1.2.826.0.1.3680043.9.1.1"))),
      OLESTR("1"));
  EXPECT_EQ(
      numberOf(list_.FindByInstanceUid(OLESTR("1.2.840.987654.99.1.2.826.0.1.3680043.9.1.2"))),
      OLESTR("2"));
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(OLESTR("1.2.826.0.1.3680043.9.1"))), OLESTR("1"));
  EXPECT_EQ(numberOf(list_.FindBySopInstanceUid(OLESTR("1.2.826.0.1.3680043.9.1"))), OLESTR("3"));
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(OLESTR("1.2.826.0.1.3680043.9.2"))), OLESTR("4"));
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(OLESTR("1.2.826.0.1.3680043.9"))), OLESTR("none"));
  EXPECT_EQ(list_.ErrorMessage(), OLESTR(""));
  EXPECT_EQ(list_.FindByInstanceUid({}), nullptr);
  EXPECT_EQ(list_.ErrorMessage(), OLESTR("The instance UID is invalid."));

  list_.RemoveAll();
  EXPECT_EQ(list_.GetCount(), 0U);
  EXPECT_EQ(list_.FindByInstanceUid(OLESTR("1.2.826.0.1.3680043.9.2")), nullptr);
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.2", "6")));
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(OLESTR("1.2.826.0.1.3680043.9.2"))), OLESTR("6"));
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
  std::filesystem::remove(std::filesystem::path(path));
  EXPECT_FALSE(list_.AddObject(util, false));
  ASSERT_TRUE(list_.AddObject(util, true));
  const CDicomObjectProperties* object = list_.FindByInstanceUid(OLESTR("1.2.3.4"));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->FileName(), path);
  EXPECT_EQ(object->FileSize(), 0U);
}

TEST(ObjectPropertiesCopies, ShareNothingWithTheOriginal) {
  CDicomObjectProperties original;
  original.SetModality(OLESTR("CT"));
  original.Image()->rows = 4;
  original.Image()->SetInstanceNumber(OLESTR("9"));
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
  struct {
    const char* what;
    bool (CDicomObjectProperties::*set)(TextView);
    const Text& (CDicomObjectProperties::*get)() const;
    std::size_t limit;
  } const cases[] = {
      {"file name", &CDicomObjectProperties::SetFileName, &CDicomObjectProperties::FileName, 260},
      {"frame key", &CDicomObjectProperties::SetFrameKey, &CDicomObjectProperties::FrameKey, 260},
      {"version name", &CDicomObjectProperties::SetImplementationVersionName,
       &CDicomObjectProperties::ImplementationVersionName, 1024},
      {"class UID", &CDicomObjectProperties::SetImplementationClassUid,
       &CDicomObjectProperties::ImplementationClassUid, 1024},
      {"instance key", &CDicomObjectProperties::SetInstanceKey,
       &CDicomObjectProperties::InstanceKey, 1024},
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
