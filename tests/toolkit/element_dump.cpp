// Prints what the toolkit read from a file, for comparison with other readers, or writes it again.
//
//   element_dump FILE                   one line per element: path, VR, form and value
//   element_dump --encode UID FILE OUT  the data set again in that transfer syntax, as a file
//   element_dump --xml FILE             the header as XML in UTF-8, every value of an element,
//   without
//                                       the pixel data
//   element_dump --rewrite FROM TO      the DICOMDIR of one directory again in another; prints the
//                                       number of its records
//
// Line: "<path>\t<VR>\t<form>\t<value>". path: "ggggeeee", nested "ggggeeee[item].ggggeeee" with
// items from 0. form: "text" (values joined with "\", in hexadecimal), "numbers" (joined with "\"),
// "bytes" (in hexadecimal, OW in little endian), "items" (their count).
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "dicom/dict.h"
#include "dicom/dir_dicom_dir.h"
#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicom/file.h"
#include "dicom/log.h"
#include "dicom/read_file.h"
#include "dicomobjects/dicom_util.h"
#include "platform/services.h"

namespace {

using namespace quillon;

constexpr int kNotRead = 3;

std::string vrCode(DcVr vr) {
  if (vr == DcVr::OX) return "OX";
  if (vr == DcVr::XL) return "XL";
  if (vr == DcVr::XS) return "XS";
  std::string code;
  static_cast<void>(theDictionary().getVr(vr, &code));
  return code;
}

void print(const std::string& path, const DcElem& element, const char* form,
           const std::string& value) {
  std::printf("%s\t%s\t%s\t%s\n", path.c_str(), vrCode(element.resolvedVr()).c_str(), form,
              value.c_str());
}

std::string hex(const std::string& text) {
  std::string out;
  out.reserve(2 * text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    out += "0123456789abcdef"[byte >> 4];
    out += "0123456789abcdef"[byte & 0xF];
  }
  return out;
}

template <typename T>
std::string numbers(DcElem& element, const char* format) {
  std::string out;
  for (int i = 0; i < element.valueCount(); ++i) {
    T value{};
    std::array<char, 64> text{};
    if (element.getValue(value, i) != kDcOk) return "unreadable";
    std::snprintf(text.data(), text.size(), format, value);
    if (i > 0) out += '\\';
    out += text.data();
  }
  return out;
}

void dumpList(const DcElemList& list, const std::string& prefix);

void dumpElement(DcElem& element, const std::string& path) {
  switch (element.resolvedVr()) {
    case DcVr::SQ: {
      const auto& sequence = static_cast<const DcElemSq&>(element);
      print(path, element, "items", std::to_string(sequence.itemCount()));
      for (std::size_t i = 0; i < sequence.itemCount(); ++i) {
        dumpList(*sequence.item(i), path + "[" + std::to_string(i) + "].");
      }
      return;
    }
    case DcVr::SS:
    case DcVr::XS:
      print(path, element, "numbers", numbers<std::int16_t>(element, "%d"));
      return;
    case DcVr::US:
      print(path, element, "numbers", numbers<std::uint16_t>(element, "%u"));
      return;
    case DcVr::SL:
      print(path, element, "numbers", numbers<std::int32_t>(element, "%d"));
      return;
    case DcVr::UL:
    case DcVr::AT:
      print(path, element, "numbers", numbers<std::uint32_t>(element, "%u"));
      return;
    case DcVr::FL:
      print(path, element, "numbers", numbers<float>(element, "%.9g"));
      return;
    case DcVr::FD:
      print(path, element, "numbers", numbers<double>(element, "%.17g"));
      return;
    case DcVr::OB:
    case DcVr::OW:
    case DcVr::OF:
    case DcVr::OX:
    case DcVr::UN:
    case DcVr::UT: {
      std::string whole;
      for (const DcElemValueBuf& segment : element.segments()) {
        std::vector<std::uint8_t> bytes(segment.data(), segment.data() + segment.lengthBytes());
        if (element.resolvedVr() == DcVr::OW &&
            segment.transferSyntax() == DcUid::ExplicitBigEndian) {
          for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
        }
        whole.append(bytes.begin(), bytes.end());
      }
      print(path, element, "bytes", hex(whole));
      return;
    }
    default: {
      std::string joined;
      for (int i = 0; i < element.valueCount(); ++i) {
        const auto value = element.stringValue(i);
        if (i > 0) joined += '\\';
        if (value) joined += *value;
      }
      print(path, element, "text", hex(joined));
      return;
    }
  }
}

void dumpList(const DcElemList& list, const std::string& prefix) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    std::array<char, 9> tag{};
    std::snprintf(tag.data(), tag.size(), "%08x", list.at(i)->tag());
    dumpElement(*list.at(i), prefix + tag.data());
  }
}

