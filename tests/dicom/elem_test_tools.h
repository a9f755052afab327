// What the tests of data elements share: a fixture that reads the log, and an element's values.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "dicom/elem.h"
#include "dir_test_tools.h"

namespace quillon::test {

using Lines = std::vector<std::string>;
using Values = std::vector<std::string>;

constexpr DcTag kPrivate = 0x00091010;  // any VR can be given to it, and no VM is known
constexpr DcTag kPixelData = 0x7FE00010;

class Element : public testing::Test {
 protected:
  ~Element() override { dcSetValueChecking(true); }

  LoggedLines log_;
};

// Every value as getValue answers it in text.
inline Values valuesOf(DcElem& element) {
  Values values;
  element.resetIterator();
  for (int i = 0; i < element.valueCount(); ++i) {
    std::array<char, 20'000> buffer{};
    EXPECT_EQ(element.getValue(buffer.data(), buffer.size(), DcElem::kAtIterator), kDcOk);
    values.emplace_back(buffer.data());
  }
  element.resetIterator();
  return values;
}

}  // namespace quillon::test
