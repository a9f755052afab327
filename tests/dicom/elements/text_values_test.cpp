#include "dicom/text_values.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using TextValues = ToolkitTest;

TEST_F(TextValues, EachOfManyIsFoundByItsIndex) {
  static_cast<void>(dcSetValueChecking(false));
  for (const int count : {1, 2, 63, 64, 65, 128, 129, 300}) {
    SCOPED_TRACE(count);
    // Runs of empty values, of every length up to twelve, between values of one to three digits.
    std::vector<std::string> expected;
    for (int i = 0; i < count; ++i) {
      expected.insert(expected.end(), static_cast<std::size_t>(i % 13), "");
      expected.push_back(std::to_string(i));
    }
    std::string text = expected.front();
    for (std::size_t i = 1; i < expected.size(); ++i) text += "\\" + expected[i];
    DcElem element(kPrivate, DcVr::LO);
    ASSERT_EQ(element.addText(text), kDcOk);
    const auto expectAll = [&](const DcElem& checked) {
      ASSERT_EQ(checked.valueCount(), static_cast<int>(expected.size()));
      for (std::size_t i = expected.size(); i-- > 0;) {
        ASSERT_EQ(checked.stringValue(static_cast<int>(i)), expected[i]) << i;
      }
      EXPECT_FALSE(checked.stringValue(static_cast<int>(expected.size())));
      EXPECT_FALSE(checked.stringValue(-1));
    };
    expectAll(element);
    // One that is replaced by a longer one, and one by one, moves all behind it.
    for (const std::size_t i : {std::size_t{0}, expected.size() / 2, expected.size() - 1}) {
      expected[i] = "longer than before";
      ASSERT_EQ(element.addValue(expected[i].c_str(), static_cast<int>(i)), kDcOk);
    }
    ASSERT_EQ(element.addText("\\\\end"), kDcOk);
    expected.insert(expected.end(), {"", "", "end"});
    expectAll(element);
    expectAll(*element.copy());
    std::string joined;
    for (const std::string& value : expected) joined += (joined.empty() ? "" : "\\") + value;
    EXPECT_EQ(framed(element, kImplicit),
              DataSetBytes(Syntax::ImplicitLittle).text(kPrivate, "LO", joined).take());
  }
}

TEST_F(TextValues, TheLastOfManyStayWithinTheVm) {
  DcElem element(0x00041500);  // one to eight, CS
  std::string text;
  for (int i = 0; i < 100; ++i) text += std::to_string(i) + "\\";
  ASSERT_EQ(element.addText(text), kDcOk);
  EXPECT_EQ(valuesOf(element), "92/93/94/95/96/97/98/99");
  ASSERT_EQ(element.addText(std::string(100, '\\') + "X"), kDcOk);
  EXPECT_EQ(valuesOf(element), "///////X");
}

#ifdef __GLIBC__
TEST_F(TextValues, TakeLittleMoreMemoryThanTheirBytes) {
  constexpr std::size_t kBytes = 2'000'000;
  const std::string texts[] = {std::string(kBytes, '\\'), [] {
                                 std::string text;
                                 while (text.size() < kBytes) text += "1\\";
                                 return text;
                               }()};
  for (const std::string& text : texts) {
    const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    DcElem element(kPrivate, DcVr::LO);
    ASSERT_EQ(element.addText(text), kDcOk);
    const std::size_t taken = mallinfo2().uordblks + mallinfo2().hblkhd - before;
    EXPECT_LT(taken, 3 * kBytes / 2) << element.valueCount();
  }
}
#endif

}  // namespace
}  // namespace quillon::test
