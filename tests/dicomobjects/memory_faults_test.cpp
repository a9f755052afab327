// Objects when memory runs out.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "dicomobjects/dicom_object_list.h"
#include "element_map.h"
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

}  // namespace
}  // namespace quillon
