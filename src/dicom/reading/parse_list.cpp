#include "parse_list.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "dicom/dict.h"
#include "dicom/log.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"
#include "parse_walk.h"

namespace quillon {
namespace {

constexpr const char* kListFunction = "processElemListDM";
constexpr const char* kSequenceFunction = "processSqValueDM";
// An unknown implicit element can only be seen to be a sequence when an item tag is there.
constexpr std::size_t kItemTagBytes = 4;

DcCode tooDeep(const char* function, std::uint64_t offset) {
  dcLog(DcLogLevel::Error, function, "Sequences nested deeper than %d levels at offset 0x%llx",
        kMaxNesting, static_cast<unsigned long long>(offset));
  return kDcTooDeep;
}

DcCode valueTooLong(std::uint64_t valueLength, std::uint64_t remaining, std::uint64_t offset) {
  dcLog(DcLogLevel::Error, kListFunction,
        "valueLen (0x%08x) exceeds the remaining buffer len (0x%08x) at offset 0x%x",
        static_cast<unsigned>(valueLength), static_cast<unsigned>(remaining),
        static_cast<unsigned>(offset));
  return kDcNotAccepted;
}

DcCode notAnItem(const char* function, DcTag tag, std::uint64_t offset) {
  dcLog(DcLogLevel::Error, function, "Invalid tag 0x%04x, expecting Sequence Item at offset 0x%x",
        static_cast<unsigned>(tag), static_cast<unsigned>(offset));
  return kDcNotConvertible;
}

DcCode missingDelimiter(const char* function, std::uint64_t offset) {
  dcLog(DcLogLevel::Error, function,
        "The data ends at offset 0x%x without the delimitation item of an undefined length",
        static_cast<unsigned>(offset));
  return kDcNotAccepted;
}

// What a data set has of which little is kept.
constexpr std::size_t kUsualKeptElements = 64;

// One call of processElemListDM.
class ListParser {
 public:
  // Without a list, and of what is not among the kept, nothing is built.
  ListParser(DcElemList* list, const DcTagSet* kept, const std::uint8_t* buffer, std::size_t length,
             DcUid transferSyntax, unsigned flags, std::uint64_t offset, int depth)
      : list_(list),
        kept_(kept),
        buffer_(buffer),
        length_(length),
        transferSyntax_(transferSyntax),
        form_(flags & ~kParseOpenEnd),
        endsAtDelimiter_(depth > 0),
        isOpenEnd_((flags & kParseOpenEnd) != 0),
        offset_(offset),
        depth_(depth) {
    if (list != nullptr && list->size() > 0) highestTag_ = list->at(list->size() - 1)->tag();
  }

  DcCode run(std::size_t& consumed) {
    if (kept_ != nullptr) list_->reserve(kUsualKeptElements);
    const DcCode code = parseAll();
    consumed = at_;
    if (!late_.empty()) list_->addAll(std::move(late_));
    return code;
  }

 private:
  enum class Step { Element, Passed, End, Error };

  DcCode parseAll() {
    const bool hasPlainElements =
        form_ == kParseExplicitLittleForm && (list_ == nullptr || kept_ != nullptr);
    while (length_ - at_ >= kShortHeaderBytes) {
      if (hasPlainElements) {
        const std::size_t from = at_;
        at_ = passPlainElements(buffer_, at_, length_, kept_, lastTag_);
        hasLastTag_ = hasLastTag_ || at_ != from;
        if (length_ - at_ < kShortHeaderBytes) break;
      }
      switch (itemStep()) {
        case Step::End:
          return kDcOk;
        case Step::Error:
          return kDcNotAccepted;
        case Step::Passed:
          continue;
        case Step::Element:
          break;
      }
      ElemInfo info;
      if (!utilGetElemInfo(buffer_ + at_, length_ - at_, form_, info)) return kDcOk;
      if (const DcCode code = parseElement(info); code != kDcOk) return code;
    }
    return kDcOk;
  }

