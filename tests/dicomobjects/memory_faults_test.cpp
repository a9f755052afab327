// Objects when memory runs out or the disk fails.
#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <string>

#include "dicomobjects/dicom_object_list.h"
#include "element_map.h"
#include "support/failing_calls.h"
#include "support/failing_new.h"

namespace quillon {
namespace {

using test::TempDir;

// What an object list answers when the n-th allocation fails, for every n: a sentence or an
// exception, and a list that is as it was.
TEST(ObjectProperties, WithoutMemoryNothingIsAddedToAList) {
  const TempDir directory;
  const Text path = test::imageElements().write(directory, "image.dcm");
  const std::string name(path.begin(), path.end());
  const auto outcomes = test::withEachAllocationFailing([&](long n, bool& happened) {
    CDicomObjectList list;
    bool isAdded = false;
    try {
      const test::FailingNew failing(n);
      isAdded = list.AddObject(path);
      happened = failing.happened();
    } catch (const std::bad_alloc&) {
      happened = true;
    }
    EXPECT_EQ(list.GetCount(), isAdded ? 1U : 0U) << n;
    EXPECT_EQ(list.FindByInstanceUid(u"1.2.826.0.1.3680043.2.1545.1") != nullptr, isAdded) << n;
    return std::string(list.ErrorMessage().begin(), list.ErrorMessage().end());
  });
  EXPECT_TRUE(outcomes.contains("Cannot allocate storage for new image information."));
  EXPECT_TRUE(
      outcomes.contains("Cannot allocate storage for new image information from " + name + "."));

  CDicomObjectProperties properties;
  {
    const test::FailingNew failing(1);
    EXPECT_EQ(properties.Image(), nullptr);
  }
  EXPECT_EQ(properties.ErrorMessage(), u"Cannot allocate storage for new image information.");
}

// Every kind of value, in the data set and in nested items, some of them out of order.
test::ElementMap everyKind() {
  using test::ElementMap;
  const std::string text(40, 'x');
  const ElementMap deep = ElementMap().text(0x00080104, "LO", text).us(0x00280010, {3});
  const ElementMap item = ElementMap().text(0x00080100, "SH", "CODE").sequence(0x0040A168, {deep});
  ElementMap map = test::imageElements();
  map.sequence(0x0040A730, {item, item}).text(0x00080008, "CS", "ORIGINAL\\PRIMARY\\AXIAL");
  map.raw(0x00091010, "UN", {1, 2, 3, 4}).text(0x00100020, "UN", text);
  map.text(0x0040A160, "UT", text).us(0x00281101, {1, 2, 3}).text(0x00104000, "LT", text);
  test::DataSetBytes outOfOrder;
  outOfOrder.text(0x00401001, "SH", "LATE").text(0x00100010, "PN", text + "^" + text);
  return map.put(0x00401001, outOfOrder);
}

// Whatever allocation fails, nobody is told that an incomplete header is the file's.
TEST(ReadingAFile, WithoutMemoryIsWholeOrSaysThatItIsNot) {
  const test::UncheckedValues asInTheProgram;
  const TempDir directory;
  const Text path = everyKind().write(directory, "every.dcm");
  const auto headerOf = [](CDicomUtil& util) {
    Text xml;
    EXPECT_TRUE(util.GetHeaderXml(xml, 1000, /*includePixelData=*/false));
    return xml;
  };
  for (const bool isDeferred : {true, false}) {
    SCOPED_TRACE(isDeferred ? "up to the pixel data" : "whole");
    CDicomUtil undisturbed;
    ASSERT_TRUE(undisturbed.ReadFile(path, isDeferred));
    undisturbed.SettleUnknownVrs();
    ASSERT_FALSE(undisturbed.LostElements());
    const Text whole = headerOf(undisturbed);
    const auto outcomes = test::withEachAllocationFailing([&](long n, bool& happened) {
      SCOPED_TRACE(n);
      CDicomUtil util;
      bool isRead = false;
      {
        const test::FailingNew failing(n);
        isRead = util.ReadFile(path, isDeferred);
        try {
          util.SettleUnknownVrs();
        } catch (const std::bad_alloc&) {
          isRead = false;
        }
        happened = failing.happened();
      }
      if (!isRead) return std::string("refused");
      // What group 0002 lost can be made up for by the data set.
      const bool isWhole = headerOf(util) == whole;
      EXPECT_TRUE(isWhole || util.LostElements());
      return std::string(isWhole ? "whole" : "incomplete");
    });
    EXPECT_EQ(outcomes, (std::set<std::string>{"incomplete", "refused", "whole"}));
  }
}

// A header that found no memory in the middle is none.
TEST(RenderingAHeader, WithoutMemoryIsWholeOrFails) {
  const TempDir directory;
  test::Bytes bytes(128, 0);
  for (const char letter : {'D', 'I', 'C', 'M'}) bytes.push_back(static_cast<std::uint8_t>(letter));
  test::DataSetBytes group;
  group.ul(0x00020000, {0}).text(0x00020010, "UI", test::kExplicitLittleUid);
  group.text(0x00020100, "UI", "1.2.5").raw(0x00020102, "OB", test::Bytes(40, 7));
  for (const test::Bytes& part : {group.take(), everyKind().bytes()}) {
    bytes.insert(bytes.end(), part.begin(), part.end());
  }
  test::writeBytes(directory / "private.dcm", bytes);
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(test::WideOf(directory / "private.dcm"), /*deferPixelData=*/true));
  const auto render = [&util] {
    Text xml;
    return util.GetHeaderXml(xml, 1000, /*includePixelData=*/false) ? xml : Text();
  };
  const Text whole = render();
  ASSERT_NE(whole.find(OLESTR("<value>7</value>")), Text::npos);
  const auto outcomes = test::withEachAllocationFailing([&](long n, bool& happened) {
    Text xml;
    try {
      const test::FailingNew failing(n);
      xml = render();
      happened = failing.happened();
    } catch (const std::bad_alloc&) {
      happened = true;
    }
    EXPECT_TRUE(xml.empty() || xml == whole) << n;
    return std::string(xml.empty() ? "none" : "whole");
  });
  EXPECT_EQ(outcomes, (std::set<std::string>{"none", "whole"}));
}

TEST(ReadingBytesOfAFile, FailsWhereTheDiskDoes) {
  const TempDir directory;
  test::writeText(directory / "ten", "0123456789");
  const auto read = [&](CBuffer& buffer) {
    return CDicomUtil::ReadUNCToBuffer(test::WideOf(directory / "ten"), 2, 3, buffer);
  };
  for (const test::Call call : {test::Call::Open, test::Call::Seek, test::Call::Read}) {
    CBuffer buffer;
    const test::FailingCall failing(call, 1, EIO);
    EXPECT_FALSE(read(buffer));
    EXPECT_TRUE(failing.happened());
    EXPECT_TRUE(read(buffer)) << "nothing is left open";
  }
}

}  // namespace
}  // namespace quillon
