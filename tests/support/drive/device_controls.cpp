#include "device_controls.h"

#include <linux/cdrom.h>
#include <linux/fs.h>
#include <scsi/scsi.h>
#include <scsi/scsi_ioctl.h>
#include <scsi/sg.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "command.h"
#include "devices.h"

namespace emulated {
namespace {

constexpr std::uint8_t kCheckCondition = 2;

std::array<std::uint8_t, 18> senseData(Sense sense) {
  std::array<std::uint8_t, 18> data{};
  data[0] = 0x70;
  data[2] = sense.key;
  data[7] = 10;
  data[12] = sense.code;
  data[13] = sense.qualifier;
  return data;
}

long passCommand(const std::string& directory, sg_io_hdr_t& request) {
  if (request.interface_id != 'S') return -ENOSYS;
  if (request.iovec_count != 0) return -EINVAL;
  auto* const data = static_cast<std::uint8_t*>(request.dxferp);
  const bool isToDrive = request.dxfer_direction == SG_DXFER_TO_DEV;
  const bool hasData = request.dxfer_direction != SG_DXFER_NONE && data != nullptr;
  Command command(request.cmdp, request.cmd_len, data, hasData ? request.dxfer_len : 0, isToDrive);
  Sense sense;
  if (!runCommand(directory, command, sense)) return -ENODEV;
  request.status = request.masked_status = request.msg_status = 0;
  request.host_status = request.driver_status = 0;
  request.sb_len_wr = 0;
  request.duration = 1;
  request.info = 0;
  const std::size_t moved = isToDrive && sense.isGood() ? request.dxfer_len : command.transferred();
  request.resid = static_cast<int>(request.dxfer_len) - static_cast<int>(moved);
  if (sense.isGood()) return 0;
  request.status = kCheckCondition;
  request.masked_status = kCheckCondition >> 1;
  request.driver_status = 0x08;  // sense data is there
  request.info = SG_INFO_CHECK;
  const std::array<std::uint8_t, 18> told = senseData(sense);
  request.sb_len_wr =
      static_cast<unsigned char>(std::min<std::size_t>(told.size(), request.mx_sb_len));
  if (request.sbp != nullptr) std::memcpy(request.sbp, told.data(), request.sb_len_wr);
  return 0;
}

// A command of the library's own, as the kernel's driver sends them for an ioctl.
Sense send(const std::string& directory, std::array<std::uint8_t, 6> block) {
  Command command(block.data(), block.size(), nullptr, 0, false);
  Sense sense;
  return runCommand(directory, command, sense) ? sense : kNoMedium;
}

long moveTray(const std::string& directory, bool opens) {
  const auto action = static_cast<std::uint8_t>(opens ? 2 : 3);
  return send(directory, {0x1B, 0, 0, 0, action, 0}).isGood() ? 0 : -EIO;
}

long capabilities(const std::string& directory) {
  const Drive drive(directory);
  const int reads = CDC_OPEN_TRAY | CDC_CLOSE_TRAY | CDC_LOCK | CDC_MULTI_SESSION |
                    CDC_MEDIA_CHANGED | CDC_GENERIC_PACKET | CDC_DVD;
  const int writes = CDC_CD_R | CDC_CD_RW | CDC_DVD_R | CDC_DVD_RAM;
  return reads | (drive.isThere() && drive.isBurner() ? writes : 0);
}

long driveStatus(const std::string& directory) {
  const Drive drive(directory);
  if (!drive.isThere()) return CDS_NO_INFO;
  if (drive.isTrayOpen()) return CDS_TRAY_OPEN;
  return drive.hasMedium() ? CDS_DISC_OK : CDS_NO_DISC;
}

template <typename Number>
long put(void* argument, Number number) {
  *static_cast<Number*>(argument) = number;
  return 0;
}

long putAddress(const std::string& directory, void* argument, bool isForSg) {
  // The number of the drive, from ".../srN", serves as its SCSI target.
  const int target = std::atoi(directory.c_str() + directory.rfind("sr") + 2);
  if (isForSg) {
    sg_scsi_id id{};
    id.scsi_id = target;
    id.scsi_type = TYPE_ROM;
    *static_cast<sg_scsi_id*>(argument) = id;
    return 0;
  }
  struct {
    int address;
    int host;
  } const idlun{.address = target, .host = 0};
  std::memcpy(argument, &idlun, sizeof idlun);
  return 0;
}

}  // namespace

long controlDevice(const std::string& directory, unsigned long request, void* argument) {
  constexpr int kSgVersion = 30536;
  constexpr long kKernelSectors = kSectorBytes / 512;
  switch (request) {
    case SG_IO:
      return passCommand(directory, *static_cast<sg_io_hdr_t*>(argument));
    case SG_GET_VERSION_NUM:
      return put<int>(argument, kSgVersion);
    case SG_GET_RESERVED_SIZE:
      return put<int>(argument, 1 << 20);
    case SG_SET_RESERVED_SIZE:
    case SG_SET_TIMEOUT:
    case CDROM_SET_OPTIONS:
    case CDROM_CLEAR_OPTIONS:
    case CDROM_MEDIA_CHANGED:
      return 0;
    case SG_GET_SCSI_ID:
      return putAddress(directory, argument, true);
    case SCSI_IOCTL_GET_IDLUN:
      return putAddress(directory, argument, false);
    case SCSI_IOCTL_GET_BUS_NUMBER:
      return put<int>(argument, 0);
    case CDROM_DRIVE_STATUS:
      return driveStatus(directory);
    case CDROM_GET_CAPABILITY:
      return capabilities(directory);
    case CDROM_DISC_STATUS:
      return driveStatus(directory) == CDS_DISC_OK ? CDS_DATA_1 : driveStatus(directory);
    case CDROM_LOCKDOOR: {
      const auto locks = static_cast<std::uint8_t>(argument == nullptr ? 0 : 1);
      return send(directory, {0x1E, 0, 0, 0, locks, 0}).isGood() ? 0 : -EIO;
    }
    case CDROMEJECT:
      return moveTray(directory, true);
    case CDROMCLOSETRAY:
      return moveTray(directory, false);
    case BLKGETSIZE:
      return put<unsigned long>(argument,
                                static_cast<unsigned long>(sectorsOf(directory) * kKernelSectors));
    case BLKGETSIZE64:
      return put<std::uint64_t>(argument,
                                static_cast<std::uint64_t>(sectorsOf(directory) * kSectorBytes));
    case BLKSSZGET:
      return put<int>(argument, static_cast<int>(kSectorBytes));
    case BLKFLSBUF:
      return 0;
    default:
      return -ENOTTY;
  }
}

}  // namespace emulated
