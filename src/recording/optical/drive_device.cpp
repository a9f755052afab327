#include "drive_device.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/imapi2_errors.h"
#include "win32/utf8.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

// What the desktop has mounted for its user, only its service takes away again.
bool unmountByDesktop(const std::string& device) {
  std::array<std::string, 5> words{"udisksctl", "unmount", "--no-user-interaction", "-b", device};
  std::array<char*, words.size() + 1> arguments{};
  std::transform(words.begin(), words.end(), arguments.begin(),
                 [](std::string& word) { return word.data(); });
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return false;
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ::posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
  }
  pid_t child = 0;
  const int error =
      ::posix_spawnp(&child, words[0].c_str(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return false;
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

DiscResult refusal(HRESULT code, const std::string& sentence) {
  return {code, wideFromNative(sentence)};
}

}  // namespace

DiscResult checkDevice(const std::string& address) {
  if (isFileAddress(address)) return S_OK;
  struct stat status {};
  if (::stat(address.c_str(), &status) != 0) {
    return refusal(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                   "There is no drive \"" + address + "\".");
  }
  if (!S_ISBLK(status.st_mode)) {
    return refusal(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), "\"" + address + "\" is not a drive.");
  }
  if (::access(address.c_str(), R_OK | W_OK) != 0) {
    return refusal(E_ACCESSDENIED, "This user may not use the drive \"" + address +
                                       "\"; its group, often cdrom, may.");
  }
  return S_OK;
}

bool isDeviceBusy(const std::string& address) {
  if (isFileAddress(address)) return false;
  const Descriptor drive(::open(address.c_str(), O_RDONLY | O_EXCL | O_NONBLOCK | O_CLOEXEC));
  return !drive.isOpen() && errno == EBUSY;
}

DiscResult unmountDisc(const std::string& address) {
  for (const std::string& point : mountPointsOf(address)) {
    if (::umount2(point.c_str(), 0) == 0) continue;
    const int error = errno;
    if (error == EPERM && unmountByDesktop(address)) continue;
    std::string sentence = "The disc in \"" + address + "\" is mounted at \"";
    sentence.append(point).append("\" and cannot be unmounted: ").append(std::strerror(error));
    return refusal(E_IMAPI_RECORDER_LOCKED, sentence.append("."));
  }
  return S_OK;
}

void readKernelFacts(const std::string& address, DriveIdentity& identity) {
  const Descriptor drive(::open(address.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!drive.isOpen()) return;
  const int able = ::ioctl(drive.get(), CDROM_GET_CAPABILITY, 0);
  if (able < 0) return;
  const auto addIf = [&](int capability, IMAPI_MEDIA_PHYSICAL_TYPE type) {
    if ((able & capability) != 0) identity.writableTypes.push_back(type);
  };
  addIf(CDC_CD_R, IMAPI_MEDIA_TYPE_CDR);
  addIf(CDC_CD_RW, IMAPI_MEDIA_TYPE_CDRW);
  addIf(CDC_DVD_R, IMAPI_MEDIA_TYPE_DVDDASHR);
  addIf(CDC_DVD_RAM, IMAPI_MEDIA_TYPE_DVDRAM);
}

}  // namespace quillon::platform
