#include "dir_element_bytes.h"

#include <algorithm>
#include <cstring>

#include "dicom/byte_order.h"
#include "dicom/dict.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"

namespace quillon {

namespace {

constexpr std::size_t kLongestShortForm = 0xFFFE;  // the length field counts the pad byte too
constexpr std::size_t kVrBytes = 2;

const VrRow& rowOf(DcTag tag) { return vrRow(dcTagVr(tag)); }

}  // namespace

std::uint8_t* DcDirElementBytes::grow(std::size_t bytes) {
  const std::size_t at = file_.size();
  file_.resize(at + bytes);
  return &file_[at];
}

std::uint8_t* DcDirElementBytes::shortForm(DcTag tag, std::size_t valueBytes) {
  std::uint8_t* header = grow(kShortHeaderBytes + valueBytes);
  storeTag(header, tag, false);
  std::memcpy(header + sizeof(DcTag), rowOf(tag).code, kVrBytes);
  storeLe16(header + sizeof(DcTag) + kVrBytes, static_cast<std::uint16_t>(valueBytes));
  return header + kShortHeaderBytes;
}

std::uint8_t* DcDirElementBytes::longForm(DcTag tag, std::size_t valueBytes) {
  std::uint8_t* header = grow(kLongHeaderBytes + valueBytes);
  storeTag(header, tag, false);
  std::memcpy(header + sizeof(DcTag), rowOf(tag).code, kVrBytes);
  storeLe32(header + kShortHeaderBytes, static_cast<std::uint32_t>(valueBytes));
  return header + kLongHeaderBytes;
}

void DcDirElementBytes::text(DcTag tag, std::string_view value) {
  if (value.size() > kLongestShortForm) {
    dcLog(DcLogLevel::Error, "DcDirRec::frame",
          "Element (%04x,%04x) - Value Length 0x%x is too large for Explicit Transfer Syntax",
          dcGroup(tag), dcElement(tag), static_cast<unsigned>(value.size()));
    code_ = kDcNotAccepted;
    value = {};
  }
  const bool isOdd = value.size() % 2 != 0;
  std::uint8_t* to = shortForm(tag, value.size() + (isOdd ? 1 : 0));
  std::copy(value.begin(), value.end(), to);
  if (isOdd) to[value.size()] = static_cast<std::uint8_t>(rowOf(tag).pad);
}

void DcDirElementBytes::parts(DcTag tag, const std::vector<std::string>& values) {
  std::string joined;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) joined += '\\';
    joined += values[i];
  }
  text(tag, joined);
}

std::size_t DcDirElementBytes::ul(DcTag tag, std::uint32_t value) {
  storeLe32(shortForm(tag, sizeof value), value);
  return file_.size() - sizeof value;
}

void DcDirElementBytes::us(DcTag tag, std::uint16_t value) {
  storeLe16(shortForm(tag, sizeof value), value);
}

void DcDirElementBytes::ob(DcTag tag, const std::uint8_t* bytes, std::size_t lengthBytes) {
  std::copy(bytes, bytes + lengthBytes, longForm(tag, lengthBytes + lengthBytes % 2));
}

std::size_t DcDirElementBytes::itemHeader() {
  storeTag(grow(kShortHeaderBytes), tags::kItem, false);
  return file_.size() - sizeof(std::uint32_t);
}

std::size_t DcDirElementBytes::sequenceHeader(DcTag tag) {
  longForm(tag, 0);
  return file_.size() - sizeof(std::uint32_t);
}

}  // namespace quillon
