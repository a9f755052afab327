#include "parse_test_tools.h"

#include <algorithm>
#include <cstdio>

#include "dicom/dict.h"
#include "dicom/elem_sq.h"
#include "dicom/log.h"

namespace quillon::test {
namespace {

constexpr std::size_t kShownBytes = 32;

std::string hex(std::uint32_t value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*x", digits, static_cast<unsigned>(value));
  return text;
}

std::size_t unitOf(DcVr vr) {
  return vr == DcVr::OW || vr == DcVr::OX ? 2 : vr == DcVr::OF ? 4 : 1;
}

std::string describeBytes(Bytes bytes, std::size_t unit, bool swap) {
  if (swap) {
    for (std::size_t i = 0; i + unit <= bytes.size(); i += unit) {
      std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(i),
                   bytes.begin() + static_cast<std::ptrdiff_t>(i + unit));
    }
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

std::string describeValues(DcElem& elem) {
  std::string text;
  const DcVr vr = elem.resolvedVr();
  for (const DcElemValueBuf& segment : elem.segments()) {
    if (!text.empty()) text += '|';
    text += describeBytes(Bytes(segment.data(), segment.data() + segment.lengthBytes()), unitOf(vr),
                          segment.transferSyntax() == DcUid::ExplicitBigEndian);
  }
  if (!elem.segments().empty()) return text;
  elem.resetIterator();
  for (int i = 0; i < elem.valueCount(); ++i) {
    if (i > 0) text += '|';
    if (const std::string* value = elem.stringValue(i)) {
      text += *value;
      continue;
    }
    char value[64] = "?";
    elem.getValue(value, sizeof value, i);
    text += value;
  }
  return text;
}

void describeInto(const DcElemList& list, const std::string& indent,
                  std::vector<std::string>& lines) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    DcElem& elem = *list.at(i);
    std::string code;
    const DcVr vr = elem.resolvedVr();
    if (vr == DcVr::OX || vr == DcVr::XS || vr == DcVr::XL) {
      code = vr == DcVr::OX ? "OX" : vr == DcVr::XS ? "XS" : "XL";
    } else {
      theDictionary().getVr(vr, &code);
    }
    std::string line = indent + hex(elem.tag(), 8) + ' ' + code;
    if (const auto* sequence = dynamic_cast<DcElemSq*>(&elem)) {
      lines.push_back(line);
      for (std::size_t item = 0; item < sequence->itemCount(); ++item) {
        lines.push_back(indent + ">item");
        describeInto(*sequence->item(item), indent + '>', lines);
      }
      continue;
    }
    const std::string values = describeValues(elem);
    lines.push_back(values.empty() ? line : line + ' ' + values);
  }
}

}  // namespace

QuietLog::QuietLog() {
  theDictionary();
  for (const DcLogLevel level : {DcLogLevel::Error, DcLogLevel::Warning}) {
    dcTheLog()->enable(level, false);
  }
}

QuietLog::~QuietLog() {
  for (const DcLogLevel level : {DcLogLevel::Error, DcLogLevel::Warning}) {
    dcTheLog()->enable(level, true);
  }
}

DcUid uidOf(Syntax syntax) {
  switch (syntax) {
    case Syntax::ImplicitLittle:
      return DcUid::ImplicitLittleEndian;
    case Syntax::ExplicitBig:
      return DcUid::ExplicitBigEndian;
    default:
      return DcUid::ExplicitLittleEndian;
  }
}

const char* nameOf(Syntax syntax) {
  switch (syntax) {
    case Syntax::ImplicitLittle:
      return "implicit little endian";
    case Syntax::ExplicitBig:
      return "explicit big endian";
    default:
      return "explicit little endian";
  }
}

std::vector<std::string> describe(const DcElemList& list) {
  std::vector<std::string> lines;
  describeInto(list, "", lines);
  return lines;
}

DcCode parseInto(DcElemList& list, const Bytes& bytes, DcUid transferSyntax) {
  // A copy of exactly these bytes: reading behind them is seen by the address sanitizer.
  const Bytes exact(bytes.begin(), bytes.end());
  return list.parse(exact.data(), static_cast<std::uint32_t>(exact.size()), transferSyntax);
}

std::vector<std::string> parsed(const Bytes& bytes, DcUid transferSyntax, DcCode& code) {
  DcElemList list;
  code = parseInto(list, bytes, transferSyntax);
  return describe(list);
}

}  // namespace quillon::test
