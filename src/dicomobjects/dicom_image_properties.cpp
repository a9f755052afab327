#include "dicomobjects/dicom_image_properties.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxTextChars = 1024;

}  // namespace

CDicomImageProperties::CDicomImageProperties() { SetClassName(OLESTR("CDicomImageProperties")); }

void CDicomImageProperties::Clear() {
  // A new object knows the defaults; the error state is not among the values.
  const Text error = ErrorMessage();
  const CDicomImageProperties* const like = like_;
  *this = CDicomImageProperties();
  like_ = like;
  SetErrorMessage(error);
}

bool CDicomImageProperties::SetPhotometricInterpretation(TextView text) {
  return photometricInterpretation_.Assign(
      text, /*allowEmpty=*/true, kMaxTextChars,
      like_ == nullptr ? nullptr : &like_->photometricInterpretation_);
}

bool CDicomImageProperties::SetInstanceNumber(TextView text) {
  return AssignText(instanceNumber_, text, kMaxTextChars);
}

}  // namespace quillon