int encode(const char* uid, DcElemList& list, const DcFileMetaInfo& meta, const char* out) {
  DcUid syntax = DcUid::None;
  if (theDictionary().getUidDef(uid, &syntax) != kDcOk) return 2;
  DcElemList header;
  header.add(std::make_unique<DcElem>(dcTag(0x0002, 0x0000), std::uint32_t{0}));
  const std::uint8_t version[2] = {0, 1};
  header.add(
      std::make_unique<DcElem>(dcTag(0x0002, 0x0001), version, 2U, DcUid::ExplicitLittleEndian));
  header.add(std::make_unique<DcElem>(dcTag(0x0002, 0x0002), meta.sopClassUid.c_str()));
  header.add(std::make_unique<DcElem>(dcTag(0x0002, 0x0003), meta.sopInstanceUid.c_str()));
  header.add(std::make_unique<DcElem>(dcTag(0x0002, 0x0010), uid));

  std::vector<std::uint8_t> bytes(132);
  std::memcpy(bytes.data() + 128, "DICM", 4);
  for (DcElemList* part : {&header, &list}) {
    const std::size_t at = bytes.size();
    bytes.resize(at + part->encodedLengthEstimate());
    std::uint32_t written = 0;
    const DcCode code = part->frame(bytes.data() + at, written, syntax);
    if (code != kDcOk) {
      std::fprintf(stderr, "frame: 0x%04x\n", code);
      return 1;
    }
    bytes.resize(at + written);
  }
  DcFile file;
  return file.open(out, DcFile::Mode::CreateOrTruncate) && file.write(bytes.data(), bytes.size()) &&
                 file.close()
             ? 0
             : 1;
}

std::size_t recordCount(const DcDirRec& record) {
  std::size_t total = record.lowerCount();
  for (std::size_t i = 0; i < record.lowerCount(); ++i) total += recordCount(*record.lower(i));
  return total;
}

int rewrite(const char* from, const char* to) {
  DcDirDicomDir directory(from);
  const DcCode code =
      directory.initialCode() != kDcOk ? directory.initialCode() : directory.write(to);
  if (code != kDcOk) {
    std::fprintf(stderr, "rewrite: 0x%04x\n", code);
    return 1;
  }
  std::printf("%zu\n", recordCount(directory));
  return 0;
}

int printXml(const char* path) {
  CDicomUtil util;
  if (!util.ReadFile(WidenText(path, FileSystemCodePage()), /*deferPixelData=*/false)) {
    return kNotRead;
  }
  Text xml;
  if (!util.GetHeaderXml(xml, std::numeric_limits<std::uint32_t>::max(), false)) return 1;
  const std::string utf8 = NarrowText(xml, CP_UTF8);
  return std::fwrite(utf8.data(), 1, utf8.size(), stdout) == utf8.size() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const bool encoding = argc == 5 && std::strcmp(argv[1], "--encode") == 0;
  const bool rewriting = argc == 4 && std::strcmp(argv[1], "--rewrite") == 0;
  const bool asXml = argc == 3 && std::strcmp(argv[1], "--xml") == 0;
  if (!encoding && !rewriting && !asXml && argc != 2) return 2;
  theDictionary();
  for (int level = 0; level < kDcLogLevels; ++level) {
    dcTheLog()->enable(static_cast<DcLogLevel>(level), false);
  }
  if (rewriting) return rewrite(argv[2], argv[3]);
  static_cast<void>(dcSetValueChecking(false));
  if (asXml) return printXml(argv[2]);
  DcFileMetaInfo meta;
  DcElemList list;
  const DcCode code = dirReadFile(argv[encoding ? 3 : 1], meta, list);
  if (code != kDcOk) {
    std::fprintf(stderr, "dirReadFile: 0x%04x\n", code);
    return kNotRead;
  }
  if (encoding) return encode(argv[2], list, meta, argv[4]);
  dumpList(list, "");
  return 0;
}
