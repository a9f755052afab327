#include "recording/virtual_discs.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "recorders/recorder_store.h"
#include "virtual_recorder.h"
#include "win32/environment.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::u16string_view kHand = u"Quillon disc handling";

DiscResult refusal(DWORD code, std::string_view sentence) {
  return {HRESULT_FROM_WIN32(code), wideFromNative(sentence)};
}

std::string lastPart(const std::string& directory) {
  return directory.substr(directory.rfind('/') + 1);
}

DiscResult withSentence(DiscResult result, const std::string& directory) {
  if (result.code == E_IMAPI_RECORDER_LOCKED && result.text.empty()) {
    result.text = u"Another program is using the virtual recorder \"" +
                  wideFromNative(lastPart(directory)) + u"\".";
  } else if (result.code == E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE && result.text.empty()) {
    result.text = u"The file \"" + wideFromNative(directory) + u"/" + wideFromNative(kDiscFile) +
                  u"\" does not describe a disc.";
  }
  return result;
}

// A recorder that somebody has does not tell about its disc, but the rest is known.
DiscResult readStatus(const std::string& directory, VirtualRecorderStatus& status) {
  VirtualRecorder recorder(directory);
  status = VirtualRecorderStatus{};
  status.name = lastPart(directory);
  status.directory = directory;
  status.uniqueId = recorder.identity().uniqueId;
  status.client = nativeFromWide(recorder.owner());
  std::optional<DiscRecord> disc;
  DiscResult result = recorder.record(disc);
  if (result.failed() || !disc) return withSentence(std::move(result), directory);
  status.hasDisc = true;
  status.media = disc->type->keyword;
  status.state = keywordOf(disc->state);
  status.isProtected = disc->isProtected;
  status.capacitySectors = disc->capacitySectors;
  status.usedSectors = disc->usedSectors;
  if (!disc->isBlank()) status.image = directory + "/" + kImageFile;
  return S_OK;
}

// A descriptor of the image, and its length in whole sectors.
DiscResult openImage(const std::string& path, Descriptor& image, std::uint64_t& lengthBytes) {
  image = Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (!image.isOpen() || ::fstat(image.get(), &status) != 0) {
    return fileFailure(errno, "read", path);
  }
  lengthBytes = static_cast<std::uint64_t>(status.st_size);
  if (!S_ISREG(status.st_mode) || lengthBytes == 0) {
    return refusal(ERROR_INVALID_PARAMETER, "\"" + path + "\" is no disc image.");
  }
  return S_OK;
}

const DiscType* smallestTypeFor(std::uint64_t sectors) {
  for (const std::string_view keyword : {"cd-rom", "dvd-r", "bd-r"}) {
    const DiscType* type = findDiscType(keyword);
    if (sectors <= type->usualSectors) return type;
  }
  return findDiscType("bd-r");
}

// The record of a disc with that image in it; what the image was before it was ejected counts when
// the user does not say otherwise.
DiscRecord recordFor(const DiscToInsert& disc, const DiscType* type, std::uint64_t sectors) {
  const std::optional<DiscRecord> earlier = readRecordBeside(disc.image);
  if (earlier && !earlier->isBlank() && (type == nullptr || type == earlier->type)) return *earlier;
  DiscRecord record;
  record.type = type != nullptr ? type : smallestTypeFor(sectors);
  record.capacitySectors = record.type->usualSectors;
  record.state =
      record.type->rewriting == Rewriting::InPlace ? DiscState::Appendable : DiscState::Finalised;
  return record;
}

DiscResult checkDisc(const DiscRecord& record, const DiscToInsert& disc,
                     std::uint64_t lengthBytes) {
  if (record.capacitySectors == 0 || record.capacitySectors > record.type->largestSectors) {
    return refusal(ERROR_INVALID_PARAMETER,
                   "A disc of the kind " + std::string(record.type->keyword) + " has 1 to " +
                       std::to_string(record.type->largestSectors) + " sectors.");
  }
  if (record.isBlank()) {
    if (record.type->rewriting != Rewriting::Never) return S_OK;
    return refusal(ERROR_INVALID_PARAMETER, "A pressed disc is never blank: it needs an image.");
  }
  if (lengthBytes % kSectorBytes != 0 && record.isWhole()) {
    return refusal(ERROR_INVALID_PARAMETER,
                   "\"" + disc.image + "\" is no disc image: it does not end with a whole sector.");
  }
  if (lengthBytes / kSectorBytes > record.capacitySectors) {
    return refusal(ERROR_DISK_FULL, "\"" + disc.image + "\" does not fit on the disc: it has " +
                                        std::to_string(lengthBytes / kSectorBytes) +
                                        " sectors, the disc has room for " +
                                        std::to_string(record.capacitySectors) + ".");
  }
  return S_OK;
}

