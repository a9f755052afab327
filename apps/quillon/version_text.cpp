#include "version_text.h"

#include <CLI/Version.hpp>
#include <nlohmann/json.hpp>

#include "platform/archive.h"
#include "platform/sha256.h"
#include "recording/disc_recorders.h"
#include "xml/library_versions.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kVersionColumn = 15;
#define QUILLON_TEXT_OF(word) #word
#define QUILLON_TEXT(word) QUILLON_TEXT_OF(word)
constexpr const char* kJsonVersion = QUILLON_TEXT(NLOHMANN_JSON_VERSION_MAJOR) "." QUILLON_TEXT(
    NLOHMANN_JSON_VERSION_MINOR) "." QUILLON_TEXT(NLOHMANN_JSON_VERSION_PATCH);

constexpr const char* kNotThere = "cannot be loaded";

std::string line(std::string name, const std::string& version,
                 const std::string& otherwise = kNotThere) {
  name.resize(kVersionColumn, ' ');
  return "\n  " + name + (version.empty() ? otherwise : version);
}

std::string whyNoDrives() {
  const std::string problem = platform::opticalLibraryProblem();
  return problem.empty() ? "not installed (package quillon-optical)" : problem;
}

}  // namespace

std::string versionText() {
  const platform::XmlLibraryVersions xml = platform::xmlLibraryVersions();
  return "quillon " QUILLON_VERSION + line("CLI11", CLI11_VERSION) +
         line("nlohmann-json", kJsonVersion) +
         line("libarchive", platform::archiveLibraryVersion()) +
         line("libburn", platform::opticalLibraryVersion().value_or(""), whyNoDrives()) +
         line("libcrypto", digestLibraryVersion()) + line("libcurl", xml.libcurl) +
         line("libxml2", xml.libxml2) + line("libxslt", xml.libxslt);
}

}  // namespace quillon::cli
