// The in-memory parser. Lengths are compared with what is left in 64-bit arithmetic before a byte
// is read; sequences deeper than kMaxNesting are refused with kDcTooDeep.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicom/parse_header.h"
#include "dicom/tag_set.h"

namespace quillon {

// Parses the elements in `buffer` into `list`. flags: the form of the elements, with
// kParseOpenEnd when they end at an item delimitation item. consumed: bytes read, with that item.
// offset: where the buffer stands in the file, for messages. depth: 0 for a data set, 1 for the
// items of its sequences. kept: the elements of this level that are wanted, null for all; the
// others are stepped over, and what is wrong with their structure is found all the same.
DcCode processElemListDM(DcElemList& list, const std::uint8_t* buffer, std::size_t length,
                         DcUid transferSyntax, unsigned flags, std::size_t& consumed,
                         std::uint64_t offset, int depth, const DcTagSet* kept = nullptr);

// Parses the items in `buffer` into `sequence` (null: steps over them); kParseOpenEnd in flags
// when they end at a sequence delimitation item. depth: that of the items.
DcCode processSqValueDM(DcElemSq* sequence, const std::uint8_t* buffer, std::size_t length,
                        DcUid transferSyntax, unsigned flags, std::size_t& consumed,
                        std::uint64_t offset, int depth);

// Measures a value of undefined length that stays as it is (encapsulated pixel data, UN).
// valueLength excludes the sequence delimitation item.
DcCode processUndefLenSqValue(const std::uint8_t* buffer, std::size_t length, unsigned flags,
                              std::uint32_t& valueLength, std::uint64_t offset, int depth);

}  // namespace quillon
