#include "medium_listing.h"

#include <algorithm>

namespace quillon {

namespace {

// No reader of DICOM media goes that far; deep directories with long names would take more memory
// than the medium has bytes.
constexpr std::size_t kLongestPathUnits = 1024;
constexpr std::size_t kMostTextUnits = std::size_t{128} << 20;

bool IsLegalName(TextView name) {
  return !name.empty() && name != OLESTR(".") && name != OLESTR("..") &&
         std::ranges::none_of(name, [](OLECHAR c) {
           return c == OLESTR('\\') || c == OLESTR('/') || c == OLECHAR{0};
         });
}

}  // namespace

bool MediumListing::Add(TextView directory, TextView name, MediumEntry::Kind kind,
                        std::uint64_t sizeBytes) {
  Text path = Join(directory, name);
  if (!IsLegalName(name) || path.size() > kLongestPathUnits) {
    Tell(kMsgMediumNameInvalid, {path});
    return false;
  }
  if (byPath_.contains(TextView(path))) {
    Tell(kMsgMediumNameTwice, {path});
    return false;
  }
  textUnits_ += path.size();
  if (entries_.size() >= kMostEntries || textUnits_ > kMostTextUnits) {
    isFull_ = true;
    Tell(kMsgMediumTooManyEntries, {NumberText(static_cast<long long>(kMostEntries))});
    return false;
  }
  entries_.push_back({std::move(path), sizeBytes, kind});
  byPath_.insert(static_cast<std::uint32_t>(entries_.size() - 1));
  return true;
}

void MediumListing::Tell(UINT id, std::initializer_list<TextArg> args) {
  if (!fault_.empty()) return;
  errors_.SetErrorMessage(id, args);
  fault_ = errors_.ErrorMessage();
}

bool MediumListing::Answer(std::vector<MediumEntry>& entries) const {
  entries = entries_;
  if (fault_.empty()) return true;
  errors_.SetErrorMessage(fault_);
  return false;
}

std::size_t MediumListing::Find(TextView path) const {
  const auto found = byPath_.find(path);
  return found == byPath_.end() ? entries_.size() : *found;
}

Text MediumListing::Join(TextView directory, TextView name) {
  Text path(directory);
  if (!path.empty()) path += OLESTR('\\');
  return path.append(name);
}

}  // namespace quillon
