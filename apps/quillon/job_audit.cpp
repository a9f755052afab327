#include "job_audit.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "create_job.h"
#include "dicom/dir_dicom_dir.h"
#include "dicom/tags.h"
#include "dicomobjects/decoded_text.h"
#include "keyed_hash.h"
#include "media_job.h"
#include "platform/sha256.h"
#include "result_output.h"
#include "root_guard.h"
#include "set_sums.h"
#include "settings.h"
#include "source_walk.h"
#include "write_job.h"

namespace quillon::cli {

namespace {

constexpr const char* kSystemLog = "syslog";
constexpr std::size_t kLeastKeyChars = 16;

std::string timeText(std::time_t time) {
  std::tm utc{};
  std::array<char, 32> text{};
  if (::gmtime_r(&time, &utc) == nullptr) return {};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc);
  return text.data();
}

std::string userName() {
  const passwd* user = ::getpwuid(::getuid());
  return user == nullptr ? std::to_string(::getuid()) : user->pw_name;
}

// Who logged in, also where another user does the work; empty where the system does not tell.
std::string loginName() {
  std::ifstream file("/proc/self/loginuid");
  std::int64_t id = -1;
  constexpr std::int64_t kNobody = 0xFFFFFFFF;
  if (!(file >> id) || id < 0 || id == kNobody) return {};
  const passwd* user = ::getpwuid(static_cast<uid_t>(id));
  return user == nullptr ? std::to_string(id) : user->pw_name;
}

std::string hostName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

// It would go with the job, or onto a medium with all the patients that it names.
Outcome checkPlace(const std::string& file, const std::vector<std::string>& taken) {
  const auto around = std::ranges::find_if(taken, [&](const std::string& directory) {
    return !directory.empty() && liesWithin(file, directory);
  });
  if (around == taken.end()) return {};
  return "The audit file " + file + " lies in " + *around +
         ", which is the job's own or goes onto the medium.";
}

Outcome readKey(const std::string& path, std::string& key) {
  std::ifstream file(path, std::ios::binary);
  if (!std::getline(file, key) && !file.eof()) {
    return "The key file " + path + " of the audit cannot be read.";
  }
  if (key.ends_with('\r')) key.pop_back();
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IROTH) != 0) {
    return "The key file " + path + " of the audit can be read by everybody; chmod 600 closes it.";
  }
  if (key.size() >= kLeastKeyChars) return {};
  return "The first line of the key file " + path + " of the audit has fewer than " +
         std::to_string(kLeastKeyChars) + " characters.";
}

std::string textOf(const DcDirRec& record, DcTag tag) {
  const DcElem* element = record.find(tag);
  return element == nullptr ? "" : narrow(DecodedText(*element, CharacterSetOf(record)));
}

std::string sumOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return {};
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  Sha256 sum;
  sum.Update(bytes.data(), bytes.size());
  return sum.Finish();
}

}  // namespace

void addAuditOptions(CLI::App& command, AuditOptions& options) {
  command
      .add_option("--audit", options.target,
                  "Append a record of the job to this file; syslog is the system's log")
      ->type_name("FILE");
  command.add_flag("--audit-hash", options.hasHashes,
                   "Record keyed hashes of patient IDs and study UIDs in their place");
}

Outcome JobAudit::open(const AuditOptions& options, const std::vector<std::string>& sources,
                       const std::vector<std::string>& taken, bool isDryRun) {
  if (isDryRun) return {};
  started_ = std::time(nullptr);
  for (const std::string& source : sources) sources_.push_back(absolutePath(source));
  const bool isNamed = options.target.has_value();
  const std::string file = isNamed ? *options.target : settingText("AuditFile");
  const bool isToSystem = isNamed ? file == kSystemLog : settingText("AuditSyslog") != "0";
  const bool isToFile = isNamed ? !isToSystem : !file.empty();
  if (!isToFile && !isToSystem) return {};
  if (Outcome hashes = openHashes(options); hashes.failed()) return hashes;
  if (isToFile) {
    const std::string path = absolutePath(file);
    if (Outcome placed = checkPlace(path, taken); placed.failed()) return placed;
    if (Outcome opened = log_.openFile(path); opened.failed()) return opened;
  }
  if (isToSystem) {
    if (Outcome opened = log_.openSystemLog(); opened.failed()) return opened;
  }
  isOpen_ = isWanted_ = true;
  return {};
}

void JobAudit::beginAnother() {
  const std::lock_guard lock(mutex_);
  record_ = {};
  started_ = std::time(nullptr);
  isOpen_ = isWanted_;
}

Outcome JobAudit::openHashes(const AuditOptions& options) {
  if (!options.hasHashes && settingText("AuditHash") == "0") return {};
  const std::string path = settingText("AuditHashKey");
  if (path.empty()) {
    return "The hashes of the audit need a key: quillon config set AuditHashKey FILE names the "
           "file that has it.";
  }
  if (Outcome read = readKey(path, hashKey_); read.failed()) return read;
  return keyedHash(hashKey_, "").empty() ? "The system has no SHA-256." : Outcome();
}

