// Reads a caller's table of wanted fields from a file, seeking past everything else.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "dicom/types.h"

namespace quillon {

class DcFile;

inline constexpr DcTag kLastFieldRequest = 0xFFFFFFFF;
inline constexpr std::size_t kFieldValueBytes = 256;

enum class DcFieldStatus { Found = 0, NotFound = 1, FoundCut = 2, PixelDataNotRead = 3 };

// Requests stand in an array in ascending tag order, ended by one with kLastFieldRequest.
struct DcFieldRequest {
  DcTag tag = kLastFieldRequest;
  std::array<std::uint8_t, kFieldValueBytes> value{};
  std::uint32_t lengthBytes = 0;       // as found in the file; value holds at most 256 of them
  std::uint64_t offsetInFile = ~0ULL;  // of the element's tag
  DcFieldStatus status = DcFieldStatus::NotFound;
};

// `name` stands in messages. With readPixelLength off the walk ends at Pixel Data with
// PixelDataNotRead.
DcCode libParseFields(DcFile* file, DcFieldRequest* table, const char* name,
                      bool readPixelLength = true);
// Opens the file, which must be readable (kDcOpenFailed).
DcCode libParseFields(const char* fileName, DcFieldRequest* table, bool readPixelLength = true);

}  // namespace quillon
