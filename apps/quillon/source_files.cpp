#include "source_files.h"

namespace quillon::cli {

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = text.find(what); !what.empty() && at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
  return text;
}

const SourceFile* SourceFiles::find(const std::string& path) const {
  const std::uint32_t i = added_.Find(std::hash<std::string>{}(path), [&](std::uint32_t position) {
    return pathOf(position) == path;
  });
  return i == PositionIndex::kNone ? nullptr : &files_[i];
}

std::string SourceFiles::inUsersWords(const std::string& sentence) const {
  const std::pair<const std::uint32_t, std::string>* named = nullptr;
  for (const auto& one : renamed_) {
    const bool isLonger = named == nullptr || one.second.size() > named->second.size();
    if (isLonger && sentence.find(one.second) != std::string::npos) named = &one;
  }
  return named == nullptr ? sentence : replaced(sentence, named->second, files_[named->first].path);
}

std::string SourceFiles::pathOf(std::uint32_t position) const {
  const auto renamed = renamed_.find(position);
  return renamed == renamed_.end() ? absolutePath(files_[position].path) : renamed->second;
}

}  // namespace quillon::cli
