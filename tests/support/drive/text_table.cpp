#include "text_table.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "real_calls.h"

namespace emulated {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

bool readWholeFile(const std::string& path, std::string& content) {
  content.clear();
  const OwnDescriptor file(real().open(path.c_str(), O_RDONLY | O_CLOEXEC, 0));
  if (!file.isOpen()) return false;
  std::array<char, 4096> piece{};
  for (;;) {
    const ssize_t got = real().read(file.get(), piece.data(), piece.size());
    if (got <= 0) return got == 0;
    content.append(piece.data(), static_cast<std::size_t>(got));
  }
}

bool replaceFile(const std::string& path, std::string_view content) {
  const std::string beside = path + ".new";
  {
    const OwnDescriptor file(
        real().open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!file.isOpen()) return false;
    if (::write(file.get(), content.data(), content.size()) !=
        static_cast<ssize_t>(content.size())) {
      return false;
    }
  }
  return std::rename(beside.c_str(), path.c_str()) == 0;
}

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  for (text = trimmed(text); !text.empty(); text = trimmed(text)) {
    const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
    words.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return words;
}

TextTable TextTable::read(const std::string& path) {
  TextTable table;
  std::string content;
  if (!readWholeFile(path, content)) return table;
  for (std::string_view rest = content; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || trimmed(line).front() == '#') continue;
    table.add(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
  }
  return table;
}

bool TextTable::write(const std::string& path) const {
  std::string content;
  for (const auto& [name, value] : lines_) {
    content.append(name).append(" = ").append(value).append("\n");
  }
  return replaceFile(path, content);
}

bool TextTable::has(std::string_view name) const {
  return std::any_of(lines_.begin(), lines_.end(), [=](const Line& l) { return l.first == name; });
}

std::string TextTable::text(std::string_view name, std::string_view otherwise) const {
  for (const auto& [ownName, value] : lines_) {
    if (ownName == name) return value;
  }
  return std::string(otherwise);
}

std::int64_t TextTable::number(std::string_view name, std::int64_t otherwise) const {
  return has(name) ? std::strtoll(text(name).c_str(), nullptr, 0) : otherwise;
}

bool TextTable::isYes(std::string_view name, bool otherwise) const {
  return has(name) ? text(name) == "yes" : otherwise;
}

void TextTable::set(std::string_view name, std::string_view value) {
  for (auto& [ownName, ownValue] : lines_) {
    if (ownName != name) continue;
    ownValue = value;
    return;
  }
  add(name, value);
}

void TextTable::set(std::string_view name, std::int64_t value) { set(name, std::to_string(value)); }

void TextTable::setYes(std::string_view name, bool isYes) { set(name, isYes ? "yes" : "no"); }

void TextTable::add(std::string_view name, std::string_view value) {
  lines_.emplace_back(name, value);
}

void TextTable::remove(std::string_view name) {
  std::erase_if(lines_, [=](const Line& l) { return l.first == name; });
}

}  // namespace emulated
