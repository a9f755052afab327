// One creation of a file set from the user's files and directories.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "fileset/disc_room.h"
#include "other_content_options.h"
#include "outcome.h"
#include "profile_options.h"
#include "record_remarks.h"
#include "selection_options.h"
#include "span_plan.h"

namespace quillon::cli {

class MediaJob;

struct CreateOptions {
  std::vector<std::string> sources;
  SelectionOptions selection;
  std::optional<std::string> root;
  std::optional<std::string> objectDirectory;
  std::optional<std::string> patientKey;
  bool isReplacing = false;
  bool hasHierarchy = false;
  bool intoSubdirectories = true;
  // Of directories too only what their DICOMDIR names is taken.
  bool isViaDicomDir = false;
  OtherContentOptions otherContent;
  bool isMoving = false;
  bool isKeepingGoing = false;
  // Files that are not whole, or lack what a directory record needs, are refused.
  bool isStrict = false;
  // What they lack is made up.
  bool isInventing = false;
  bool isForOnePatient = false;
  // What the set is held to, with isStrict or else nothing is made; and what it will be written to,
  // as in TakesMedium, where that is known.
  ProfileChoice profile;
  std::string mediumKind;
  // In the place of the one that the files declare; empty: theirs.
  std::string characterSet;
  // README.TXT and pages for a browser; not given: as the registry says.
  std::optional<bool> hasPages;
  std::optional<std::string> pageStylesheets;  // the directory of stylesheets of the user's own
  // The objects may be hard links to the sources: nobody will have the file set after this job.
  bool mayLink = false;
  // Everything is looked at and nothing changed.
  bool isDryRun = false;
  bool showsProgress = true;
  // Of several media that hold what would not fit one.
  unsigned mediumNumber = 1;
  unsigned mediumCount = 1;
  // Of the files that the sources hold only these are meant, by the names that the user would give
  // them; the others are told of elsewhere. Null: all.
  const std::unordered_set<std::string>* part = nullptr;
  // The result says which object lies where.
  bool tellsObjects = false;
  // Asked when it is known what the file set takes, before anything is copied or moved. May be
  // empty.
  std::function<Outcome(const DiscRoom& room)> askSize;
  // Called beside the job when a signal ends it. May be empty.
  std::function<void()> whenInterrupted;
};

struct PassedOver {
  std::string path;
  std::string reason;
  bool isMissed = false;  // it would end a job that does not keep going
};

struct CreateResult {
  std::string root;
  bool isDryRun = false;
  // Of what is in the file set.
  std::size_t patients = 0;
  std::size_t studies = 0;
  std::size_t series = 0;
  std::size_t objects = 0;
  std::uint64_t bytes = 0;
  std::uint64_t discSectors = 0;  // that a disc needs, at the most; told of a dry run
  std::string label;
  // Whose the objects are, as far as that was found out.
  std::vector<std::string> patientIds;
  std::vector<std::string> studyUids;
  std::vector<PassedOver> passedOver;
  std::vector<SpanSeries> seriesOfObjects;  // where they were asked for, as the next
  std::vector<SpanObject> plannedObjects;
  std::size_t notSelected = 0;  // files that the selection leaves out
  std::vector<IncompleteKey> incomplete;
  ProfileResult profile;
  Outcome outcome;
  std::vector<std::string> remarks;  // what the user should know beside it
};

// The file set's directory as an absolute path without a separator at its end.
std::string absoluteRoot(std::string_view root);

// The job keeps its root directory afterwards, for the delivery.
CreateResult createFileSet(const CreateOptions& options, MediaJob& job);

}  // namespace quillon::cli
