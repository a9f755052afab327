#include "stylesheets.h"

#include <filesystem>
#include <system_error>

namespace quillon::cli {

namespace {

// Where they lie as seen from the program, in the build tree as after an installation.
std::string shippedStylesheet(const std::string& name) {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path directory =
      (program.parent_path() / QUILLON_STYLESHEETS_FROM_PROGRAM).lexically_normal();
  return (directory / (name + ".xsl")).string();
}

}  // namespace

bool isTextStylesheet(const std::string& given) { return given == "text"; }

std::string stylesheetLocation(const std::string& given) {
  return isTextStylesheet(given) || given == "html" ? shippedStylesheet(given) : given;
}

std::string xmlStylesheetLocation() { return shippedStylesheet("xml"); }

}  // namespace quillon::cli
