#include "header_json.h"

#include <charconv>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <vector>

#include "dicomobjects/header_xml_reader.h"
#include "media_job.h"

namespace quillon::cli {

namespace {

std::string plain(TextView text) {
  Text unescaped;
  AppendUnescaped(unescaped, text);
  return narrow(unescaped);
}

Json numberOrNull(TextView text) {
  const std::string digits = narrow(text);
  std::uint64_t number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return read.ec == std::errc() ? Json(number) : Json();
}

// "00100010", as DICOM's own JSON has them.
std::string tagOf(const HeaderElement& element) {
  std::string tag = narrow(element.group) + narrow(element.element);
  for (char& c : tag) {
    if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
  }
  return tag;
}

Json valuesOf(HeaderXmlReader& reader) {
  Json values = Json::array();
  const HeaderElement& element = reader.Element();
  if (!element.hasValues) {
    if (!element.value.empty()) values.push_back(plain(element.value));
    return values;
  }
  for (TextView value; reader.NextValue(value);) values.push_back(plain(value));
  return values;
}

}  // namespace

void addDataSet(Json& object, TextView headerXml) {
  object["charset"] = nullptr;
  object["code_page"] = nullptr;
  object["elements"] = headerXml.empty() ? Json() : Json::array();
  if (headerXml.empty()) return;
  HeaderXmlReader reader(headerXml);
  // Where the next element or item goes: only the last one grows, so the others stay in their
  // place.
  std::vector<Json*> lists{&object["elements"]};
  using Part = HeaderXmlReader::Part;
  for (Part part = reader.Next(); part != Part::End; part = reader.Next()) {
    switch (part) {
      case Part::CharacterSet:
        object["charset"] = textOrNull(plain(reader.Terms()));
        object["code_page"] = numberOrNull(reader.CodePage());
        break;
      case Part::Element: {
        const HeaderElement& element = reader.Element();
        Json& one = lists.back()->emplace_back();
        one["tag"] = tagOf(element);
        one["vr"] = plain(element.vr);
        one["name"] = element.name == element.element ? Json() : Json(plain(element.name));
        if (!element.title.empty()) one["title"] = plain(element.title);
        if (element.vr == OLESTR("SQ")) {
          lists.push_back(&(one["items"] = Json::array()));
          break;
        }
        one["values"] = valuesOf(reader);
        if (!element.meaning.empty()) one["meaning"] = plain(element.meaning);
        if (element.count != element.total) one["total"] = numberOrNull(element.total);
        break;
      }
      case Part::Item:
        lists.push_back(&lists.back()->emplace_back(Json::array()));
        break;
      case Part::ItemEnd:
      case Part::SequenceEnd:
        if (lists.size() > 1) lists.pop_back();
        break;
      case Part::End:
        break;
    }
  }
}

}  // namespace quillon::cli
