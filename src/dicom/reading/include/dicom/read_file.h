// Reading DICOM files (PS 3.10) and bare data sets. File names are in the file-system code page.
//
// Without memory for the file the code is kDcNoMemory. An element that alone finds none is left
// out, and the list's lostElements tells (one of group 0002: kDcNoMemory).
#pragma once

#include <cstdint>
#include <vector>

#include "dicom/byte_source.h"
#include "dicom/elem_list.h"
#include "dicom/file.h"
#include "dicom/file_meta_info.h"
#include "dicom/tag_set.h"
#include "dicom/types.h"

namespace quillon {

inline constexpr std::uint32_t kNoPixelData = 0xFFFFFFFF;

// What a reading tells of the file itself. All of it comes from one open file and so belongs
// together; a reading that fails tells what it had seen until then.
struct DcFileReading {
  DcFileStatus file;
  bool hasMagic = false;  // "DICM" behind the preamble
  // What dirReadFileMetaInfo answers for the file. The meta information that dirReadFile gives is
  // this one, completed from the data set.
  DcCode metaCode = kDcOk;
  DcFileMetaInfo metaInfo;
  std::vector<DcTag> metaTags;  // of the elements that its group 0002 has, with or without a value
  // The file ends before the pixel data that it declares. Only a reading up to the pixel data
  // tells: one of the whole file fails then. A value of undefined length is not followed.
  bool isPixelDataCut = false;

  void clear();
};

// Reads a whole file (at most 512 MiB). The list is emptied first. A file without "DICM" is read
// as a bare implicit little endian data set. reading may be null.
DcCode dirReadFile(const char* fileName, DcFileMetaInfo& metaInfo, DcElemList& elements,
                   DcFileReading* reading = nullptr);

// Reads only what stands before Pixel Data (7FE0,0010), however large the file is.
// pixelValueOffset: where its value starts in the file (kNoPixelData without pixel data);
// pixelValueLength: its length as declared, 0 without. Each, and reading, may be null.
// kept: the elements of the data set that are wanted; null: all. The others are stepped over. The
// answer is the one that it is for all of them. SOP Class and SOP Instance UID complete the meta
// information when they are among them.
DcCode dirReadFile(const char* fileName, DcFileMetaInfo& metaInfo, DcElemList& elements,
                   std::uint64_t* pixelValueOffset, std::uint32_t* pixelValueLength,
                   DcFileReading* reading = nullptr, const DcTagSet* kept = nullptr);

// The same of bytes that lie elsewhere; the log calls them by the name. Of the file, reading tells
// the size alone.
DcCode dirReadFile(DcByteSource& source, const char* name, DcFileMetaInfo& metaInfo,
                   DcElemList& elements, std::uint64_t* pixelValueOffset,
                   std::uint32_t* pixelValueLength, DcFileReading* reading = nullptr,
                   const DcTagSet* kept = nullptr);

// Reads preamble and group 0002. A file of fewer than 136 bytes gives kDcOk and implicit little
// endian; a larger one without "DICM" gives kDcNotDicom. dataSetOffset (may be null): where the
// data set starts.
DcCode dirReadFileMetaInfo(const char* fileName, DcFileMetaInfo& metaInfo,
                           std::uint64_t* dataSetOffset);

// Measures the value behind a 4-byte item length field with `remaining` bytes after it. An
// undefined length is followed to its delimitation item; trailerLength is 8 then, else 0.
DcCode utilGetSqItemValLen(const std::uint8_t* lengthField, std::uint32_t remaining,
                           DcUid transferSyntax, std::uint32_t* valueLength,
                           std::uint32_t* trailerLength);

}  // namespace quillon