  // Item and delimitation tags are no elements. Files with stray delimitation items exist.
  Step itemStep() {
    const std::uint8_t* bytes = buffer_ + at_;
    const DcTag tag = loadItemTag(bytes, form_);
    if (tag != tags::kItem && tag != tags::kItemDelimitationItem &&
        tag != tags::kSequenceDelimitationItem) {
      return Step::Element;
    }
    const bool isEmpty = loadItemLength(bytes, form_) == 0;
    if (tag == tags::kItemDelimitationItem && isEmpty && endsAtDelimiter_) {
      at_ += kShortHeaderBytes;
      return Step::End;
    }
    if (isOpenEnd_ && tag != tags::kItemDelimitationItem) return Step::End;
    if (tag != tags::kItem && isEmpty) {
      dcLog(DcLogLevel::Warning, kListFunction, "Stray tag 0x%08x passed over at offset 0x%x",
            static_cast<unsigned>(tag), static_cast<unsigned>(position()));
      at_ += kShortHeaderBytes;
      return Step::Passed;
    }
    dcLog(DcLogLevel::Error, kListFunction, "Unexpected tag 0x%08x at offset 0x%x",
          static_cast<unsigned>(tag), static_cast<unsigned>(position()));
    return Step::Error;
  }

  DcCode parseElement(ElemInfo& info) {
    const std::size_t remaining = length_ - at_ - info.headerBytes;
    const bool isUndefined = info.valueLength == kUndefinedLength;
    DcVr knownVr = DcVr::None;
    std::int32_t vm = 0;
    const bool isImplicit = (info.flags & kParseExplicit) == 0;
    const bool isOutOfOrder = hasLastTag_ && lastTag_ >= info.tag;
    bool isKnown = true;
    if (isImplicit || isOutOfOrder) {
      isKnown = theDictionary().getElemVrVm(info.tag, knownVr, vm) == kDcOk;
    }
    if (isOutOfOrder && (info.tag == 0 || !isKnown)) {
      dcLog(DcLogLevel::Error, kListFunction, "Elements out of order, last - 0x%08x, this - 0x%08x",
            static_cast<unsigned>(lastTag_), static_cast<unsigned>(info.tag));
      return kDcNotAccepted;
    }
    if (isImplicit) info.vr = isKnown ? knownVr : unknownVr(info, remaining);
    if (info.isVrFromDictionary) warnOfSubstitutedVr(info.tag);
    if (!isUndefined && info.valueLength > remaining) {
      return valueTooLong(info.valueLength, remaining, position());
    }
    lastTag_ = info.tag;
    hasLastTag_ = true;
    return info.vr == DcVr::SQ ? parseSequence(info, remaining) : parseValue(info, remaining);
  }

  DcVr unknownVr(const ElemInfo& info, std::size_t remaining) const {
    const bool canHoldItem =
        info.valueLength >= kItemTagBytes && remaining > kItemTagBytes &&
        loadTag(buffer_ + at_ + info.headerBytes, (info.flags & kParseBig) != 0) == tags::kItem;
    return canHoldItem ? DcVr::SQ : DcVr::UN;
  }

  static void warnOfSubstitutedVr(DcTag tag) {
    dcLog(DcLogLevel::Warning, kListFunction, "Invalid VR for %s, substituted VR from Dictionary",
          dcTagName(tag).c_str());
  }

  // Elements whose tag is not the highest so far wait until the end: inserting each at its place
  // would cost quadratic time in a data set that is ordered backwards.
  DcElem& insert(std::unique_ptr<DcElem> element) {
    DcElem& inserted = *element;
    if (list_->size() == 0 || inserted.tag() >= highestTag_) {
      highestTag_ = inserted.tag();
      list_->add(std::move(element));
    } else {
      inserted.setStringHook(list_->stringHook());
      late_.push_back(std::move(element));
    }
    return inserted;
  }

  [[nodiscard]] bool isKept(DcTag tag) const {
    return list_ != nullptr && (kept_ == nullptr || kept_->contains(tag));
  }

