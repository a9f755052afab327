// A typed summary of one DICOM object: what it is, how it is encoded, which instance it is.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "dicomobjects/dicom_image_properties.h"
#include "foundation/base_item.h"
#include "foundation/shared_text.h"

namespace quillon {

struct DicomFileFacts;

class CDicomObjectProperties : public CBaseItem {
 public:
  CDicomObjectProperties();
  CDicomObjectProperties(const CDicomObjectProperties& other);
  CDicomObjectProperties& operator=(const CDicomObjectProperties& other);
  ~CDicomObjectProperties() override;

  // Empties the texts and clears the image values, which stay allocated.
  void Clear();
  // Empties what tells the instance: UID, instance key and frame key.
  void ClearInstance();
  // Texts that another object has alike are held once for both from now on. It lives until null
  // takes its place.
  void ExpectLike(const CDicomObjectProperties* other);
  // Set: the text setters accept empty values.
  void SetAllowEmpty(bool allow) { allowEmpty_ = allow; }

  // Store the UID and look its code and name up; both stay empty when the table has no such UID.
  [[nodiscard]] bool SetSopClassUid(TextView uid);
  [[nodiscard]] bool SetTransferSyntax(TextView uid);
  [[nodiscard]] bool SetDataSetTransferSyntaxUid(TextView uid);
  [[nodiscard]] bool SetFileName(TextView path);  // at most 260 characters
  [[nodiscard]] bool SetFrameKey(TextView key);   // at most 260 characters
  [[nodiscard]] bool SetModality(TextView modality);
  [[nodiscard]] bool SetImplementationVersionName(TextView name);
  [[nodiscard]] bool SetImplementationClassUid(TextView uid);
  [[nodiscard]] bool SetInstanceKey(TextView key);  // at most 1,024 characters
  [[nodiscard]] bool SetInstanceUid(
      TextView uid);  // the full SOP Instance UID, at most 1,024 characters
  void SetFileSize(std::uint32_t sizeBytes) { fileSizeBytes_ = sizeBytes; }

  [[nodiscard]] std::uint32_t FileSize() const { return fileSizeBytes_; }
  [[nodiscard]] const Text& SopClassUid() const { return sopClassUid_.Get(); }
  [[nodiscard]] const Text& SopClassCode() const { return sopClassCode_.Get(); }
  [[nodiscard]] const Text& SopClassName() const { return sopClassName_.Get(); }
  [[nodiscard]] const Text& TransferSyntaxUid() const { return transferSyntaxUid_.Get(); }
  [[nodiscard]] const Text& TransferSyntaxName() const { return transferSyntaxName_.Get(); }
  [[nodiscard]] const Text& DataSetTransferSyntaxUid() const {
    return dataSetTransferSyntaxUid_.Get();
  }
  [[nodiscard]] const Text& FileName() const { return fileName_.Get(); }
  [[nodiscard]] const Text& FrameKey() const { return frameKey_.Get(); }
  [[nodiscard]] const Text& Modality() const { return modality_.Get(); }
  [[nodiscard]] const Text& ImplementationVersionName() const {
    return implementationVersionName_.Get();
  }
  [[nodiscard]] const Text& ImplementationClassUid() const { return implementationClassUid_.Get(); }
  [[nodiscard]] const Text& InstanceKey() const { return instanceKey_.Get(); }
  [[nodiscard]] const Text& InstanceUid() const { return instanceUid_.Get(); }

  // Image values: the properties are made on first use. Null, with a sentence, without memory.
  CDicomImageProperties* Image();
  // Null when no image value was ever used.
  [[nodiscard]] const CDicomImageProperties* ImageIfAny() const { return image_.get(); }
  // Empty when the object has none.
  [[nodiscard]] Text InstanceNumber() const;

  // The file name in a form that shares it.
  [[nodiscard]] const SharedText& SharedFileName() const { return fileName_; }

  // What the reading told beside the properties; null when nobody kept it. Copies share it.
  void SetFacts(std::shared_ptr<const DicomFileFacts> facts) { facts_ = std::move(facts); }
  [[nodiscard]] const DicomFileFacts* Facts() const { return facts_.get(); }
  [[nodiscard]] const std::shared_ptr<const DicomFileFacts>& SharedFacts() const { return facts_; }

 private:
  using Member = SharedText CDicomObjectProperties::*;
  [[nodiscard]] bool Store(Member member, TextView text, std::size_t maxLen);
  // A text of a table, or none.
  void Look(Member member, TextView text);

  bool allowEmpty_ = false;
  std::uint32_t fileSizeBytes_ = 0;
  const CDicomObjectProperties* like_ = nullptr;
  std::unique_ptr<CDicomImageProperties> image_;
  std::shared_ptr<const DicomFileFacts> facts_;
  SharedText dataSetTransferSyntaxUid_;
  SharedText fileName_;
  SharedText frameKey_;
  SharedText modality_;
  SharedText sopClassUid_;
  SharedText sopClassCode_;
  SharedText sopClassName_;
  SharedText transferSyntaxUid_;
  SharedText transferSyntaxName_;
  SharedText implementationVersionName_;
  SharedText implementationClassUid_;
  SharedText instanceKey_;
  SharedText instanceUid_;
};

}  // namespace quillon
