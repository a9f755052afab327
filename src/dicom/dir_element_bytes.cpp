#include "dir_element_bytes.h"

#include "byte_order.h"
#include "dicom/log.h"

namespace quillon {

namespace {

constexpr DcTag kItem = 0xFFFEE000;
constexpr std::size_t kLongestShortForm = 0xFFFE;  // the length field counts the pad byte too

}  // namespace

void DcDirElementBytes::put16(std::uint16_t value) {
  const std::size_t at = file_.size();
  file_.resize(at + sizeof value);
  storeLe16(&file_[at], value);
}

void DcDirElementBytes::put32(std::uint32_t value) {
  const std::size_t at = file_.size();
  file_.resize(at + sizeof value);
  storeLe32(&file_[at], value);
}

void DcDirElementBytes::header(DcTag tag, const char* vr) {
  put16(dcGroup(tag));
  put16(dcElement(tag));
  file_.insert(file_.end(), vr, vr + 2);
}

void DcDirElementBytes::text(DcTag tag, const char* vr, std::string_view value) {
  if (value.size() > kLongestShortForm) {
    dcLog(DcLogLevel::Error, "DcDirRec::frame",
          "Element (%04x,%04x) - Value Length 0x%x is too large for Explicit Transfer Syntax",
          dcGroup(tag), dcElement(tag), static_cast<unsigned>(value.size()));
    code_ = kDcNotAccepted;
    value = {};
  }
  header(tag, vr);
  put16(static_cast<std::uint16_t>(value.size() + value.size() % 2));
  file_.insert(file_.end(), value.begin(), value.end());
  const bool isUid = vr[0] == 'U';
  if (value.size() % 2 != 0) file_.push_back(isUid ? 0 : ' ');
}

void DcDirElementBytes::parts(DcTag tag, const char* vr, const std::vector<std::string>& values) {
  std::string joined;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) joined += '\\';
    joined += values[i];
  }
  text(tag, vr, joined);
}

std::size_t DcDirElementBytes::ul(DcTag tag, std::uint32_t value) {
  header(tag, "UL");
  put16(sizeof value);
  put32(value);
  return file_.size() - sizeof value;
}

std::size_t DcDirElementBytes::us(DcTag tag, std::uint16_t value) {
  header(tag, "US");
  put16(sizeof value);
  put16(value);
  return file_.size() - sizeof value;
}

void DcDirElementBytes::ob(DcTag tag, const std::uint8_t* bytes, std::size_t lengthBytes) {
  header(tag, "OB");
  put16(0);
  put32(static_cast<std::uint32_t>(lengthBytes + lengthBytes % 2));
  file_.insert(file_.end(), bytes, bytes + lengthBytes);
  if (lengthBytes % 2 != 0) file_.push_back(0);
}

std::size_t DcDirElementBytes::itemHeader() {
  put16(dcGroup(kItem));
  put16(dcElement(kItem));
  put32(0);
  return file_.size() - sizeof(std::uint32_t);
}

std::size_t DcDirElementBytes::sequenceHeader(DcTag tag) {
  header(tag, "SQ");
  put16(0);
  put32(0);
  return file_.size() - sizeof(std::uint32_t);
}

}  // namespace quillon
