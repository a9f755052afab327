// Runs a program and kills it at its n-th call that changes what is on a disk, before the call is
// made: for n = 1, 2, ... every state in which a dying program can leave its files.
//
//   kill_at_change N COUNT-FILE PROGRAM ARGUMENT...
//   kill_at_change --meanwhile SCRIPT N COUNT-FILE PROGRAM ARGUMENT...
//
// With --meanwhile the program is not killed: it stands still at that call while the shell runs the
// script, and then goes on. With N = 0, or when there are fewer such calls, the program runs to its
// end. The number of calls up to there is written to COUNT-FILE. The exit status is the program's,
// 137 when it was killed, 76 when the script failed, 77 when programs cannot be traced here.
#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr int kKilled = 137;
constexpr int kScriptFailed = 76;
constexpr int kCannotTrace = 77;
constexpr std::uint64_t kLastStandardStream = 2;

constexpr std::array<std::uint64_t, 14> kChanging{
    SYS_mkdirat,  SYS_unlinkat,        SYS_renameat2, SYS_ftruncate, SYS_truncate,
    SYS_pwrite64, SYS_copy_file_range, SYS_linkat,    SYS_sendfile,
#ifdef SYS_mkdir  // older kernels' forms, which some architectures never had
    SYS_mkdir,    SYS_rmdir,           SYS_unlink,    SYS_rename,    SYS_renameat,
#endif
};

template <typename Entry>
bool changesADisk(const Entry& entry) {
  if (entry.nr == SYS_write || entry.nr == SYS_writev) return entry.args[0] > kLastStandardStream;
  if (entry.nr == SYS_openat) return (entry.args[2] & (O_CREAT | O_TRUNC)) != 0;
  return std::find(kChanging.begin(), kChanging.end(), entry.nr) != kChanging.end();
}

bool isBeforeAChange(pid_t thread) {
  struct __ptrace_syscall_info info {};
  if (::ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) <= 0) return false;
  return info.op == PTRACE_SYSCALL_INFO_ENTRY && changesADisk(info.entry);
}

[[noreturn]] void runTraced(char** arguments) {
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kCannotTrace);
  ::raise(SIGSTOP);
  ::execv(arguments[0], arguments);
  std::perror(arguments[0]);
  ::_exit(kCannotTrace);
}

int killNow(pid_t child) {
  ::kill(child, SIGKILL);
  int status = 0;
  while (::waitpid(-1, &status, __WALL) > 0) {
  }
  return kKilled;
}

bool runScript(char* script) {
  const pid_t shell = ::fork();
  if (shell == 0) {
    ::execl("/bin/sh", "sh", script, nullptr);
    ::_exit(kScriptFailed);
  }
  int status = 0;
  return shell > 0 && ::waitpid(shell, &status, 0) == shell && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

struct Plan {
  long at = 0;
  char* script = nullptr;
};

// Answers the exit status; count is the number of changes.
int watch(pid_t child, const Plan& plan, long& count) {
  int status = 0;
  if (::waitpid(child, &status, __WALL) != child || !WIFSTOPPED(status)) return kCannotTrace;
  const auto options =
      static_cast<std::uintptr_t>(PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_EXITKILL);
  if (::ptrace(PTRACE_SETOPTIONS, child, nullptr, options) != 0) return kCannotTrace;
  ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
  for (;;) {
    const pid_t thread = ::waitpid(-1, &status, __WALL);
    if (thread < 0) return kCannotTrace;
    if (!WIFSTOPPED(status)) {
      if (thread == child) return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
      continue;
    }
    int signal = WSTOPSIG(status);
    if (signal == (SIGTRAP | 0x80)) {
      if (isBeforeAChange(thread) && ++count == plan.at) {
        if (plan.script == nullptr) return killNow(child);
        if (!runScript(plan.script)) return kScriptFailed;
      }
      signal = 0;
    } else if (signal == SIGTRAP || signal == SIGSTOP) {
      signal = 0;  // a new thread, or the program's own beginning
    }
    ::ptrace(PTRACE_SYSCALL, thread, nullptr, static_cast<std::uintptr_t>(signal));
  }
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  if (argc > 2 && std::string_view(argv[1]) == "--meanwhile") {
    plan.script = argv[2];
    argv += 2;
    argc -= 2;
  }
  if (argc < 4) {
    std::fprintf(stderr, "kill_at_change [--meanwhile SCRIPT] N COUNT-FILE PROGRAM ARGUMENT...\n");
    return 2;
  }
  plan.at = std::strtol(argv[1], nullptr, 10);
  const pid_t child = ::fork();
  if (child == 0) runTraced(argv + 3);
  long count = 0;
  const int status = child < 0 ? kCannotTrace : watch(child, plan, count);
  if (FILE* file = std::fopen(argv[2], "w"); file != nullptr) {
    std::fprintf(file, "%ld\n", count);
    if (std::fclose(file) != 0) return kCannotTrace;
  }
  return status;
}
