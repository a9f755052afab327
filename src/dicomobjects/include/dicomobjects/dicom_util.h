// The handle on one parsed DICOM file: its element list and meta information, values by tag path.
//
// Tag paths: "00280010,US" (eight lower-case hexadecimal digits, a comma, the VR); inside a
// sequence item "0040a043,SQ,1:00080104,LO" (items count from 1), nested as deep as needed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "dicom/elem_list.h"
#include "dicom/file_meta_info.h"
#include "dicom/read_file.h"
#include "dicomobjects/dicom_value.h"
#include "foundation/base_item.h"
#include "foundation/buffer.h"

namespace quillon {

// An element of the data set itself, or of an item (counted from 1) of one of its sequences.
struct TagPlace {
  DcTag tag;
  DcTag sequence = 0;
  std::uint32_t itemFromOne = 0;

  constexpr TagPlace(DcTag element) : tag(element) {}
  constexpr TagPlace(DcTag inSequence, std::uint32_t item, DcTag element)
      : tag(element), sequence(inSequence), itemFromOne(item) {}
  // The same as a tag path, with the dictionary's VR.
  [[nodiscard]] std::string Path() const;
};

// How the header of a data set is written.
struct HeaderOptions {
  // Texts are read in the character set that their data set declares, of group 0002 only what the
  // file has is written, and elements and UIDs have the names that people know them by. Off: texts
  // in the ANSI code page, a fixed choice of that group, and keywords alone.
  bool currentPractice = false;
  // Stands for what the data set and its items declare, also without currentPractice. Empty: none.
  std::string characterSet;
  // For a stylesheet that makes a page: the page that leads to it. Empty: none.
  Text above = {};
};

class CDicomUtil : public CBaseItem {
 public:
  CDicomUtil();
  // Works on another's element list (a directory record's, say), which must outlive this object.
  explicit CDicomUtil(DcElemList& list);
  ~CDicomUtil() override;

  // Parses the file. With deferPixelData the read stops before the pixel data and a placeholder
  // element stands for it. False: GetLastResult tells the toolkit's code, the file path is empty.
  // kept (with deferPixelData alone): the elements that are wanted; null: all.
  [[nodiscard]] bool ReadFile(TextView path, bool deferPixelData, const DcTagSet* kept = nullptr);
  [[nodiscard]] DcCode GetLastResult() const { return lastResult_; }
  void Clear();

  // Some converters write every element as UN. Gives the top-level ones that the dictionary knows
  // their own VR back, so that the values can be read; the others stay as they are.
  void SettleUnknownVrs();

  // False when the path names no element or is malformed. Tags of group 0002 are answered from the
  // meta information. Without asArray several texts come as one, with backslashes between them, and
  // of several numbers the first. A sequence itself has no value.
  [[nodiscard]] bool GetValue(std::string_view tagPath, DicomValue& value, bool asArray);
  [[nodiscard]] bool GetValue(const TagPlace& place, DicomValue& value, bool asArray);
  // Copies the sequence `tag` with all its items into target's list; false when it is absent.
  [[nodiscard]] bool CopySequence(DcTag tag, CDicomUtil& target);

  // Reads lengthBytes from the offset on into the buffer (which may be allocated already and is
  // filled then); lengthBytes 0 reads up to the end. False unless every byte was read.
  [[nodiscard]] static bool ReadUNCToBuffer(TextView path, std::uint64_t offset,
                                            std::uint32_t lengthBytes, CBuffer& buffer);

  // The header as XML (its form stands in header_xml.h). Of an element at most maxValues values are
  // written; pixel data reads NOT LOADED unless it is to be included. Characters that XML cannot
  // carry are replaced as EscapeXmlText says, so the XML is well formed whatever the values hold.
  // False, with out empty or cut short, without a data set and when the toolkit does not give a
  // value.
  [[nodiscard]] bool GetHeaderXml(Text& out, std::uint32_t maxValues, bool includePixelData,
                                  const HeaderOptions& options = {});

  // The data set as loaded; null before a read.
  [[nodiscard]] DcElemList* GetElementList() const { return list_; }
  [[nodiscard]] const DcFileMetaInfo& GetMetaInfo() const { return metaInfo_; }
  // What the last ReadFile saw of the file itself (size, time, what its group 0002 says), also
  // when it failed. The meta information above is completed from the data set, this one is not.
  [[nodiscard]] const DcFileReading& GetReading() const { return reading_; }
  // For want of memory the data set is not complete: an element was left out.
  [[nodiscard]] bool LostElements() const { return list_ != nullptr && list_->lostElements(); }
  // The file ends before the pixel data it declares; told by a reading that deferred them.
  [[nodiscard]] bool IsPixelDataCut() const { return reading_.isPixelDataCut; }

  void GetFilePath(Text& out) const { out = filePath_; }
  void GetSopClassUid(Text& out) const;        // (0002,0002)
  void GetTransferSyntaxUid(Text& out) const;  // (0002,0010)
  void GetDataSetTransferSyntaxUid(Text& out) const;
  void GetSopInstanceUid(Text& out) const;
  void GetImplementationClassUid(Text& out) const;
  void GetImplementationVersionName(Text& out) const;
  void GetSourceAeTitle(Text& out) const;
  void GetPrivateCreatorUid(Text& out) const;

  [[nodiscard]] bool HasNoPixelData() const;
  // Value length of (7FE0,0010): as declared (so it can be undefined) when it was deferred.
  [[nodiscard]] bool GetPixelDataLength(std::uint32_t& lengthBytes) const;
  // Where the value stands in the file; of encapsulated pixel data the first fragment, for which
  // the file is opened. False without pixel data.
  [[nodiscard]] bool GetPixelDataPosition(std::uint64_t& offset, std::uint32_t& lengthBytes) const;
  // The same without touching the file, for pixel data that was deferred: false when it was not.
  // Of encapsulated pixel data it is the whole value, its length as declared.
  [[nodiscard]] bool GetDeferredPixelData(std::uint64_t& offset, std::uint32_t& lengthBytes) const;

 private:
  [[nodiscard]] bool Load(TextView path, bool deferPixelData, const DcTagSet* kept);
  [[nodiscard]] bool ReadFrom(const DcElemList& list, DcTag tag, DicomValue& value, bool asArray);
  [[nodiscard]] bool GetMetaValue(DcTag tag, DicomValue& value) const;
  [[nodiscard]] DcVr ValueVr(const DcElem& element) const;
  [[nodiscard]] bool LocatePixelData(std::uint64_t& offset, std::uint32_t& lengthBytes) const;

  std::unique_ptr<DcElemList> owned_;
  DcElemList* list_ = nullptr;
  DcFileMetaInfo metaInfo_;
  DcFileReading reading_;
  Text filePath_;
  std::uint64_t pixelDataOffset_ = 0;
  std::uint32_t pixelDataLength_ = 0;
  bool pixelDataDeferred_ = false;
  DcCode lastResult_ = kDcOk;
};

// A UID text by its dictionary id, remembered for the process. Null for an unknown id.
class CDicomUtilDict {
 public:
  static const char* UidText(DcUid id);
};

}  // namespace quillon