void JobAudit::lookAtSet(const std::string& root) {
  if (!isOpen_) return;
  std::string sums = sumOfFile(root + "/" + kSumsName);
  const std::lock_guard lock(mutex_);
  record_.sums = std::move(sums);
  if (!record_.studies.empty() || !record_.patients.empty()) return;
  std::set<std::string> seen;
  const auto add = [&seen](std::vector<std::string>& values, std::string value) {
    if (!value.empty() && seen.insert(value).second) values.push_back(std::move(value));
  };
  const DcDirDicomDir directory(root.c_str());
  for (std::size_t p = 0; p < directory.lowerCount(); ++p) {
    const DcDirRec& patient = *directory.lower(p);
    if (patient.type() != DcDirRecType::Patient) continue;
    add(record_.patients, textOf(patient, tags::kPatientId));
    for (std::size_t s = 0; s < patient.lowerCount(); ++s) {
      const DcDirRec& study = *patient.lower(s);
      if (study.type() != DcDirRecType::Study) continue;
      add(record_.studies, textOf(study, tags::kStudyInstanceUid));
    }
  }
}

void JobAudit::note(const CreateResult& created) {
  const std::lock_guard lock(mutex_);
  record_.root = created.root;
  record_.patients = created.patientIds;
  record_.studies = created.studyUids;
  record_.medium = {"file set", false, created.root, "", 0};
}

void JobAudit::note(const WriteResult& written) {
  const std::lock_guard lock(mutex_);
  record_.root = written.root;
  record_.medium = mediumOf(written);
  const bool hasVolume = !written.target && !written.zip;
  record_.volume = hasVolume ? written.volume : "";
  record_.isVerified = written.verifiedFiles.has_value();
  record_.done = written.isSimulated ? "simulated" : "written";
}

JobAudit::Medium JobAudit::mediumOf(const WriteResult& written) {
  if (written.target) return {"directory", false, *written.target, "", 0};
  if (written.imageFile) return {"iso", false, *written.imageFile, "", 0};
  if (written.zip) return {"zip", false, *written.zip, "", 0};
  return {written.isVirtual ? "virtual disc" : "disc", true, "", written.recorder,
          written.writtenDiscs};
}

Json JobAudit::jsonOf(const Medium& medium) {
  if (medium.kind.empty()) return {};
  Json object;
  object["kind"] = medium.kind;
  if (!medium.isDisc) {
    addPath(object, medium.path);
    return object;
  }
  object["recorder"] = textOrNull(medium.recorder);
  object["discs"] = medium.discs;
  return object;
}

std::vector<std::string> JobAudit::identities(std::vector<std::string> values) const {
  if (hashKey_.empty()) return values;
  for (std::string& value : values) value = keyedHash(hashKey_, value);
  return values;
}

// Sentences may name a patient or a study.
std::string JobAudit::withoutIdentities(std::string sentence, const Record& record) const {
  constexpr std::size_t kLeastChars = 4;  // shorter ones are parts of any number
  if (hashKey_.empty()) return sentence;
  for (const auto* values : {&record.studies, &record.patients}) {
    for (const std::string& value : *values) {
      if (value.size() < kLeastChars) continue;
      for (std::size_t at = sentence.find(value); at != std::string::npos;
           at = sentence.find(value, at)) {
        const std::string hash = keyedHash(hashKey_, value);
        sentence.replace(at, value.size(), hash);
        at += hash.size();
      }
    }
  }
  return sentence;
}

std::string JobAudit::lineOf(const char* result, const std::string& error) {
  Record record;
  {
    const std::lock_guard lock(mutex_);
    record = record_;
  }
  const std::string ending = result == nullptr ? record.done : result;
  Json line = emptyObject();
  line["time"] = timeText(std::time(nullptr));
  line["started"] = timeText(started_);
  line["user"] = userName();
  line["login"] = textOrNull(loginName());
  line["host"] = hostName();
  line["pid"] = ::getpid();
  line["command"] = command_;
  line["sources"] = sources_;
  line["hashed"] = !hashKey_.empty();
  line["patients"] = identities(record.patients);
  line["studies"] = identities(record.studies);
  line["medium"] = jsonOf(record.medium);
  line["root"] = textOrNull(record.root);
  line["volume"] = textOrNull(record.volume);
  line["sums"] = textOrNull(record.sums);
  line["verified"] = record.isVerified;
  line["result"] = ending;
  line["error"] = textOrNull(withoutIdentities(error, record));
  return jsonLine(line);
}

void JobAudit::conclude(Outcome& outcome, std::vector<std::string>& remarks) {
  if (!isOpen_.exchange(false)) return;
  const Outcome appended =
      log_.append(lineOf(outcome.failed() ? "failed" : nullptr, singleLine(outcome.text())));
  if (!appended.failed()) return;
  if (outcome.failed()) {
    remarks.push_back(appended.text());
    return;
  }
  const std::lock_guard lock(mutex_);
  outcome = "The file set is " + record_.done + ", but not recorded. " + appended.text();
}

void JobAudit::interrupted() {
  if (!isOpen_.exchange(false)) return;
  static_cast<void>(log_.append(lineOf("interrupted", "The job was interrupted.")));
}

}  // namespace quillon::cli
