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
  if (image_ != nullptr) image_->ExpectLike(nullptr);
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
  for (SharedText* text :
       {&fileName_, &dataSetTransferSyntaxUid_, &modality_, &sopClassUid_, &sopClassCode_,
        &sopClassName_, &transferSyntaxUid_, &transferSyntaxName_, &implementationVersionName_,
        &implementationClassUid_}) {
    text->Clear();
  }
  ClearInstance();
  ClearError();
}

void CDicomObjectProperties::ClearInstance() {
  frameKey_.Clear();
  instanceKey_.Clear();
  instanceUid_.Clear();
}

void CDicomObjectProperties::ExpectLike(const CDicomObjectProperties* other) {
  like_ = other;
  if (image_ != nullptr) image_->ExpectLike(other == nullptr ? nullptr : other->ImageIfAny());
}

bool CDicomObjectProperties::Store(Member member, TextView text, std::size_t maxLen) {
  return (this->*member)
      .Assign(text, allowEmpty_, maxLen, like_ == nullptr ? nullptr : &(like_->*member));
}

void CDicomObjectProperties::Look(Member member, TextView text) {
  if (!(this->*member)
           .Assign(text, /*allowEmpty=*/true, kNoLimit,
                   like_ == nullptr ? nullptr : &(like_->*member))) {
    (this->*member).Clear();
  }
}

bool CDicomObjectProperties::SetSopClassUid(TextView uid) {
  if (!Store(&CDicomObjectProperties::sopClassUid_, uid, kNoLimit)) return false;
  const SopClassRow* row = FindSopClass(uid);
  Look(&CDicomObjectProperties::sopClassCode_, row == nullptr ? TextView() : row->code);
  Look(&CDicomObjectProperties::sopClassName_, row == nullptr ? TextView() : row->name);
  return true;
}

bool CDicomObjectProperties::SetTransferSyntax(TextView uid) {
  if (!Store(&CDicomObjectProperties::transferSyntaxUid_, uid, kNoLimit)) return false;
  const TransferSyntaxRow* row = FindTransferSyntax(uid);
  Look(&CDicomObjectProperties::transferSyntaxName_, row == nullptr ? TextView() : row->name);
  return true;
}

bool CDicomObjectProperties::SetDataSetTransferSyntaxUid(TextView uid) {
  return Store(&CDicomObjectProperties::dataSetTransferSyntaxUid_, uid, kNoLimit);
}

bool CDicomObjectProperties::SetFileName(TextView path) {
  return Store(&CDicomObjectProperties::fileName_, path, kMaxFileNameChars);
}

// That of a first frame is the object's.
bool CDicomObjectProperties::SetFrameKey(TextView key) {
  return frameKey_.Assign(key, allowEmpty_, kMaxFrameKeyChars, &instanceKey_);
}

bool CDicomObjectProperties::SetModality(TextView modality) {
  return Store(&CDicomObjectProperties::modality_, modality, kNoLimit);
}

bool CDicomObjectProperties::SetImplementationVersionName(TextView name) {
  return Store(&CDicomObjectProperties::implementationVersionName_, name, kMaxTextChars);
}

bool CDicomObjectProperties::SetImplementationClassUid(TextView uid) {
  return Store(&CDicomObjectProperties::implementationClassUid_, uid, kMaxTextChars);
}

bool CDicomObjectProperties::SetInstanceKey(TextView key) {
  return Store(&CDicomObjectProperties::instanceKey_, key, kMaxTextChars);
}

// Most objects are their own key.
bool CDicomObjectProperties::SetInstanceUid(TextView uid) {
  return instanceUid_.Assign(uid, allowEmpty_, kMaxTextChars, &instanceKey_);
}

CDicomImageProperties* CDicomObjectProperties::Image() {
  if (image_ == nullptr) {
    image_.reset(new (std::nothrow) CDicomImageProperties());
    if (image_ == nullptr && FileName().empty()) SetErrorMessage(kMsgNoStorageForImage);
    if (image_ == nullptr && !FileName().empty()) {
      SetErrorMessage(kMsgNoStorageForImageFrom, {FileName()});
    }
    ExpectLike(like_);
  }
  return image_.get();
}

Text CDicomObjectProperties::InstanceNumber() const {
  return image_ == nullptr ? Text() : image_->InstanceNumber();
}

}  // namespace quillon
