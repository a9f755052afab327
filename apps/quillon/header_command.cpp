#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "charset/character_set.h"
#include "commands.h"
#include "foundation/file_util.h"
#include "foundation/text.h"
#include "media_job.h"
#include "platform/services.h"
#include "result_output.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Of an element with many values the first 100 are printed. Pixel data is not read.

A stylesheet is an XSLT 1.0 stylesheet for the XML that --xml prints. "text" and "html" name the two
that ship with the program; a file of that name is meant by ./text. It may read other files
(document(), xsl:import, xsl:include), unless it came from a server.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

constexpr const char* kForReaders = "text";  // the one that writes for a terminal

struct HeaderOptions {
  std::string file;
  std::string stylesheet = kForReaders;
  bool isXml = false;
  std::string characterSet;
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

// Where it lies as seen from the program, in the build tree as after an installation.
std::string shippedStylesheet(const std::string& name) {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path directory =
      (program.parent_path() / QUILLON_STYLESHEETS_FROM_PROGRAM).lexically_normal();
  return (directory / (name + ".xsl")).string();
}

int runHeader(const HeaderOptions& options) {
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed()) return finish({}, log, {});
  const std::string& given = options.stylesheet;
  const bool isForReaders = !options.isXml && given == kForReaders;
  const std::string location = options.isXml                     ? shippedStylesheet("xml")
                               : isForReaders || given == "html" ? shippedStylesheet(given)
                                                                 : given;
  const NamedFile file(options.file);
  MediaJob job;
  job.setCharacterSet(options.characterSet);
  std::string text;
  const Outcome loaded = job.loadHeader(file.name(), location, text);
  if (loaded.failed()) return finish({}, file.inWordsOfUser(loaded.text()), {});
  return finish(isForReaders ? Output::forReaders(text) : Output::asItIs(text), {}, {});
}

// Empty for terms that are all known: the sentence otherwise.
std::string refusedTerms(const std::string& terms) {
  for (std::size_t begin = 0; begin <= terms.size();) {
    const std::size_t end = std::min(terms.find('\\', begin), terms.size());
    const std::string term = terms.substr(begin, end - begin);
    const bool isDefault = term.empty() && begin == 0 && end < terms.size();
    if (!isDefault && !CharacterSet(term).IsKnown()) return '"' + term + "\" is no character set";
    begin = end + 1;
  }
  return {};
}

}  // namespace

void addCharacterSetOption(CLI::App& command, std::string& terms) {
  command
      .add_option("--charset", terms,
                  "Read texts as if the file declared these terms, such as ISO_IR 192")
      ->check(refusedTerms)
      ->type_name("TERM");
}

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
  addCharacterSetOption(*command, options->characterSet);
  addLogOption(*command, options->logFile);
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runHeader(*options); });
}

}  // namespace quillon::cli
