#include "dicomobjects/dicom_object_list.h"

#include <gtest/gtest.h>

#include <string>

#include "element_map.h"

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
    return object == nullptr ? Text(u"none") : object->InstanceNumber();
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
  EXPECT_EQ(list_.FindBySopInstanceUid(u"1.2.826.0.1.3680043.9.1"), nullptr);
  ASSERT_TRUE(list_.AddObject(file(plain, "3")));
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.2", "4")));
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.2", "5")));
  ASSERT_EQ(list_.GetCount(), 5U);

  EXPECT_EQ(numberOf(list_.FindByInstanceUid(u"1.2.840.987654.99.1.2.826.0.1.3680043.9.1.1")),
            u"1");
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(u"1.2.840.987654.99.1.2.826.0.1.3680043.9.1.2")),
            u"2");
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(u"1.2.826.0.1.3680043.9.1")), u"1");
  EXPECT_EQ(numberOf(list_.FindBySopInstanceUid(u"1.2.826.0.1.3680043.9.1")), u"3");
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(u"1.2.826.0.1.3680043.9.2")), u"4");
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(u"1.2.826.0.1.3680043.9")), u"none");
  EXPECT_EQ(list_.ErrorMessage(), u"");
  EXPECT_EQ(list_.FindByInstanceUid({}), nullptr);
  EXPECT_EQ(list_.ErrorMessage(), u"The instance UID is invalid.");

  list_.RemoveAll();
  EXPECT_EQ(list_.GetCount(), 0U);
  EXPECT_EQ(list_.FindByInstanceUid(u"1.2.826.0.1.3680043.9.2"), nullptr);
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.2", "6")));
  EXPECT_EQ(numberOf(list_.FindByInstanceUid(u"1.2.826.0.1.3680043.9.2")), u"6");
}

TEST_F(ObjectList, StaysAsItWasWhenAFileIsRefused) {
  ASSERT_TRUE(list_.AddObject(file("1.2.826.0.1.3680043.9.1", "1")));
  EXPECT_FALSE(list_.AddObject(Text()));
  EXPECT_EQ(list_.ErrorMessage(), u"The filename is invalid.");
  const Text missing = (directory_ / "missing").u16string();
  EXPECT_FALSE(list_.AddObject(missing));
  EXPECT_EQ(list_.ErrorMessage(),
            u"Cannot read the DICOM file \"" + missing + u"\" for processing.");
  EXPECT_FALSE(list_.AddObject(file("1.2.3.4", "2")));
  EXPECT_EQ(list_.ErrorMessage(), u"The instance UID is invalid.");
  EXPECT_EQ(list_.GetCount(), 1U);
}

TEST_F(ObjectList, TakesALoadedFileWithoutReadingItAgain) {
  const Text path = file("1.2.3.4", "2");
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(path, true));
  std::filesystem::remove(std::filesystem::path(path));
  EXPECT_FALSE(list_.AddObject(util, false));
  ASSERT_TRUE(list_.AddObject(util, true));
  const CDicomObjectProperties* object = list_.FindByInstanceUid(u"1.2.3.4");
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->FileName(), path);
  EXPECT_EQ(object->FileSize(), 0U);
}

TEST(ObjectPropertiesCopies, ShareNothingWithTheOriginal) {
  CDicomObjectProperties original;
  original.SetModality(u"CT");
  original.Image()->rows = 4;
  original.Image()->SetInstanceNumber(u"9");
  original.SetErrorMessage(TextView(u"a sentence"));
  CDicomObjectProperties copy(original);
  original.Image()->rows = 5;
  original.Clear();
  EXPECT_EQ(copy.Modality(), u"CT");
  EXPECT_EQ(copy.Image()->rows, 4);
  EXPECT_EQ(copy.InstanceNumber(), u"9");
  EXPECT_EQ(copy.ErrorMessage(), u"a sentence");
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
    const Text longest(c.limit, u'a');
    EXPECT_TRUE((properties.*c.set)(longest));
    EXPECT_FALSE((properties.*c.set)(Text(c.limit + 1, u'b')));
    EXPECT_FALSE((properties.*c.set)(Text()));
    EXPECT_EQ((properties.*c.get)(), longest);
    properties.SetAllowEmpty(true);
    EXPECT_TRUE((properties.*c.set)(Text()));
    EXPECT_EQ((properties.*c.get)(), u"");
  }
}

TEST(SopClassTexts, FollowTheUid) {
  CDicomObjectProperties properties;
  EXPECT_TRUE(properties.SetSopClassUid(u"1.2.840.10008.5.1.4.1.1.1.2.1"));
  EXPECT_EQ(properties.SopClassCode(), u"MGPRC");
  EXPECT_EQ(properties.SopClassName(), u"Digital Mammography Image Storage - For Processing");
  EXPECT_FALSE(properties.SetSopClassUid({}));
  EXPECT_EQ(properties.SopClassCode(), u"MGPRC");
  EXPECT_TRUE(properties.SetSopClassUid(u"1.2.840.10008.5.1.4.1.1.1.2.1.1"));
  EXPECT_EQ(properties.SopClassCode(), u"");
  EXPECT_EQ(properties.SopClassName(), u"");
  EXPECT_TRUE(properties.SetTransferSyntax(u"1.2.840.987654.1.2.1"));
  EXPECT_EQ(properties.TransferSyntaxName(), u"Tarn Private Wavelet Compression");
}

}  // namespace
}  // namespace quillon
