#include "dicom/text_values.h"

#include <algorithm>

namespace quillon {
namespace {

constexpr std::size_t kValuesPerMark = 64;

}  // namespace

DcTextValues::DcTextValues(const DcTextValues& other)
    : chars_(other.chars_),
      count_(other.count_),
      marks_(other.marks_ != nullptr ? std::make_unique<Marks>(*other.marks_) : nullptr),
      undivided_(other.undivided_ != nullptr
                     ? std::make_unique<const std::string>(*other.undivided_)
                     : nullptr) {}

std::size_t DcTextValues::startOf(std::size_t index) const {
  const std::size_t mark = index / kValuesPerMark;
  std::size_t start = mark > 0 ? (*marks_)[mark - 1] : 0;
  for (std::size_t i = mark * kValuesPerMark; i < index; ++i) {
    start += std::strlen(chars_.c_str() + start) + 1;
  }
  return start;
}

std::string_view DcTextValues::operator[](std::size_t index) const {
  if (count_ == 1) return chars_;
  return {chars_.c_str() + startOf(index)};
}

// One that an append without memory left behind is overwritten.
void DcTextValues::setMark(std::size_t index, std::size_t start) {
  if (marks_ == nullptr) marks_ = std::make_unique<Marks>();
  const std::size_t mark = index / kValuesPerMark - 1;
  if (mark < marks_->size()) {
    (*marks_)[mark] = start;
  } else {
    marks_->push_back(start);
  }
}

void DcTextValues::append(std::string_view value) {
  undivided_.reset();
  if (count_ == 0) {
    chars_.assign(value);
    count_ = 1;
    return;
  }
  const std::size_t start = chars_.size() + 1;
  if (count_ % kValuesPerMark == 0) setMark(count_, start);
  if (value.empty()) {
    chars_.push_back('\0');
  } else {
    chars_.resize(start + value.size());
    value.copy(&chars_[start], value.size());
  }
  ++count_;
}

void DcTextValues::appendEmpty(std::size_t count) {
  if (count == 0) return;
  undivided_.reset();
  const std::size_t first = chars_.size() + (count_ > 0 ? 1 : 0);
  const std::size_t passed = std::max<std::size_t>(count_, 1) + kValuesPerMark - 1;
  for (std::size_t i = passed - passed % kValuesPerMark; i < count_ + count; i += kValuesPerMark) {
    setMark(i, first + (i - count_));
  }
  chars_.append(count_ > 0 ? count : count - 1, '\0');
  count_ += count;
}

void DcTextValues::replace(std::size_t index, std::string_view value) {
  undivided_.reset();
  const std::size_t start = startOf(index);
  chars_.replace(start, std::strlen(chars_.c_str() + start), value);
  markAgain();
}

void DcTextValues::eraseFirst(std::size_t count) {
  undivided_.reset();
  count = std::min(count, count_);
  if (count == count_) {
    chars_.clear();
  } else {
    chars_.erase(0, startOf(count));
  }
  count_ -= count;
  markAgain();
}

// Values that move as one stay as they are, their places do not; there are never more marks than
// before, so that this needs no memory.
void DcTextValues::markAgain() {
  if (marks_ == nullptr) return;
  std::size_t start = 0;
  for (std::size_t i = 1; i < count_; ++i) {
    start += std::strlen(chars_.c_str() + start) + 1;
    if (i % kValuesPerMark == 0) setMark(i, start);
  }
}

}  // namespace quillon
