#include "header_command.h"

#include <memory>
#include <optional>
#include <string>

#include "media_job.h"
#include "result_output.h"
#include "stylesheets.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Of an element with many values the first 100 are printed. Pixel data is not read.

A stylesheet is an XSLT 1.0 stylesheet for the XML that --xml prints. "text" and "html" name the two
that ship with the program; a file of that name is meant by ./text.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct HeaderOptions {
  std::string file;
  std::string stylesheet = "text";
  bool isXml = false;
  std::string logFile;
};

int runHeader(const HeaderOptions& options) {
  if (!sendToolkitLog(options.logFile)) {
    return finish({}, "The log file " + options.logFile + " cannot be written.", {});
  }
  const std::string location =
      options.isXml ? xmlStylesheetLocation() : stylesheetLocation(options.stylesheet);
  MediaJob job;
  std::string text;
  if (!job.loadHeader(options.file, location, text)) return finish({}, job.errorText(), {});
  return finish(text, std::nullopt, {});
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
