// Which other content a creation takes, and where it lies on the medium.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "outcome.h"

namespace quillon::cli {

class MediaJob;

struct ContentDirectory {
  std::string path;
  std::string place;  // below the root; "." is the root
};

struct OtherContentOptions {
  bool isTaken = true;
  // In the place of the configured directory, unless there are none.
  std::vector<ContentDirectory> named;
};

void addOtherContentOptions(CLI::App& command, OtherContentOptions& options);

// Whether content can lie there.
Outcome checkContentPlace(const std::string& place);

// Gives the job its content. isStrict: configured content that cannot be had is refused.
Outcome applyOtherContent(const OtherContentOptions& options, bool isStrict, MediaJob& job);

// The directories that are copied from, absolute: no job may wipe what lies in them.
std::vector<std::string> contentSources(const OtherContentOptions& options);

}  // namespace quillon::cli
