// A root directory for one job alone, in the temporary directory: for a file set that is delivered
// and goes away in the same job.
//
//   quillon-publish-<process>-XXXXXX/  held by a lock while the job runs
//     DICOM/  the root
//     MOVED   there when what the job had may be the only copies of files
//     KEPT    there when the user was told that the file set stays
#pragma once

#include <string>
#include <vector>

#include "held_directory.h"
#include "outcome.h"

namespace quillon::cli {

class PrivateRoot {
 public:
  // isMoving: the job moves the user's files into the root.
  Outcome make(bool isMoving);
  [[nodiscard]] std::string root() const;
  // Such a root, for a look at what would be: it is not there.
  static std::string exampleOfRoot();
  // At the end of the job: goes away, or stays because the file set in it does.
  void end(bool isKept);

  // The file set in it stays, whatever becomes of this process.
  void keep() const;

  // Removes what killed jobs left; `removed` gets the paths. Answers a sentence for each directory
  // that stays because it may hold the only copies of files.
  static std::vector<std::string> removeAbandoned(std::vector<std::string>& removed);

 private:
  HeldDirectory directory_;
};

}  // namespace quillon::cli
