// One data element with its typed values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "dicom/convert.h"
#include "dicom/elem_value_buf.h"
#include "dicom/text_values.h"
#include "dicom/types.h"

namespace quillon {

struct VrRow;

// Offers a replacement for a string that failed its check or is too long. Answers 0 to store
// *replacement (or the input when *hasReplacement stays false), anything else to refuse it.
struct DcStringHook {
  using Convert = DcCode (*)(void* user, DcTag tag, DcVr vr, const char* text,
                             std::string* replacement, bool* hasReplacement);
  void* user = nullptr;
  Convert convert = nullptr;
};

// Value checking is on by default and process-wide. Off: nothing is refused or cut for its form
// or length, and lists made from then on carry a hook that accepts every string. Always kDcOk.
DcCode dcSetValueChecking(bool on);
[[nodiscard]] bool dcValueChecking();

class DcElem {
 public:
  static constexpr int kAppend = -1;          // addValue: behind the last value
  static constexpr int kAtIterator = 0xFEFE;  // getValue: at the iterator, which then moves on

  // From encoded bytes (runs parseVal). transferSyntax is replaced by implicit little endian for
  // group 0000 and by explicit little endian for groups 0002 and 0004.
  DcElem(DcTag tag, const void* buffer, std::uint32_t lengthBytes, DcUid transferSyntax,
         DcVr vr = DcVr::IM, bool isSequence = false);
  // With one value, the dictionary's VR, explicit little endian.
  DcElem(DcTag tag, const char* text);
  DcElem(DcTag tag, DcUid uid);
  DcElem(DcTag tag, std::int32_t value);
  DcElem(DcTag tag, std::uint32_t value);
  DcElem(DcTag tag, const char* fileName, std::uint64_t offsetInFile, std::uint32_t lengthBytes,
         DcUid transferSyntax);
  // Without a value.
  explicit DcElem(DcTag tag, DcVr vr = DcVr::IM);
  virtual ~DcElem();
  DcElem& operator=(const DcElem&) = delete;
  // Tag, VR and every value as they are here, bytes of others copied; of a sequence all its items.
  [[nodiscard]] virtual std::unique_ptr<DcElem> copy() const;

  // Encodes tag, VR (explicit syntaxes), length and value into buffer, which must hold
  // encodedLengthEstimate() bytes. lengthOut: bytes written.
  virtual DcCode frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax);
  // Never below the encoded size.
  [[nodiscard]] virtual std::uint64_t encodedLengthEstimate() const;
  // The same for the value alone, without the 12 bytes of header.
  [[nodiscard]] virtual std::uint64_t encodedValueLengthEstimate() const;
  // Replaces the values by those in the encoded bytes.
  virtual DcCode parseVal(const std::uint8_t* buffer, std::uint32_t lengthBytes,
                          DcUid transferSyntax);
  virtual void resetIterator();
  // One line for people.
  virtual void dump(std::string& out) const;

  [[nodiscard]] DcTag tag() const { return tag_; }
  [[nodiscard]] std::uint16_t group() const { return dcGroup(tag_); }
  [[nodiscard]] std::uint16_t element() const { return dcElement(tag_); }
  // As given; IM stands for the dictionary's VR, which resolvedVr looks up.
  [[nodiscard]] DcVr vr() const { return vr_; }
  [[nodiscard]] DcVr resolvedVr() const { return vr_ == DcVr::IM ? dictionaryVr_ : vr_; }
  void setVr(DcVr vr);
  [[nodiscard]] int valueCount() const;
  // Advances the iterator and stores its position; kDcNoMoreValues at the value count.
  DcCode nextPosition(int& position);
  [[nodiscard]] bool isSequence() const { return isSequence_; }
  [[nodiscard]] DcUid transferSyntax() const { return transferSyntax_; }
  // Tag to use instead of the element's own in dictionary lookups; 0 takes it back.
  void setLookupTag(DcTag tag);
  [[nodiscard]] const std::vector<DcElemValueBuf>& segments() const { return segments_; }
  [[nodiscard]] std::vector<DcElemValueBuf>& segments() { return segments_; }
  // Text of one stored string value without copying, none for other VRs and indexes. A zero byte
  // follows it. Valid until the element changes.
  [[nodiscard]] std::optional<std::string_view> stringValue(int index) const;

  // Text of all stored string values, a zero byte between each two; empty for other VRs. Valid
  // until the element changes.
  [[nodiscard]] std::string_view stringValues() const;
  // The text that the values were divided out of, for a VR with other characters than ASCII where
  // dividing it may have cut one: it holds a backslash and such characters. Null otherwise, and
  // when the values have changed since.
  [[nodiscard]] const std::string* undividedText() const;

