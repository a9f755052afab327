// A node of the tree that can keep the directory record of the object that brought it.
#pragma once

#include <string>
#include <utility>

#include "dicomobjects/dicom_file_facts.h"
#include "foundation/base_item.h"

namespace quillon {

class CRecordedItem : public CBaseItem {
 public:
  // No record: it is to be made of the node's texts.
  [[nodiscard]] const KeptRecord& Record() const { return record_; }
  // The file whose object the record is of.
  [[nodiscard]] const Text& RecordSource() const { return source_; }
  void SetRecord(KeptRecord record, TextView source) {
    source_ = source;
    record_ = std::move(record);
  }
  // The declared set in which the node's texts are still to be read: they are the bytes of the file
  // in the platform's 8-bit code page then. Empty: they are read.
  [[nodiscard]] const std::string& CharacterSetOfBytes() const { return characterSet_; }
  void SetCharacterSetOfBytes(std::string terms) { characterSet_ = std::move(terms); }

 private:
  KeptRecord record_;
  Text source_;
  std::string characterSet_;
};

}  // namespace quillon
