#include "image/late_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <optional>

#include "image/image_time.h"
#include "platform/com/com_object.h"
#include "platform/com/refusing.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

std::mutex theMutex;
std::optional<LateFile> theFile;

// However each is spelled.
bool isSameDirectory(const std::string& a, const std::string& b) {
  struct stat one {};
  struct stat other {};
  return ::stat(a.c_str(), &one) == 0 && ::stat(b.c_str(), &other) == 0 &&
         one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Asks for the bytes when the first of them is read.
class LateStream final : public ComObject<Refusing<IStream>, IID_ISequentialStream, IID_IStream> {
 public:
  explicit LateStream(LateFile file) : file_(std::move(file)) {}

  HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG length, ULONG* read) override {
    if (read != nullptr) *read = 0;
    if (buffer == nullptr) return STG_E_INVALIDPARAMETER;
    if (!hasAsked_) {
      hasAsked_ = true;
      if (!file_.content(bytes_) || bytes_.size() != file_.sizeBytes) bytes_.clear();
    }
    if (bytes_.size() != file_.sizeBytes) return STG_E_READFAULT;
    const std::size_t left = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
    const std::size_t count = std::min<std::size_t>(length, left);
    std::memcpy(buffer, bytes_.data() + position_, count);
    position_ += count;
    if (read != nullptr) *read = static_cast<ULONG>(count);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                 ULARGE_INTEGER* newPosition) override {
    if (origin != STREAM_SEEK_SET || move.QuadPart < 0) return STG_E_INVALIDFUNCTION;
    position_ = static_cast<std::size_t>(move.QuadPart);
    if (newPosition != nullptr) newPosition->QuadPart = position_;
    return S_OK;
  }

 private:
  const LateFile file_;
  std::string bytes_;
  std::size_t position_ = 0;
  bool hasAsked_ = false;
};

}  // namespace

LateFileScope::LateFileScope(LateFile file) {
  const std::lock_guard lock(theMutex);
  theFile = std::move(file);
}

LateFileScope::~LateFileScope() {
  const std::lock_guard lock(theMutex);
  theFile.reset();
}

void addLateFile(const std::string& native, ImageNode& directory) {
  const std::lock_guard lock(theMutex);
  if (!theFile || !isSameDirectory(theFile->directory, native)) return;
  auto node = std::make_shared<ImageNode>();
  node->name = theFile->name;
  node->parent = &directory;
  node->isLast = true;
  node->size = theFile->sizeBytes;
  node->created = node->accessed = node->modified = unixSecondsOf(imageTimeNow());
  node->source.path = native + "/" + nativeFromWide(theFile->name);
  node->source.stream.Attach(new LateStream(*theFile));
  directory.children.insert_or_assign(node->name, node);
}

}  // namespace quillon::platform
