#include "toolkit_test_tools.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>

#include "dicom/dict.h"
#include "dicom/log.h"

namespace quillon::test {
namespace {

constexpr std::size_t kShownBytes = 32;

std::string hex(std::uint32_t value, int digits) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%0*x", digits, static_cast<unsigned>(value));
  return text.data();
}

std::string describeSegment(const DcElemValueBuf& segment, DcVr vr) {
  Bytes bytes(segment.data(), segment.data() + segment.lengthBytes());
  const std::size_t unit = vr == DcVr::OF ? 4 : 2;
  const bool hasUnits = vr == DcVr::OW || vr == DcVr::OX || vr == DcVr::OF;
  for (std::size_t i = 0; hasUnits && i + unit <= bytes.size(); i += unit) {
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(i);
    if (segment.transferSyntax() == kBig) std::reverse(at, at + static_cast<int>(unit));
  }
  std::string text;
  if (bytes.size() <= kShownBytes) {
    for (const std::uint8_t byte : bytes) text += hex(byte, 2);
    return text;
  }
  std::uint32_t sum = 2166136261U;
  for (const std::uint8_t byte : bytes) sum = (sum ^ byte) * 16777619U;
  return std::to_string(bytes.size()) + " bytes " + hex(sum, 8);
}

std::string describeValues(DcElem& element) {
  std::string text;
  for (const DcElemValueBuf& segment : element.segments()) {
    if (!text.empty()) text += '/';
    text += describeSegment(segment, element.resolvedVr());
  }
  if (!element.segments().empty() || element.valueCount() == 0) return text;
  if (!element.stringValue(0)) return valuesOf(element);
  for (int i = 0; i < element.valueCount(); ++i) {
    text.append(i > 0 ? "/" : "").append(*element.stringValue(i));
  }
  return text;
}

void describeInto(const DcElemList& list, const std::string& indent, std::string& lines) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    DcElem& element = *list.at(i);
    const DcVr vr = element.resolvedVr();
    std::string code = vr == DcVr::OX ? "OX" : vr == DcVr::XS ? "XS" : vr == DcVr::XL ? "XL" : "";
    if (code.empty()) static_cast<void>(theDictionary().getVr(vr, &code));
    if (!lines.empty()) lines += '\n';
    lines += indent + hex(element.tag(), 8) + ' ' + code;
    if (const auto* sequence = dynamic_cast<DcElemSq*>(&element)) {
      for (std::size_t item = 0; item < sequence->itemCount(); ++item) {
        lines += '\n' + indent + ">item";
        describeInto(*sequence->item(item), indent + '>', lines);
      }
      continue;
    }
    const std::string values = describeValues(element);
    if (!values.empty()) lines += ' ' + values;
  }
}

}  // namespace

ToolkitTest::ToolkitTest() {
  theDictionary();
  for (const DcLogLevel level : {DcLogLevel::Error, DcLogLevel::Warning}) {
    dcTheLog()->setFile(level, (logDir_ / "log").string());
  }
}

ToolkitTest::~ToolkitTest() {
  static_cast<void>(dcSetValueChecking(true));
  for (const DcLogLevel level : {DcLogLevel::Error, DcLogLevel::Warning}) {
    dcTheLog()->setFile(level, "");
  }
}

std::string ToolkitTest::logged() {
  constexpr std::string_view kFileOpens = ", file '";
  std::string messages;
  std::ifstream in(logDir_ / "log");
  for (std::string line; std::getline(in, line);) {
    const std::size_t open = line.find('<');
    const std::size_t close = line.find("> ", open);
    if (!messages.empty()) messages += '\n';
    if (open == std::string::npos || close == std::string::npos) {
      messages += line;
      continue;
    }
    lastFunction_ = line.substr(open + 1, close - open - 1);
    const std::size_t file = line.ends_with('\'') ? line.rfind(kFileOpens) : std::string::npos;
    lastFile_ = file != std::string::npos ? line.substr(file + kFileOpens.size()) : "";
    if (!lastFile_.empty()) lastFile_.pop_back();
    messages += line.substr(close + 2, file - close - 2);
  }
  in.close();
  std::filesystem::remove(logDir_ / "log");
  return messages;
}

void QuietLog::enable(bool on) {
  theDictionary();
  for (const DcLogLevel level : {DcLogLevel::Error, DcLogLevel::Warning}) {
    dcTheLog()->enable(level, on);
  }
}

Bytes hexBytes(std::string_view digits) {
  std::string packed(digits);
  std::erase(packed, ' ');
  Bytes bytes;
  for (std::size_t i = 0; i < packed.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(packed.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

Bytes firstOf(const Bytes& bytes, std::size_t count) {
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::string valuesOf(DcElem& element) {
  std::string values = element.valueCount() == 0 ? "-" : "";
  element.resetIterator();
  for (int i = 0; i < element.valueCount(); ++i) {
    std::array<char, 20'000> buffer{};
    EXPECT_EQ(element.getValue(buffer.data(), buffer.size(), DcElem::kAtIterator), kDcOk);
    values.append(i > 0 ? "/" : "").append(buffer.data());
  }
  element.resetIterator();
  return values;
}

std::string describe(const DcElemList& list) {
  std::string lines;
  describeInto(list, "", lines);
  return lines;
}

DcCode parseInto(DcElemList& list, const Bytes& bytes, DcUid transferSyntax) {
  // A copy of exactly these bytes: reading behind them is seen by the address sanitizer.
  const Bytes exact(bytes.begin(), bytes.end());
  return list.parse(exact.data(), static_cast<std::uint32_t>(exact.size()), transferSyntax);
}

std::string parsed(const Bytes& bytes, DcUid transferSyntax, DcCode expected) {
  DcElemList list;
  EXPECT_EQ(parseInto(list, bytes, transferSyntax), expected);
  return describe(list);
}

}  // namespace quillon::test
