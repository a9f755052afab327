#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "charset/character_set.h"
#include "command_tree.h"
#include "commands.h"
#include "dicomobjects/header_text.h"
#include "foundation/file_util.h"
#include "foundation/text.h"
#include "header_json.h"
#include "media_job.h"
#include "platform/services.h"
#include "result_output.h"
#include "source_walk.h"
#include "terminal_text.h"
#include "thrown.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Of an element with many values the first 100 are printed. Pixel data is not read. Several headers
stand one after the other, each under "==> FILE <=="; one that fails does not keep the others back.

A stylesheet is an XSLT 1.0 stylesheet for the XML that --xml prints. "text" and "html" name the two
that ship with the program; a file of that name is meant by ./text. It may read other files
(document(), xsl:import, xsl:include), unless it came from a server.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

constexpr const char* kForReaders = "text";  // the one that writes for a terminal
constexpr const char* kForPages = "html";

struct HeaderOptions {
  std::vector<std::string> files;
  bool isRecursive = false;
  std::string stylesheet = kForReaders;
  bool isXml = false;
  std::string characterSet;
  std::string logFile;
  bool isJson = false;
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

// "DICM" behind the preamble.
bool isMarkedAsDicom(const std::string& path) {
  constexpr std::streamoff kPreambleBytes = 128;
  std::array<char, 4> mark{};
  std::ifstream file(path, std::ios::binary);
  file.seekg(kPreambleBytes).read(mark.data(), mark.size());
  return file && std::string_view(mark.data(), mark.size()) == "DICM";
}

// What the object's sentence goes on with, where it only says that a file cannot be read.
std::string whyUnreadable(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return "it is a directory, and -r takes the files in it.";
  }
  if (const Outcome readable = canBeRead(path); readable.failed()) return readable.text();
  return isMarkedAsDicom(path) ? "its elements cannot be read; --log FILE tells where and why."
                               : kNotDicom;
}

std::string withReason(std::string sentence, const std::string& path) {
  if (!sentence.starts_with("Cannot read the DICOM information from ")) return sentence;
  sentence.pop_back();
  return sentence + ": " + whyUnreadable(path);
}

// What the files have in common.
class Headers {
 public:
  explicit Headers(const HeaderOptions& options)
      : location_(options.stylesheet == kForPages ? shippedStylesheet(kForPages)
                                                  : options.stylesheet) {
    // These two are made without the XML library, which takes longer than all else together.
    if (options.isXml) form_ = HeaderForm::Xml;
    if (areForReaders(options)) form_ = HeaderForm::Columns;
    job_.setCharacterSet(options.characterSet);
  }

  Outcome read(const std::string& path, std::string& text) {
    const NamedFile file(path);
    return explained(form_ ? job_.loadHeader(file.name(), *form_, text)
                           : job_.loadHeader(file.name(), location_, text),
                     file, path);
  }
  // Of the same file the XML, too, from which the text is made.
  Outcome read(const std::string& path, std::string& text, Text& xml) {
    const NamedFile file(path);
    Outcome loaded = explained(job_.loadHeader(file.name(), HeaderForm::Xml, text), file, path);
    if (loaded.failed()) return loaded;
    xml = wide(text);
    if (!form_) return read(path, text);
    if (form_ == HeaderForm::Columns) text = narrow(HeaderTextOf(xml));
    return {};
  }
  // In a terminal.
  static bool areForReaders(const HeaderOptions& options) {
    return !options.isXml && options.stylesheet == kForReaders;
  }

 private:
  static Outcome explained(const Outcome& loaded, const NamedFile& file, const std::string& path) {
    if (!loaded.failed()) return {};
    return withReason(file.inWordsOfUser(loaded.text()), path);
  }

  std::string location_;  // of the stylesheet, where there is no form
  std::optional<HeaderForm> form_;
  MediaJob job_;
};

// The files that are named, and with isRecursive those of the directories.
SourceList filesOf(const HeaderOptions& options) {
  if (options.isRecursive) return walkSources(options.files, {});
  SourceList list;
  for (const std::string& file : options.files) list.files.push_back({file, true, false});
  return list;
}

// Prints what becomes of each file as soon as that is known: those of a directory may be more than
// the memory holds.
class HeaderPrinter {
 public:
  explicit HeaderPrinter(const HeaderOptions& options)
      : isJson_(options.isJson), isForReaders_(Headers::areForReaders(options)) {}

