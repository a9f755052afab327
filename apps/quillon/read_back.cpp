#include "read_back.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <tuple>

#include "media_job.h"
#include "medium/medium_source.h"
#include "verify/verify_medium.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 20;
constexpr std::size_t kMaxNamed = 10;  // files that a remark of their own is made of

// What was written is on the device by now, so nothing is lost but the copy in memory.
void forgetCached(const fs::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return;
  static_cast<void>(::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED));
  ::close(descriptor);
}

// Compares files block by block.
class Comparison {
 public:
  Comparison(const ReadBack::Progress& progress, std::uint64_t totalBytes)
      : progress_(progress), totalBytes_(totalBytes) {}

  // Empty when both have the same bytes; else what is wrong with the written one.
  std::string differenceOf(MediumFile* written, MediumFile* own) {
    if (own == nullptr) return "cannot be compared: the file in the file set cannot be read";
    if (written == nullptr) return "cannot be read";
    if (written->SizeBytes() != own->SizeBytes()) {
      return "has " + std::to_string(written->SizeBytes()) + " bytes, not " +
             std::to_string(own->SizeBytes());
    }
    for (std::uint64_t at = 0; at < own->SizeBytes();) {
      const auto count =
          static_cast<std::size_t>(std::min<std::uint64_t>(kBlockBytes, own->SizeBytes() - at));
      if (!written->ReadAt(at, written_.get(), count)) return "cannot be read";
      if (!own->ReadAt(at, own_.get(), count)) {
        return "cannot be compared: the file in the file set cannot be read";
      }
      if (std::memcmp(written_.get(), own_.get(), count) != 0) return "has other bytes";
      at += count;
      doneBytes_ += count;
      if (progress_) progress_(doneBytes_, totalBytes_);
    }
    return {};
  }

 private:
  const ReadBack::Progress& progress_;
  std::uint64_t totalBytes_;
  std::uint64_t doneBytes_ = 0;
  std::unique_ptr<char[]> written_ = std::make_unique<char[]>(kBlockBytes);
  std::unique_ptr<char[]> own_ = std::make_unique<char[]>(kBlockBytes);
};

using FindingKey = std::tuple<std::string, Text, Text>;

// The errors of a medium; false when it cannot be looked at.
bool errorsOf(MediumSource& medium, std::vector<Finding>& errors, CBaseItem& failure) {
  VerifyOptions options;
  options.checksSums = false;  // the bytes have been compared
  VerifyReport report;
  if (!VerifyMedium(medium, options, report, failure)) return false;
  std::ranges::copy_if(report.findings, std::back_inserter(errors),
                       [](const Finding& finding) { return finding.severity == Severity::Error; });
  return true;
}

}  // namespace

ReadBack::ReadBack(std::string root, std::string what, Progress progress)
    : root_(std::move(root)), what_(std::move(what)), progress_(std::move(progress)) {}

Outcome ReadBack::check(const std::string& path, const std::string& password,
                        std::vector<std::string>& remarks) {
  std::error_code error;
  if (fs::is_directory(path, error)) {
    for (fs::recursive_directory_iterator it(root_, error), end; !error && it != end;
         it.increment(error)) {
      std::error_code isNone;
      if (it->is_regular_file(isNone)) forgetCached(path / it->path().lexically_relative(root_));
    }
  } else {
    forgetCached(path);
  }
  CBaseItem errors;
  const auto medium = OpenMedium(wide(path), errors, password);
  if (medium == nullptr) {
    return what_ + " cannot be read back: " + narrow(errors.ErrorMessage());
  }
  return check(*medium, remarks);
}

Outcome ReadBack::check(MediumSource& medium, std::vector<std::string>& remarks) {
  if (Outcome compared = compare(medium, remarks); compared.failed()) return compared;
  return checkDirectory(medium, remarks);
}

Outcome ReadBack::compare(MediumSource& medium, std::vector<std::string>& remarks) {
  CBaseItem errors;
  const auto set = OpenMedium(wide(root_), errors);
  std::vector<MediumEntry> own;
  if (set == nullptr || !set->List(own)) {
    const std::string why = narrow((set == nullptr ? errors : *set).ErrorMessage());
    return what_ + " cannot be compared with the file set: " + why;
  }
  std::uint64_t totalBytes = 0;
  std::set<Text> missing;
  for (const MediumEntry& entry : own) {
    if (entry.kind != MediumEntry::Kind::File) continue;
    missing.insert(entry.path);
    totalBytes += entry.sizeBytes;
  }
  files_ = missing.size();
  std::vector<MediumEntry> written;
  if (!medium.List(written)) {
    return what_ + " cannot be read back: " + narrow(medium.ErrorMessage());
  }
  std::vector<std::string> faults;
  Comparison comparison(progress_, totalBytes);
  // In the order of the medium, which is that of the least way.
  for (const MediumEntry& entry : written) {
    if (entry.kind != MediumEntry::Kind::File || missing.erase(entry.path) == 0) continue;
    const auto file = medium.Open(entry.path);
    const auto ownFile = set->Open(entry.path);
    const std::string difference = comparison.differenceOf(file.get(), ownFile.get());
    if (!difference.empty()) faults.push_back(mediumPath(entry.path) + " " + difference + ".");
  }
  for (const Text& path : missing) faults.push_back(mediumPath(path) + " is missing.");
  if (faults.empty()) return {};
  const std::size_t count = faults.size();
  for (std::size_t i = 0; i < std::min(count, kMaxNamed); ++i) remarks.push_back(faults[i]);
  if (count > kMaxNamed) {
    remarks.push_back("The same is true of " + std::to_string(count - kMaxNamed) + " more files.");
  }
  return what_ + " is not what was written: " + std::to_string(count) + " of " +
         std::to_string(files_) + " files " + (count == 1 ? "is" : "are") + " not the same.";
}

// What is wrong with the set already is not the medium's fault.
Outcome ReadBack::checkDirectory(MediumSource& medium, std::vector<std::string>& remarks) const {
  CBaseItem failure;
  std::vector<Finding> errors;
  if (!errorsOf(medium, errors, failure)) {
    return what_ + " cannot be verified: " + narrow(failure.ErrorMessage());
  }
  if (errors.empty()) return {};
  const auto key = [](const Finding& finding) {
    return FindingKey(finding.code, finding.file, finding.record);
  };
  std::set<FindingKey> known;
  std::vector<Finding> ofSet;
  if (const auto set = OpenMedium(wide(root_), failure);
      set != nullptr && errorsOf(*set, ofSet, failure)) {
    for (const Finding& finding : ofSet) known.insert(key(finding));
  }
  std::size_t fresh = 0;
  for (const Finding& finding : errors) {
    if (known.contains(key(finding)) || ++fresh > kMaxNamed) continue;
    remarks.push_back(narrow(finding.file) + ": " + narrow(finding.message));
  }
  if (fresh == 0) return {};
  return what_ + " has the bytes that were written, but " + std::to_string(fresh) +
         (fresh == 1 ? " fault" : " faults") + " that the file set has not.";
}

}  // namespace quillon::cli
