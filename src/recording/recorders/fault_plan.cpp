#include "fault_plan.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>

#include "platform/imapi2_errors.h"
#include "recorders/disc_record.h"
#include "recorders/recorder.h"
#include "win32/utf8.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

constexpr std::uint64_t kAlways = std::numeric_limits<std::uint64_t>::max();

std::vector<std::string_view> wordsOf(std::string_view line) {
  constexpr std::string_view kBlank = " \t\r";
  std::vector<std::string_view> words;
  for (std::size_t at = line.find_first_not_of(kBlank); at != std::string_view::npos;
       at = line.find_first_not_of(kBlank, at)) {
    const std::size_t end = std::min(line.find_first_of(kBlank, at), line.size());
    words.push_back(line.substr(at, end - at));
    at = end;
  }
  return words;
}

bool parseNumber(std::string_view word, std::uint64_t& number) {
  const auto [stopped, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  return error == std::errc() && stopped == word.data() + word.size();
}

bool parseCode(std::string_view word, HRESULT& code) {
  if (!word.starts_with("0x") && !word.starts_with("0X")) return false;
  word.remove_prefix(2);
  DWORD bits = 0;
  const auto [stopped, error] = std::from_chars(word.data(), word.data() + word.size(), bits, 16);
  code = resultOf(bits);
  return error == std::errc() && stopped == word.data() + word.size();
}

// "RULE N [CODE]"
bool parseSectorFault(const std::vector<std::string_view>& words, SectorFault fault,
                      std::optional<SectorFault>& target) {
  const std::size_t most = fault.isPulled ? 2 : 3;
  if (words.size() < 2 || words.size() > most || !parseNumber(words[1], fault.sector) ||
      (words.size() == 3 && !parseCode(words[2], fault.code))) {
    return false;
  }
  target = fault;
  return true;
}

struct KnownPlan {
  struct stat status {};
  std::shared_ptr<FaultPlan> plan;
};

bool isSameFile(const struct stat& a, const struct stat& b) {
  return a.st_ino == b.st_ino && a.st_size == b.st_size && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
         a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

}  // namespace

std::shared_ptr<FaultPlan> FaultPlan::of(const std::string& recorderDirectory) {
  static std::mutex mutex;
  static std::map<std::string, KnownPlan> known;
  const std::string path = recorderDirectory + "/" + kFaultFile;
  KnownPlan current;
  if (::stat(path.c_str(), &current.status) != 0) return nullptr;
  const std::lock_guard lock(mutex);
  const auto found = known.find(path);
  if (found != known.end() && isSameFile(found->second.status, current.status)) {
    return found->second.plan;
  }
  std::string text;
  static_cast<void>(readFile(path, text));
  current.plan = std::make_shared<FaultPlan>(text);
  known.insert_or_assign(path, current);
  return current.plan;
}

FaultPlan::FaultPlan(std::string_view text) {
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (!parseLine(text.substr(0, end)) && badLine_ == 0) badLine_ = number;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

bool FaultPlan::parseLine(std::string_view line) {
  const std::vector<std::string_view> words = wordsOf(line);
  if (words.empty() || words[0].starts_with('#')) return true;
  if (words[0] == "ready-after") {
    return words.size() == 2 && parseNumber(words[1], notReadyLeft_);
  }
  const HRESULT pulled = E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
  if (words[0] == "write-fails-at") {
    return parseSectorFault(words, {0, E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, false},
                            writeFault_);
  }
  if (words[0] == "write-pulled-at") {
    return parseSectorFault(words, {0, pulled, true}, writeFault_);
  }
  if (words[0] == "erase-fails-at") {
    return parseSectorFault(words, {0, E_IMAPI_ERASE_DRIVE_FAILED_ERASE_COMMAND, false},
                            eraseFault_);
  }
  if (words[0] == "erase-pulled-at") {
    return parseSectorFault(words, {0, pulled, true}, eraseFault_);
  }
  if (words[0] == "read-fails-at") {
    return parseSectorFault(words, {0, E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, false}, readFault_);
  }
  if (words[0] == "read-changes-at") {
    return words.size() == 2 && parseSectorFault(words, {}, readChange_);
  }
  return words[0] == "answer" && parseAnswer(words);
}

DiscResult FaultPlan::spoil(std::uint32_t first, std::uint32_t& sectors, char* bytes) const {
  const auto isHit = [&](const std::optional<SectorFault>& fault) {
    return fault && fault->sector >= first && fault->sector - first < sectors;
  };
  if (isHit(readChange_)) {
    char& changed = bytes[(readChange_->sector - first) * kSectorBytes];
    changed = static_cast<char>(changed ^ 1);
  }
  if (!isHit(readFault_)) return S_OK;
  sectors = static_cast<std::uint32_t>(readFault_->sector - first);
  return readFault_->code;
}

bool FaultPlan::parseAnswer(const std::vector<std::string_view>& words) {
  Answer answer{{}, S_OK, kAlways};
  if (words.size() < 3 || words.size() > 4 || !parseCode(words[2], answer.code)) return false;
  answer.operation = words[1];
  if (words.size() == 4) {
    if (words[3] == "once") {
      answer.left = 1;
    } else if (words[3] != "always" && !parseNumber(words[3], answer.left)) {
      return false;
    }
  }
  answers_.push_back(std::move(answer));
  return true;
}

DiscResult FaultPlan::enter(std::string_view operation) {
  if (badLine_ != 0) {
    std::string sentence = "Line ";
    sentence.append(std::to_string(badLine_))
        .append(" of the recorder's fault plan is not understood.");
    return {E_INVALIDARG, wideFromNative(sentence)};
  }
  const std::size_t colons = operation.find("::");
  const std::string_view method =
      colons == std::string_view::npos ? operation : operation.substr(colons + 2);
  const std::lock_guard lock(mutex_);
  for (Answer& answer : answers_) {
    if ((answer.operation != method && answer.operation != operation) || answer.left == 0) continue;
    if (answer.left != kAlways) --answer.left;
    return answer.code;
  }
  return S_OK;
}

DiscResult FaultPlan::askReady() {
  const std::lock_guard lock(mutex_);
  if (notReadyLeft_ == 0) return S_OK;
  --notReadyLeft_;
  return E_IMAPI_RECORDER_MEDIA_BECOMING_READY;
}

}  // namespace quillon::platform