  // Reads the file first. One that there is no memory for keeps no other back.
  Outcome add(const std::string& path, Headers& headers) {
    bool isTold = false;
    Outcome outcome = guarded([&] { return addRead(path, headers, isTold); });
    if (!isTold && outcome.failed()) {
      outcome = "Cannot show the header of " + path + ": " + outcome.text();
      addFailed(path, outcome);
    }
    return outcome;
  }
  void addFailed(const std::string& path, const Outcome& why) {
    if (isJson_) addToList(path, {}, {}, why);
  }
  // What is still to be printed.
  Output end(std::size_t passedOver, const Outcome& outcome) {
    if (!isJson_) return {};
    Json members;
    members["passed_over"] = passedOver;
    return Output::asItIs(list_.end(std::move(members), outcome));
  }

 private:
  // isTold: of what it answers nothing more is to be printed.
  Outcome addRead(const std::string& path, Headers& headers, bool& isTold) {
    std::string text;
    if (isJson_) {
      Text xml;
      Outcome read = headers.read(path, text, xml);
      addToList(path, xml, text, read);
      isTold = true;
      return read;
    }
    Outcome read = headers.read(path, text);
    isTold = read.failed();
    if (isTold) return read;
    print(Output::of(!isForReaders_, separator_ + ("==> " + path) + " <==\n" + text));
    separator_ = "\n";
    return {};
  }
  void addToList(const std::string& path, TextView xml, const std::string& text,
                 const Outcome& outcome) {
    Json file = emptyObject();
    addPath(file, path);
    addDataSet(file, outcome.failed() ? TextView() : xml);
    file["text"] = outcome.failed() ? Json() : Json(text);
    addError(file, outcome);
    print(Output::asItIs(list_.add(file)));
  }

  bool isJson_;
  bool isForReaders_;
  const char* separator_ = "";
  JsonList list_{"files"};
};

// One after the other, each under its name. One that fails does not keep the others back.
int printAll(const HeaderOptions& options) {
  Headers headers(options);
  HeaderPrinter printer(options);
  const SourceList list = filesOf(options);
  std::vector<std::string> remarks;
  Outcome last;
  for (const SourceProblem& problem : list.problems) {
    const std::string sentence = problem.path + ": " + problem.reason;
    printer.addFailed(problem.path, sentence);
    if (problem.endsJob && !last.failed()) {
      last = sentence;
    } else {
      remarks.push_back(sentence);
    }
  }
  std::size_t passedOver = 0;
  for (const SourceFile& file : list.files) {
    if (!file.isNamed && !isMarkedAsDicom(file.path)) {
      ++passedOver;
      continue;
    }
    if (Outcome read = printer.add(file.path, headers); read.failed()) {
      if (last.failed()) say(last.text());
      last = std::move(read);
    }
  }
  if (passedOver != 0) {
    remarks.push_back(std::to_string(passedOver) +
                      (passedOver == 1 ? " file that is not DICOM was passed over."
                                       : " files that are not DICOM were passed over."));
  }
  return finish(printer.end(passedOver, last), last, remarks);
}

int runHeader(const HeaderOptions& options) {
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed()) {
    return finish(HeaderPrinter(options).end(0, log), log, {});
  }
  if (options.isRecursive || options.isJson || options.files.size() > 1) return printAll(options);
  Headers headers(options);
  std::string text;
  const Outcome loaded = headers.read(options.files.front(), text);
  return finish(loaded.failed() ? Output() : Output::of(!Headers::areForReaders(options), text),
                loaded, {});
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
      program.add_subcommand("header", "Prints the headers of DICOM files through a stylesheet");
  command->add_option("FILE", options->files, "DICOM files; with -r directories, too")->required();
  command->add_flag("-r,--recursive", options->isRecursive,
                    "Take the DICOM files in directories and below them");
  CLI::Option* stylesheet =
      command
          ->add_option("--stylesheet", options->stylesheet,
                       "text, html, or the path or http(s) URL of a stylesheet (default: text)")
          ->check(offers({kForReaders, kForPages}))
          ->type_name("LOCATION");
  command->add_flag("--xml", options->isXml, "Print the XML that stylesheets are given")
      ->excludes(stylesheet);
  addCharacterSetOption(*command, options->characterSet);
  addJsonOption(*command, options->isJson);
  addLogOption(*command, options->logFile);
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runHeader(*options); });
}

}  // namespace quillon::cli