// Shares the bytes where the file system can.
DiscResult copyImage(const Descriptor& image, const std::string& target) {
  const Descriptor copy(::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!copy.isOpen()) return fileFailure(errno, "write", target);
  if (::ioctl(copy.get(), FICLONE, image.get()) != 0) {
    std::vector<char> block(std::size_t{1} << 20);
    ssize_t got = 0;
    while ((got = ::read(image.get(), block.data(), block.size())) > 0) {
      if (!writeAll(copy.get(), {block.data(), static_cast<std::size_t>(got)})) {
        return fileFailure(errno, "write", target);
      }
    }
    if (got < 0) return fileFailure(errno, "read", target);
  }
  return ::fsync(copy.get()) == 0 ? DiscResult() : fileFailure(errno, "write", target);
}

// The record comes last: until then there is no disc.
DiscResult putIn(const std::string& directory, const DiscRecord& record, const Descriptor& image) {
  std::string leftAt;
  DiscResult result = takeDiscOut(directory, leftAt);  // leavings of an interrupted one
  if (result.failed()) return result;
  const std::string target = directory + "/" + kImageFile;
  if (image.isOpen()) result = copyImage(image, target);
  if (!result.failed()) result = writeDiscRecord(directory, record);
  if (result.failed()) ::unlink(target.c_str());
  return result;
}

}  // namespace

std::vector<std::string_view> virtualMediaNames() {
  std::vector<std::string_view> names;
  for (const DiscType& type : discTypes()) names.push_back(type.keyword);
  return names;
}

DiscResult listVirtualRecorders(std::vector<VirtualRecorderStatus>& recorders) {
  recorders.clear();
  std::vector<std::string> directories;
  DiscResult result = recorderDirectories(directories);
  for (const std::string& directory : directories) {
    // What keeps one of them from telling about its disc is not a failure of the list.
    static_cast<void>(readStatus(directory, recorders.emplace_back()));
  }
  return result;
}

DiscResult virtualRecorderStatus(const std::string& recorder, VirtualRecorderStatus& status) {
  std::string directory;
  DiscResult result = findRecorder(recorder, directory);
  return result.failed() ? result : readStatus(directory, status);
}

DiscResult createVirtualRecorder(const std::string& name) {
  std::string directory;
  return makeRecorder(name, directory);
}

DiscResult insertVirtualDisc(const std::string& recorderName, const DiscToInsert& disc) {
  const DiscType* type = disc.media.empty() ? nullptr : findDiscType(disc.media);
  if (!disc.media.empty() && type == nullptr) {
    return refusal(ERROR_INVALID_PARAMETER, "There is no kind of disc \"" + disc.media + "\".");
  }
  std::string directory;
  DiscResult result = findRecorder(recorderName, directory);
  if (result.failed()) return result;
  Descriptor image;
  std::uint64_t lengthBytes = 0;
  DiscRecord record;
  if (disc.image.empty()) {
    record.type = type != nullptr ? type : findDiscType("cd-r");
    record.capacitySectors = record.type->usualSectors;
  } else {
    result = openImage(disc.image, image, lengthBytes);
    if (result.failed()) return result;
    record = recordFor(disc, type, lengthBytes / kSectorBytes);
    record.usedSectors = static_cast<std::uint32_t>(lengthBytes / kSectorBytes);
    record.ejectedAs.clear();
  }
  if (disc.capacitySectors) record.capacitySectors = *disc.capacitySectors;
  record.isProtected = record.isProtected || disc.isProtected;
  result = checkDisc(record, disc, lengthBytes);
  if (result.failed()) return result;

  VirtualRecorder recorder(directory);
  RecorderHold hold(recorder);
  result = hold.acquire(kHand);
  std::optional<DiscRecord> present;
  if (!result.failed()) result = recorder.record(present);
  if (result.failed()) return withSentence(std::move(result), directory);
  if (present) {
    return refusal(ERROR_ALREADY_EXISTS,
                   "There is a disc in the virtual recorder \"" + lastPart(directory) + "\".");
  }
  return putIn(directory, record, image);
}

DiscResult ejectVirtualDisc(const std::string& recorderName, std::string& imageLeftAt) {
  imageLeftAt.clear();
  std::string directory;
  DiscResult result = findRecorder(recorderName, directory);
  if (result.failed()) return result;
  VirtualRecorder recorder(directory);
  RecorderHold hold(recorder);
  result = hold.acquire(kHand);
  if (!result.failed()) result = takeDiscOut(directory, imageLeftAt);
  return withSentence(std::move(result), directory);
}

}  // namespace quillon::platform
