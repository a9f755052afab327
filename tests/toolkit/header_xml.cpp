// Prints the header of a DICOM file as XML in UTF-8, every value of an element, without the pixel
// data: for comparison with element_dump. Exit status 3 when the file cannot be read.
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include "dicom/dict.h"
#include "dicom/elem.h"
#include "dicom/log.h"
#include "dicomobjects/dicom_util.h"
#include "platform/services.h"

int main(int argc, char** argv) {
  using namespace quillon;
  if (argc != 2) return 2;
  theDictionary();
  for (int level = 0; level < kDcLogLevels; ++level) {
    dcTheLog()->enable(static_cast<DcLogLevel>(level), false);
  }
  dcSetValueChecking(false);
  CDicomUtil util;
  if (!util.ReadFile(WidenText(argv[1], FileSystemCodePage()), /*deferPixelData=*/false)) return 3;
  Text xml;
  if (!util.GetHeaderXml(xml, std::numeric_limits<std::uint32_t>::max(), false)) return 1;
  const std::string utf8 = NarrowText(xml, CP_UTF8);
  return std::fwrite(utf8.data(), 1, utf8.size(), stdout) == utf8.size() ? 0 : 1;
}