  // Adds (index kAppend) or replaces a value, converting it to what the VR stores. A refused
  // value leaves the element as it was.
  // Text: split at backslashes (not for LT and ST), trimmed, checked, converted.
  DcCode addValue(const char* text, int index = kAppend);
  // The same for text without a terminator; it ends at its first zero byte.
  DcCode addText(std::string_view text, int index = kAppend);
  DcCode addValue(std::int16_t value, int index = kAppend);
  DcCode addValue(std::uint16_t value, int index = kAppend);
  DcCode addValue(std::int32_t value, int index = kAppend);
  DcCode addValue(std::uint32_t value, int index = kAppend);
  DcCode addValue(float value, int index = kAppend);
  DcCode addValue(double value, int index = kAppend);
  DcCode addValue(DcUid uid, int index = kAppend);
  // Bulk bytes, copied.
  DcCode addValue(const void* bytes, std::uint32_t lengthBytes, DcUid transferSyntax);
  // Bulk bytes that stay in a file.
  DcCode addValue(const char* fileName, std::uint64_t offsetInFile, std::uint32_t lengthBytes,
                  DcUid transferSyntax);

  // Index 0 means the iterator's position once it has moved.
  DcCode getValue(char* buffer, std::size_t bufferBytes, int index = 0);
  DcCode getValue(std::int16_t& value, int index = 0);
  DcCode getValue(std::uint16_t& value, int index = 0);
  DcCode getValue(std::int32_t& value, int index = 0);
  DcCode getValue(std::uint32_t& value, int index = 0);
  DcCode getValue(float& value, int index = 0);
  DcCode getValue(double& value, int index = 0);
  DcCode getValue(DcElemValueAS& value, int index = 0);
  DcCode getValue(DcElemValueAT& value, int index = 0);
  DcCode getValue(DcUid& uid, int index = 0);
  DcCode getValue(DcElemValueBuf& segment, int index = 0);

  // Check text against the rules of one VR; kDcOk without a look when checking is off. Codes:
  // kDcNullArgument, kDcNoValue (nothing but white space), kDcTooLong, kDcIllegalCharacter.
  // FX is the rule of text that becomes an FL or FD value.
  [[nodiscard]] DcCode verifyValueAE(const char* text) const;
  [[nodiscard]] DcCode verifyValueCS(const char* text) const;
  [[nodiscard]] DcCode verifyValueDS(const char* text) const;
  [[nodiscard]] DcCode verifyValueFX(const char* text) const;
  [[nodiscard]] DcCode verifyValueIS(const char* text) const;
  [[nodiscard]] DcCode verifyValueLO(const char* text) const;
  [[nodiscard]] DcCode verifyValueSH(const char* text) const;
  [[nodiscard]] DcCode verifyValueUI(const char* text) const;

  [[nodiscard]] const DcStringHook& stringHook() const { return hook_; }
  void setStringHook(const DcStringHook& hook) { hook_ = hook; }

 protected:
  // Refers to the same bytes in segments that are not owned, until detach.
  DcElem(const DcElem&) = default;
  // Makes a copy an element of its own, which no list holds yet.
  void detach();

  // One alternative per storage form; monostate until the first value.
  using Values = std::variant<std::monostate, DcTextValues, std::vector<std::int16_t>,
                              std::vector<std::uint16_t>, std::vector<std::int32_t>,
                              std::vector<std::uint32_t>, std::vector<float>, std::vector<double>>;

  [[nodiscard]] DcTag lookupTag() const { return lookupTag_ != 0 ? lookupTag_ : tag_; }
  void initialize(DcUid transferSyntax);
  void clearValues();

  DcTag tag_;
  DcTag lookupTag_ = 0;
  DcVr vr_;
  DcVr dictionaryVr_ = DcVr::UN;  // of lookupTag(): the dictionary's tags never change
  std::int32_t vmLimit_ = 1;
  std::uint32_t maxValueBytes_ = 0;
  DcSizeClass sizeClass_ = DcSizeClass::Bytes;
  DcUid transferSyntax_ = DcUid::ExplicitLittleEndian;
  bool isSequence_ = false;
  int iterator_ = 0;
  Values values_;
  std::vector<DcElemValueBuf> segments_;
  DcStringHook hook_;

 private:
  void deriveFromVr();
  DcCode refuse(const char* function, const char* type) const;

  // One value of text that was split already.
  DcCode addValueStrg(std::string_view text, int index);
  DcCode addNumberText(const VrRow& row, std::string_view text, DcCode code, int index);
  DcCode askHook(DcVr vr, std::string_view text, std::string& replacement);
  DcCode storeText(const VrRow& row, std::string_view text, int index);
  template <typename T>
  DcCode addNumber(T value, int index, const char* type);
  // Held is the alternative of Values that holds values of T.
  template <typename Held, typename T>
  DcCode storeIn(T value, int index);
  template <typename T>
  DcCode store(T value, int index) {
    return storeIn<std::vector<T>>(value, index);
  }
  DcCode store(std::string_view text, int index);

  // Turns the caller's index into that of a value. vr was found readable before.
  DcCode locate(int index, std::size_t& position) const;
  void moveIterator(int index);
  template <typename T>
  DcCode getNumber(T& value, int index, const char* type);
};

}  // namespace quillon
