#include "sums_file.h"

#include <algorithm>

#include "fileset/root_names.h"
#include "platform/services.h"

namespace quillon {

namespace {

constexpr std::size_t kSumDigits = 64;

bool IsHex(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Where a name has a line end or a backslash, `sha256sum` begins the line with a backslash.
std::string Unescaped(std::string_view name) {
  std::string plain;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] != '\\' || i + 1 == name.size()) {
      plain += name[i];
      continue;
    }
    const char escaped = name[++i];
    plain += escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped;
  }
  return plain;
}

bool LeadsOutside(std::string_view path) {
  if (path.starts_with('/')) return true;
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    if (path.substr(begin, end - begin) == "..") return true;
    begin = end + 1;
  }
  return false;
}

}  // namespace

void SumsFile::Read(std::string_view text, MediumIndex& index, Findings& findings) {
  isThere_ = true;
  std::size_t number = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    text.remove_prefix(std::min(end + 1, text.size()));
    ++number;
    if (!line.empty()) ReadLine(line, number, index, findings);
  }
}

void SumsFile::ReadLine(std::string_view line, std::size_t number, MediumIndex& index,
                        Findings& findings) {
  const bool isEscaped = line.starts_with('\\');
  if (isEscaped) line.remove_prefix(1);
  const std::string_view digits = line.substr(0, kSumDigits);
  constexpr std::size_t kNameAt = kSumDigits + 2;  // behind a space and the mark of the form
  if (line.size() <= kNameAt || !std::ranges::all_of(digits, IsHex) || line[kSumDigits] != ' ' ||
      (line[kSumDigits + 1] != ' ' && line[kSumDigits + 1] != '*')) {
    findings.Add(Fault::SumsLine, {kSumsFileName, {}}, {number});
    return;
  }
  std::string name(line.substr(kNameAt));
  if (isEscaped) name = Unescaped(name);
  while (name.starts_with("./")) name.erase(0, 2);
  if (LeadsOutside(name)) {
    findings.Add(Fault::SumsOutside, {kSumsFileName, {}}, {number, ShownValue(name)});
    return;
  }
  std::ranges::replace(name, '/', '\\');
  const Text path = WidenText(name, FileSystemCodePage());
  auto entry = index.Find(path);
  if (!entry) entry = index.FindFolded(path);
  if (!entry || index.Entries()[*entry].kind != MediumEntry::Kind::File) {
    findings.Add(Fault::SumFileMissing, {ShownPath(path), {}}, {number});
    return;
  }
  std::string sum(digits);
  std::ranges::transform(sum, sum.begin(), [](char c) {
    return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  if (sums_.emplace(*entry, std::move(sum)).second) bytes_ += index.Entries()[*entry].sizeBytes;
}

const std::string* SumsFile::SumOf(std::size_t entry) const {
  const auto found = sums_.find(entry);
  return found == sums_.end() ? nullptr : &found->second;
}

}  // namespace quillon