  DcCode parseSequence(const ElemInfo& info, std::size_t remaining) {
    // A faulty icon is found by building it.
    const bool isBuilt = isKept(info.tag) || info.tag == tags::kIconImageSequence;
    auto made = isBuilt ? std::make_unique<DcElemSq>(info.tag, DcVr::SQ) : nullptr;
    DcElemSq* const sequence = made.get();
    if (isKept(info.tag)) insert(std::move(made));
    const bool isUndefined = info.valueLength == kUndefinedLength;
    at_ += info.headerBytes;
    std::size_t used = 0;
    const DcCode code = processSqValueDM(
        sequence, buffer_ + at_, isUndefined ? remaining : info.valueLength, syntaxOf(info),
        info.flags | (isUndefined ? kParseOpenEnd : 0U), used, position(), depth_ + 1);
    at_ += isUndefined ? used : info.valueLength;
    for (std::size_t i = 0; isKept(info.tag) && i < sequence->itemCount(); ++i) {
      if (sequence->item(i)->lostElements()) list_->noteLostElement();
    }
    return code;
  }

  DcCode parseValue(const ElemInfo& info, std::size_t remaining) {
    const std::uint8_t* value = buffer_ + at_ + info.headerBytes;
    std::uint32_t length = info.valueLength;
    std::size_t trailer = 0;
    DcUid syntax = syntaxOf(info);
    if (length == kUndefinedLength) {
      const DcCode code = processUndefLenSqValue(value, remaining, formInside(info), length,
                                                 position() + info.headerBytes, depth_ + 1);
      if (code != kDcOk) return code;
      trailer = kShortHeaderBytes;
    } else if (isBulkVr(info.vr) && info.vr != DcVr::UT && !isUncompressed(syntax)) {
      // Only a value of undefined length is encoded in the syntax of encapsulated pixel data.
      syntax = DcUid::ExplicitLittleEndian;
    }
    if (isKept(info.tag)) keepValue(info, value, length, syntax);
    at_ += info.headerBytes + length + trailer;
    return kDcOk;
  }

  void keepValue(const ElemInfo& info, const std::uint8_t* value, std::uint32_t length,
                 DcUid syntax) {
    DcElem& element = insert(std::make_unique<DcElem>(info.tag, nullptr, 0U, syntax, info.vr));
    const DcCode code = element.parseVal(value, length, syntax);
    if (code == kDcHookRefused || code == kDcNoMemory) drop(element);
    if (code == kDcNoMemory) list_->noteLostElement();
  }

  void drop(DcElem& element) {
    if (!late_.empty() && late_.back().get() == &element) {
      late_.pop_back();
    } else {
      list_->remove(&element);
    }
  }

  // What the bytes of this element are encoded in: its group can dictate it.
  [[nodiscard]] DcUid syntaxOf(const ElemInfo& info) const {
    if (info.flags == form_) return transferSyntax_;
    return (info.flags & kParseExplicit) != 0 ? DcUid::ExplicitLittleEndian
                                              : DcUid::ImplicitLittleEndian;
  }
  [[nodiscard]] std::uint64_t position() const { return offset_ + at_; }

