// Where the records of jobs go: a file that only grows, the system's log, or both.
#pragma once

#include <string>

#include "outcome.h"

namespace quillon::cli {

class AuditLog {
 public:
  AuditLog() = default;
  ~AuditLog();
  AuditLog(const AuditLog&) = delete;
  AuditLog& operator=(const AuditLog&) = delete;

  // A file that is not there is made for its user alone, because it names patients.
  Outcome openFile(const std::string& path);
  Outcome openSystemLog();

  // Appends a line, which has no line end, in one piece: lines of jobs at the same time do not mix.
  // It is on the disk afterwards.
  Outcome append(const std::string& line);

 private:
  Outcome appendToFile(const std::string& line);

  std::string path_;
  int file_ = -1;
  bool hasSystemLog_ = false;
};

}  // namespace quillon::cli
