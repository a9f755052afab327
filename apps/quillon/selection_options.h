// Which files and objects a job takes: lists of files, and what an object must be.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "fileset/object_selection.h"
#include "outcome.h"

namespace quillon::cli {

struct SelectionOptions {
  std::vector<std::string> studies;
  std::vector<std::string> series;
  std::vector<std::string> modalities;
  std::string since;      // YYYYMMDD, or with dashes
  std::string filesFrom;  // a file that names sources, "-" for standard input
  bool areNamesNullEnded = false;
};

void addSelectionOptions(CLI::App& command, SelectionOptions& options);

ObjectSelection selectionOf(const SelectionOptions& options);

// Appends what the list of files names, if there is one. Throws CLI::RequiredError when there is
// neither a list nor a source.
Outcome takeListedSources(const SelectionOptions& options, std::vector<std::string>& sources);

}  // namespace quillon::cli
