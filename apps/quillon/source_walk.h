// Finds the files that the user's arguments stand for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "outcome.h"

namespace quillon::cli {

struct SourceFile {
  std::string path;      // as the user knows it: the argument, or the argument and what is below it
  bool isNamed = false;  // given on the command line itself
  bool isLink = false;   // a symbolic link
};

// Something that is no file to add. `endsJob` when it may hide a DICOM file or was asked for by
// name; the others are what one meets in any directory.
struct SourceProblem {
  std::string path;
  std::string reason;
  bool endsJob = false;
  bool isMissing = false;  // there is nothing of that name
};

struct SourceWalkOptions {
  bool intoSubdirectories = true;
  // A directory that is not walked although it lies in a source: the file set itself.
  std::string excludedDirectory;
};

struct SourceList {
  std::vector<SourceFile> files;
  std::vector<SourceProblem> problems;
};

// Directories are walked in ascending order of names. Symbolic links to files are followed. Of
// symbolic links to directories only those are that were given as arguments, so that no walk can
// go round in circles.
SourceList walkSources(const std::vector<std::string>& arguments, const SourceWalkOptions& options);

// Whether a file can be opened and read; else the system's reason, which goes on after "PATH: ".
Outcome canBeRead(const std::string& path);
// The same of one that is no DICOM file.
inline constexpr const char* kNotDicom =
    "it is not a DICOM file: \"DICM\" does not stand after a preamble of 128 bytes.";

// Against the current directory; "." and ".." stay as they are.
std::string absolutePath(std::string_view path);

}  // namespace quillon::cli
