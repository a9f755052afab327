// Writes the elements of a data set as XML, one line for each value:
//
//   <?xml version="1.0" ?>
//   <data-set>
//   <tag grp="0028" element="0010" VR="US" VM="1" name="rows">512</tag>
//   <tag grp="0008" element="0008" VR="CS" VM="2" name="imageType"><values count="2" total="2">
//   <value>ORIGINAL</value>
//   <value>PRIMARY</value>
//   </values>
//   </tag>
//   <tag grp="0040" element="a730" VR="SQ" VM="" name="contentSequence">
//   <item>
//   ...
//   </item>
//   </tag>
//   </data-set>
//
// The root element says in which character set texts were read, where they were read in one:
// <data-set charset="ISO_IR 100">, as it was declared or as it was told. Where none was declared
// (charset="") or none that is known, code-page="1252" is the number of the system's, which took
// its place. With the field's practice an element that the dictionary knows has the standard's name
// behind its own, and a UID that is known what it stands for:
//   <tag grp="0008" ... name="sopClassUid" title="SOP Class UID" meaning="CT Image Storage">
// above="STUDY001.HTM" is the page that leads to one made of the header, where there is one.
//
// Nothing is indented. `total` is the number of values, `count` (and VM) that of the ones written.
// Pixel data that is left out reads NOT LOADED, with a line for the length of its group before it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "charset/character_set.h"
#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/dicom_value.h"
#include "foundation/text.h"

namespace quillon {

class HeaderXml {
 public:
  // Appends to out. At most maxValues values of an element are written.
  HeaderXml(CDicomUtil& util, Text& out, std::uint32_t maxValues, bool includePixelData,
            const HeaderOptions& options);

  // The whole document. False when the toolkit does not give a value; out then holds a part.
  [[nodiscard]] bool Write(const DcElemList& list);

 private:
  void BeginDocument();
  [[nodiscard]] bool DumpElementList(const DcElemList& list, int depth);
  [[nodiscard]] bool DumpElement(DcElem& element, int depth);
  [[nodiscard]] bool DumpSequence(const DcElem& element, int depth);
  [[nodiscard]] bool DumpItem(const DcElemList& item, int depth);
  void DumpPixelDataNotLoaded(const DcElem& element, bool hasGroupLength);
  [[nodiscard]] bool DumpMetaGroup();

  [[nodiscard]] bool ReadValue(DcElem& element, int depth, DicomValue& value);
  // Text in the character set.
  void PutDecoded(const DcElem& element);
  // valueCount: of an element whose value is no array.
  [[nodiscard]] bool PutElement(const DcElem& element, const DicomValue& value,
                                std::size_t valueCount);
  // The values block, or the text of a single value.
  [[nodiscard]] bool PutContent(const DcElem& element, const DicomValue& value);
  void BeginValues(std::size_t count, std::size_t total);
  // The meaning is that of a UID; empty: none.
  void OpenTag(DcTag tag, std::string_view vr, std::string_view vm, TextView meaning = {});
  [[nodiscard]] std::string VrText(const DcElem& element);
  std::uint16_t BitsAllocated();
  void Put(std::string_view ascii);
  void PutAttribute(std::string_view name, Text value);
  // UTF-8; empty: there is none.
  void PutTitle(std::string_view title);

  CDicomUtil& util_;
  Text& out_;
  std::uint32_t maxValues_;
  bool includePixelData_;
  HeaderOptions options_;
  // Of the data set, or of the item that is written; null: texts are in the ANSI code page.
  const CharacterSet* characterSet_ = nullptr;
  // 0 when the data set does not say; read when it is first needed.
  std::optional<std::uint16_t> bitsAllocated_;
};

}  // namespace quillon
