#include "dicomobjects/dicom_image_properties.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxTextChars = 1024;

}  // namespace

CDicomImageProperties::CDicomImageProperties() { SetClassName(OLESTR("CDicomImageProperties")); }

void CDicomImageProperties::Clear() {
  // A new object knows the defaults; the error state is not among the values.
  Text error = ErrorMessage();
  *this = CDicomImageProperties();
  SetErrorMessage(error);
}

bool CDicomImageProperties::SetPhotometricInterpretation(TextView text) {
  return AssignText(photometricInterpretation_, text, kMaxTextChars);
}

bool CDicomImageProperties::SetInstanceNumber(TextView text) {
  return AssignText(instanceNumber_, text, kMaxTextChars);
}

}  // namespace quillon
