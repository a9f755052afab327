#include "dicomobjects/dicom_object_properties.h"

#include <new>

#include "tables/sop_classes.h"
#include "tables/transfer_syntaxes.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxFileNameChars = 260;
constexpr std::size_t kMaxFrameKeyChars = 260;
constexpr std::size_t kMaxTextChars = 1024;
constexpr std::size_t kNoLimit = 0;

}  // namespace

CDicomObjectProperties::CDicomObjectProperties() { SetClassName(OLESTR("CDicomObjectProperties")); }

CDicomObjectProperties::CDicomObjectProperties(const CDicomObjectProperties& other)
    : CDicomObjectProperties() {
  *this = other;
}

CDicomObjectProperties& CDicomObjectProperties::operator=(const CDicomObjectProperties& other) {
  if (this == &other) return *this;
  CBaseItem::operator=(other);
  image_ =
      other.image_ == nullptr ? nullptr : std::make_unique<CDicomImageProperties>(*other.image_);
  facts_ = other.facts_;
  allowEmpty_ = other.allowEmpty_;
  fileSizeBytes_ = other.fileSizeBytes_;
  dataSetTransferSyntaxUid_ = other.dataSetTransferSyntaxUid_;
  fileName_ = other.fileName_;
  frameKey_ = other.frameKey_;
  modality_ = other.modality_;
  sopClassUid_ = other.sopClassUid_;
  sopClassCode_ = other.sopClassCode_;
  sopClassName_ = other.sopClassName_;
  transferSyntaxUid_ = other.transferSyntaxUid_;
  transferSyntaxName_ = other.transferSyntaxName_;
  implementationVersionName_ = other.implementationVersionName_;
  implementationClassUid_ = other.implementationClassUid_;
  instanceKey_ = other.instanceKey_;
  instanceUid_ = other.instanceUid_;
  return *this;
}

CDicomObjectProperties::~CDicomObjectProperties() = default;

void CDicomObjectProperties::Clear() {
  if (image_ != nullptr) image_->Clear();
  facts_.reset();
  fileSizeBytes_ = 0;
  for (Text* text : {&dataSetTransferSyntaxUid_, &fileName_, &modality_, &sopClassUid_,
                     &sopClassCode_, &sopClassName_, &transferSyntaxUid_, &transferSyntaxName_,
                     &implementationVersionName_, &implementationClassUid_}) {
    text->clear();
  }
  ClearInstance();
  ClearError();
}

void CDicomObjectProperties::ClearInstance() {
  frameKey_.clear();
  instanceKey_.clear();
  instanceUid_.clear();
}

bool CDicomObjectProperties::SetSopClassUid(TextView uid) {
  if (!AssignText(sopClassUid_, uid, allowEmpty_, kNoLimit)) return false;
  const SopClassRow* row = FindSopClass(uid);
  sopClassCode_ = row == nullptr ? TextView() : row->code;
  sopClassName_ = row == nullptr ? TextView() : row->name;
  return true;
}

bool CDicomObjectProperties::SetTransferSyntax(TextView uid) {
  if (!AssignText(transferSyntaxUid_, uid, allowEmpty_, kNoLimit)) return false;
  const TransferSyntaxRow* row = FindTransferSyntax(uid);
  transferSyntaxName_ = row == nullptr ? TextView() : row->name;
  return true;
}

bool CDicomObjectProperties::SetDataSetTransferSyntaxUid(TextView uid) {
  return AssignText(dataSetTransferSyntaxUid_, uid, allowEmpty_, kNoLimit);
}

bool CDicomObjectProperties::SetFileName(TextView path) {
  return AssignText(fileName_, path, allowEmpty_, kMaxFileNameChars);
}

bool CDicomObjectProperties::SetFrameKey(TextView key) {
  return AssignText(frameKey_, key, allowEmpty_, kMaxFrameKeyChars);
}

bool CDicomObjectProperties::SetModality(TextView modality) {
  return AssignText(modality_, modality, allowEmpty_, kNoLimit);
}

bool CDicomObjectProperties::SetImplementationVersionName(TextView name) {
  return AssignText(implementationVersionName_, name, allowEmpty_, kMaxTextChars);
}

bool CDicomObjectProperties::SetImplementationClassUid(TextView uid) {
  return AssignText(implementationClassUid_, uid, allowEmpty_, kMaxTextChars);
}

bool CDicomObjectProperties::SetInstanceKey(TextView key) {
  return AssignText(instanceKey_, key, allowEmpty_, kMaxTextChars);
}

bool CDicomObjectProperties::SetInstanceUid(TextView uid) {
  return AssignText(instanceUid_, uid, allowEmpty_, kMaxTextChars);
}

CDicomImageProperties* CDicomObjectProperties::Image() {
  if (image_ == nullptr) {
    image_.reset(new (std::nothrow) CDicomImageProperties());
    if (image_ == nullptr && fileName_.empty()) SetErrorMessage(kMsgNoStorageForImage);
    if (image_ == nullptr && !fileName_.empty()) {
      SetErrorMessage(kMsgNoStorageForImageFrom, {fileName_});
    }
  }
  return image_.get();
}

Text CDicomObjectProperties::InstanceNumber() const {
  return image_ == nullptr ? Text() : image_->InstanceNumber();
}

}  // namespace quillon