  DcElemList* list_;
  const DcTagSet* kept_;
  const std::uint8_t* buffer_;
  std::size_t length_;
  DcUid transferSyntax_;
  unsigned form_;
  bool endsAtDelimiter_;
  bool isOpenEnd_;
  std::uint64_t offset_;
  int depth_;
  std::size_t at_ = 0;
  DcTag lastTag_ = 0;
  bool hasLastTag_ = false;
  DcTag highestTag_ = 0;
  std::vector<std::unique_ptr<DcElem>> late_;
};

}  // namespace

namespace {

DcCode parseElements(DcElemList* list, const DcTagSet* kept, const std::uint8_t* buffer,
                     std::size_t length, DcUid transferSyntax, unsigned flags,
                     std::size_t& consumed, std::uint64_t offset, int depth) {
  consumed = 0;
  if (depth > kMaxNesting) return tooDeep(kListFunction, offset);
  return ListParser(list, kept, buffer, length, transferSyntax, flags, offset, depth).run(consumed);
}

}  // namespace

DcCode processElemListDM(DcElemList& list, const std::uint8_t* buffer, std::size_t length,
                         DcUid transferSyntax, unsigned flags, std::size_t& consumed,
                         std::uint64_t offset, int depth, const DcTagSet* kept) {
  return parseElements(&list, kept, buffer, length, transferSyntax, flags, consumed, offset, depth);
}

DcCode processSqValueDM(DcElemSq* sequence, const std::uint8_t* buffer, std::size_t length,
                        DcUid transferSyntax, unsigned flags, std::size_t& consumed,
                        std::uint64_t offset, int depth) {
  consumed = 0;
  const bool isOpenEnd = (flags & kParseOpenEnd) != 0;
  const unsigned form = flags & ~kParseOpenEnd;
  if (depth > kMaxNesting) return tooDeep(kSequenceFunction, offset);
  while (length - consumed >= kShortHeaderBytes) {
    const std::uint8_t* bytes = buffer + consumed;
    const DcTag tag = loadItemTag(bytes, form);
    const std::uint32_t itemLength = loadItemLength(bytes, form);
    const std::uint64_t itemOffset = offset + consumed;
    if (tag == tags::kSequenceDelimitationItem && itemLength == 0) {
      consumed += kShortHeaderBytes;
      return kDcOk;
    }
    if (tag != tags::kItem) return notAnItem(kSequenceFunction, tag, itemOffset);
    consumed += kShortHeaderBytes;
    const std::size_t remaining = length - consumed;
    const bool isUndefined = itemLength == kUndefinedLength;
    if (!isUndefined && itemLength > remaining) {
      return valueTooLong(itemLength, remaining, itemOffset);
    }
    DcElemSqItem* const item =
        sequence == nullptr ? nullptr : sequence->addItem(std::make_unique<DcElemSqItem>());
    std::size_t used = 0;
    const DcCode code = parseElements(
        item, nullptr, buffer + consumed, isUndefined ? remaining : itemLength, transferSyntax,
        form | (isUndefined ? kParseOpenEnd : 0U), used, offset + consumed, depth);
    consumed += isUndefined ? used : itemLength;
    if (item != nullptr) {
      item->offsetInBuffer = static_cast<std::uint32_t>(itemOffset);
      item->lengthBytes = isUndefined ? static_cast<std::uint32_t>(used) : itemLength;
    }
    if (code != kDcOk) return code;
    if (item != nullptr && sequence->tag() == tags::kIconImageSequence) {
      if (const DcCode icon = item->processIconImage(); icon != kDcOk) return icon;
    }
  }
  return isOpenEnd ? missingDelimiter(kSequenceFunction, offset + consumed) : kDcOk;
}

DcCode processUndefLenSqValue(const std::uint8_t* buffer, std::size_t length, unsigned flags,
                              std::uint32_t& valueLength, std::uint64_t offset, int depth) {
  constexpr const char* kFunction = "processUndefLenSqValue";
  MemorySource source(buffer, length);
  std::uint64_t position = 0;
  const DcCode code = walkSequence(source, position, flags, depth);
  const std::uint64_t fault = offset + position;
  if (code == kDcTooDeep) return tooDeep(kFunction, fault);
  if (code == kDcNotConvertible) {
    return notAnItem(kFunction, loadItemTag(buffer + position, flags), fault);
  }
  if (code != kDcOk) return missingDelimiter(kFunction, fault);
  const std::uint64_t measured = position - kShortHeaderBytes;
  if (measured >= kUndefinedLength) return valueTooLong(measured, length, offset);
  valueLength = static_cast<std::uint32_t>(measured);
  return kDcOk;
}

DcCode DcElemList::parse(const std::uint8_t* buffer, std::uint32_t lengthBytes,
                         DcUid transferSyntax) try {
  if (buffer == nullptr) {
    dcLog(DcLogLevel::Error, kListFunction, "Null argument passed");
    return kDcNullArgument;
  }
  // Elements must carry an id that is a transfer syntax: what is none is encoded like most are.
  const DcUid syntax =
      isTransferSyntaxUid(transferSyntax) ? transferSyntax : DcUid::ExplicitLittleEndian;
  std::size_t consumed = 0;
  return processElemListDM(*this, buffer, lengthBytes, syntax, parseFormOf(syntax), consumed, 0, 0);
} catch (const std::bad_alloc&) {
  dcLog(DcLogLevel::Error, kListFunction, "unable to allocated 0x%x (%d) bytes of memory",
        static_cast<unsigned>(lengthBytes), static_cast<int>(lengthBytes));
  return kDcNoMemory;
}

}  // namespace quillon
