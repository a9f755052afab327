// The text values of one element, in one piece of memory: a value costs its characters and one
// byte, so that a file of nothing but backslashes takes its own size and not many times that.
//
//   value 0, zero byte, value 1, zero byte, ... last value
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class DcTextValues {
 public:
  DcTextValues() = default;
  ~DcTextValues() = default;
  DcTextValues(const DcTextValues& other);
  DcTextValues& operator=(const DcTextValues&) = delete;

  [[nodiscard]] std::size_t size() const { return count_; }
  // A zero byte follows the characters. Valid until the values change.
  std::string_view operator[](std::size_t index) const;
  // As they are encoded: the text that was kept undivided, else all values, a zero byte between
  // each two in the place of the backslash.
  [[nodiscard]] const std::string& joined() const {
    return undivided_ == nullptr ? chars_ : *undivided_;
  }

  // None of these takes a zero byte, or text out of these very values. Without memory (they throw)
  // the values are what they were.
  void append(std::string_view value);
  void appendEmpty(std::size_t count);
  void replace(std::size_t index, std::string_view value);
  void eraseFirst(std::size_t count);
  // Keeps the text that all of the values were divided out of, until they change.
  void keepUndivided(std::string_view text) {
    undivided_ = std::make_unique<const std::string>(text);
  }
  // Null unless it was kept.
  [[nodiscard]] const std::string* undivided() const { return undivided_.get(); }
  // Makes room for so many more bytes.
  void reserve(std::size_t bytes) { chars_.reserve(chars_.size() + bytes); }

  // Goes from one value to the next.
  class Iterator {
   public:
    Iterator(const char* at, std::size_t left)
        : at_(at), chars_(left > 0 ? std::strlen(at) : 0), left_(left) {}
    std::string_view operator*() const { return {at_, chars_}; }
    Iterator& operator++() { return *this = Iterator(at_ + chars_ + 1, left_ - 1); }
    bool operator!=(const Iterator& other) const { return left_ != other.left_; }

   private:
    const char* at_;
    std::size_t chars_;
    std::size_t left_;
  };
  [[nodiscard]] Iterator begin() const { return {chars_.c_str(), count_}; }
  [[nodiscard]] Iterator end() const { return {nullptr, 0}; }

 private:
  using Marks = std::vector<std::size_t>;

  [[nodiscard]] std::size_t startOf(std::size_t index) const;
  void setMark(std::size_t index, std::size_t start);
  void markAgain();

  std::string chars_;
  std::size_t count_ = 0;
  // Where every so many values one begins, so that a value is found without going through all;
  // null as long as there are few.
  std::unique_ptr<Marks> marks_;
  std::unique_ptr<const std::string> undivided_;
};

}  // namespace quillon
