#include "file_check.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include "dicomobjects/documents.h"
#include "foundation/text.h"
#include "media_job.h"
#include "platform/services.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kPreambleBytes = 128;
constexpr std::string_view kPrefix = "DICM";
constexpr std::string_view kMediaStorageDirectoryUid = "1.2.840.10008.1.3.10";
constexpr std::string_view kDeflatedUid = "1.2.840.10008.1.2.1.99";

class OpenFile {
 public:
  // Without waiting: a named pipe has no writer that would let the call return.
  explicit OpenFile(const std::string& path)
      : fd_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~OpenFile() {
    if (fd_ >= 0) ::close(fd_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  [[nodiscard]] int get() const { return fd_; }

 private:
  int fd_;
};

FileCheck judged(Verdict verdict, std::string reason) {
  FileCheck check;
  check.verdict = verdict;
  check.reason = std::move(reason);
  return check;
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  if (what.empty()) return text;
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
  return text;
}

// Some file systems answer a read of a broken or unreachable file with an error.
std::optional<FileCheck> refuseUnlessDicom(int fd) {
  std::array<char, kPreambleBytes + kPrefix.size()> head{};
  const ssize_t got = ::pread(fd, head.data(), head.size(), 0);
  if (got < 0) {
    return judged(Verdict::Refuse, std::string("it cannot be read: ") + std::strerror(errno) + ".");
  }
  const bool isDicom = got == static_cast<ssize_t>(head.size()) &&
                       std::string_view(head.data() + kPreambleBytes, kPrefix.size()) == kPrefix;
  if (isDicom) return std::nullopt;
  return judged(Verdict::NotDicom,
                "it is not a DICOM file: \"DICM\" does not stand after a preamble of 128 bytes.");
}

// The media object's own sentence for a file that it cannot read, from one that goes away again.
std::string objectsReason(const std::string& readablePath, const std::string& shownPath) {
  MediaJob probe;
  probe.setPatientKey("-");
  if (probe.addFile(readablePath)) return "its data set cannot be read.";
  return replaced(probe.errorText(), readablePath, shownPath);
}

template <typename Document>
std::optional<std::string> documentProblem(CDicomUtil& util) {
  Document document;
  if (document.ReadFromDicom(util)) return std::nullopt;
  return NarrowText(document.ErrorMessage(), FileSystemCodePage());
}

// Reports, presentation states and key object documents are read for their directory records only
// after they have been moved.
std::optional<std::string> documentProblem(const std::string& modality, const std::string& path) {
  if (modality != "SR" && modality != "PR" && modality != "KO") return std::nullopt;
  CDicomUtil util;
  if (!util.ReadFile(WidenText(path, FileSystemCodePage()), false)) {
    return "its data set cannot be read.";
  }
  if (modality == "SR") return documentProblem<CStructuredReport>(util);
  if (modality == "PR") return documentProblem<CPresentation>(util);
  return documentProblem<CKeyObjectDocument>(util);
}

void judgeFields(const std::string& readablePath, FileCheck& check) {
  const ObjectFields& fields = check.fields;
  const auto judge = [&check](Verdict verdict, std::string reason) {
    check.verdict = verdict;
    check.reason = std::move(reason);
  };
  if (fields.mediaSopClassUid.empty() || fields.mediaSopInstanceUid.empty() ||
      fields.transferSyntaxUid.empty()) {
    judge(Verdict::Refuse, "its file meta information is incomplete.");
  } else if (!fields.namesObject && fields.transferSyntaxUid == kDeflatedUid) {
    // What was read are not its elements.
    judge(Verdict::Refuse, "its data set is deflated, and such files cannot be read.");
  } else if (!fields.namesObject) {
    judge(Verdict::PassOver, "it names no study, series or instance.");
  } else if (auto problem = documentProblem(fields.modality, readablePath)) {
    judge(Verdict::Refuse, *problem);
  }
}

}  // namespace

FileCheck checkFile(const SourceFile& file, bool isMoved) {
  const OpenFile open(file.path);
  struct stat status {};
  if (open.get() < 0 || fstat(open.get(), &status) != 0) {
    return judged(Verdict::Refuse,
                  std::string("it cannot be opened: ") + std::strerror(errno) + ".");
  }
  if (!S_ISREG(status.st_mode)) return judged(Verdict::NotDicom, "it is not a regular file.");
  if (auto refused = refuseUnlessDicom(open.get())) return *refused;

  // The system takes a backslash for a separator of directories. Such a file can still be copied,
  // and is read here through its handle.
  const bool hasBackslash = file.path.find('\\') != std::string::npos;
  if (hasBackslash && isMoved) {
    return judged(Verdict::Refuse, "a path with a backslash cannot be moved.");
  }
  const std::string readablePath =
      hasBackslash ? "/proc/self/fd/" + std::to_string(open.get()) : absolutePath(file.path);
  FileCheck check;
  check.sizeBytes = static_cast<std::uint64_t>(status.st_size);
  const bool isRead = readObjectFields(readablePath, check.fields);
  if (check.fields.mediaSopClassUid == kMediaStorageDirectoryUid) {
    return judged(Verdict::PassOver, "it is the directory of another file set.");
  }
  if (!isRead) return judged(Verdict::Refuse, objectsReason(readablePath, file.path));
  judgeFields(readablePath, check);
  return check;
}

}  // namespace quillon::cli
