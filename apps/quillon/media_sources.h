// Media as sources: images and ZIP files, whose files are taken out of them, and directories of
// which only what their DICOMDIR names is wanted.
#pragma once

#include <string>
#include <vector>

#include "outcome.h"
#include "source_walk.h"

namespace quillon::cli {

class Staging;

class MediaSources {
 public:
  explicit MediaSources(bool isViaDicomDir) : isViaDicomDir_(isViaDicomDir) {}

  // Keeps the media among the sources; answers the others.
  std::vector<std::string> takeFrom(const std::vector<std::string>& sources);

  // Appends the files of all media: those that the DICOMDIR names, in its order, or all of a medium
  // that has none. stored: for each appended file where it was staged; empty for one that lies in a
  // directory. Fails for a medium that cannot be read. A file that the DICOMDIR names and that is
  // not there, or cannot be read, is a problem.
  Outcome list(Staging& staging, SourceList& list, std::vector<std::string>& stored) const;

 private:
  Outcome listOne(const std::string& source, Staging& staging, SourceList& list,
                  std::vector<std::string>& stored) const;

  bool isViaDicomDir_;
  std::vector<std::string> media_;
};

}  // namespace quillon::cli
