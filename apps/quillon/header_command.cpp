#include "header_command.h"

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <string>

#include "foundation/file_util.h"
#include "foundation/text.h"
#include "media_job.h"
#include "platform/services.h"
#include "result_output.h"
#include "stylesheets.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Of an element with many values the first 100 are printed. Pixel data is not read.

A stylesheet is an XSLT 1.0 stylesheet for the XML that --xml prints. "text" and "html" name the two
that ship with the program; a file of that name is meant by ./text. It may read other files
(document(), xsl:import, xsl:include), unless it came from a server.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct HeaderOptions {
  std::string file;
  std::string stylesheet = "text";
  bool isXml = false;
  std::string logFile;
};

// A file by a name that the media object takes: paths of more than 260 characters it refuses.
class NamedFile {
 public:
  explicit NamedFile(std::string path) : path_(std::move(path)) {
    if (WidenText(path_, FileSystemCodePage()).size() <= kMaxPathChars) return;
    handle_ = open(path_.c_str(), O_PATH | O_CLOEXEC);
    // With a handle of -1 it is the name of no file, like the path.
    shortName_ = "/proc/self/fd/" + std::to_string(handle_);
  }
  ~NamedFile() {
    if (handle_ >= 0) close(handle_);
  }
  NamedFile(const NamedFile&) = delete;
  NamedFile& operator=(const NamedFile&) = delete;

  [[nodiscard]] const std::string& name() const { return shortName_.empty() ? path_ : shortName_; }
  // The user knows only the path.
  [[nodiscard]] std::string inWordsOfUser(std::string sentence) const {
    const std::size_t at = sentence.find(name());
    return at == std::string::npos ? sentence : sentence.replace(at, name().size(), path_);
  }

 private:
  std::string path_;
  std::string shortName_;
  int handle_ = -1;
};

int runHeader(const HeaderOptions& options) {
  if (!sendToolkitLog(options.logFile)) {
    return finish({}, "The log file " + options.logFile + " cannot be written.", {});
  }
  const std::string location =
      options.isXml ? xmlStylesheetLocation() : stylesheetLocation(options.stylesheet);
  const NamedFile file(options.file);
  MediaJob job;
  std::string text;
  if (!job.loadHeader(file.name(), location, text)) {
    return finish({}, file.inWordsOfUser(job.errorText()), {});
  }
  const bool isForReaders = !options.isXml && isTextStylesheet(options.stylesheet);
  return finish(isForReaders ? Output::forReaders(text) : Output::asItIs(text), std::nullopt, {});
}

}  // namespace

void addHeaderCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<HeaderOptions>();
  CLI::App* command =
      program.add_subcommand("header", "Prints the header of a DICOM file through a stylesheet");
  command->add_option("FILE", options->file, "The DICOM file")->required();
  CLI::Option* stylesheet =
      command
          ->add_option("--stylesheet", options->stylesheet,
                       "text, html, or the path or http(s) URL of a stylesheet (default: text)")
          ->type_name("LOCATION");
  command->add_flag("--xml", options->isXml, "Print the XML that stylesheets are given")
      ->excludes(stylesheet);
  command->add_option("--log", options->logFile, "Append the toolkit's log lines to a file")
      ->type_name("FILE");
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runHeader(*options); });
}

}  // namespace quillon::cli
