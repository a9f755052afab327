// The record of a job for those who answer for patients' data: one JSON line for each that was
// done, failed or was interrupted, with who, when, whose data and on which medium.
#pragma once

#include <CLI/CLI.hpp>
#include <atomic>
#include <ctime>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "audit_log.h"
#include "json_output.h"
#include "outcome.h"

namespace quillon::cli {

struct CreateResult;
struct WriteResult;

struct AuditOptions {
  std::optional<std::string> target;  // a file or "syslog"; none: as configured
  bool hasHashes = false;             // also where it is not configured
};

void addAuditOptions(CLI::App& command, AuditOptions& options);

class JobAudit {
 public:
  // command: its name. Nothing is recorded until `open` has succeeded.
  explicit JobAudit(std::string command) : command_(std::move(command)) {}

  // Before anything of the job begins. Fails when its end could not be recorded as asked for, and
  // for a file in one of `taken`: directories that are the job's own or go onto the medium. Nothing
  // is recorded of a dry run.
  Outcome open(const AuditOptions& options, const std::vector<std::string>& sources,
               const std::vector<std::string>& taken, bool isDryRun);

  // What the file set in a directory says of itself, while it is there: whose it is, unless that is
  // known, and its sums.
  void lookAtSet(const std::string& root);
  // What is known of the job by now.
  void note(const CreateResult& created);
  void note(const WriteResult& written);

  // After conclude: what follows is a job of its own, with the same sources, that is recorded too.
  void beginAnother();

  // Records how the job ended. When that cannot be written, the job has failed: one that is done
  // all the same says so, another one has a remark more.
  void conclude(Outcome& outcome, std::vector<std::string>& remarks);
  // The same of a job whose process is about to end, beside it. The first of the two records.
  void interrupted();

 private:
  struct Medium {
    std::string kind;  // empty: none is known yet
    bool isDisc = false;
    std::string path;      // of what is no disc
    std::string recorder;  // of a disc, as the next
    int discs = 0;
  };
  struct Record {
    std::vector<std::string> patients;
    std::vector<std::string> studies;
    Medium medium;
    std::string root;
    std::string volume;
    std::string sums;
    std::string done = "created";  // how it ended, when it did not fail
    bool isVerified = false;
  };
  Outcome openHashes(const AuditOptions& options);
  [[nodiscard]] static Medium mediumOf(const WriteResult& written);
  [[nodiscard]] static Json jsonOf(const Medium& medium);
  [[nodiscard]] std::vector<std::string> identities(std::vector<std::string> values) const;
  [[nodiscard]] std::string withoutIdentities(std::string sentence, const Record& record) const;
  [[nodiscard]] std::string lineOf(const char* result, const std::string& error);

  std::string command_;
  AuditLog log_;
  bool isWanted_ = false;
  std::atomic<bool> isOpen_ = false;
  std::time_t started_ = 0;
  std::vector<std::string> sources_;
  std::string hashKey_;  // empty: identities stand as they are
  std::mutex mutex_;     // of the record; held for as long as it is copied
  Record record_;
};

}  // namespace quillon::cli
