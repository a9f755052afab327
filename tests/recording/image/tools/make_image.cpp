// Writes the image of some directories to a file through the layer's COM classes, in pieces of
// 64 KiB or BYTES, for the programs that judge images. Prints nothing on success, else the call and
// its result.
//
//   make_image [--systems MASK] [--strict] [--volume NAME] [--piece BYTES]
//              [--leave-out FROM TO] OUTPUT [DIR...]
//
// --leave-out neither reads nor writes the bytes from FROM to TO, both whole MiB: the hole that a
// large file of zeros would cost minutes to fill.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/imapi2.h"
#include "platform/services.h"
#include "platform/win32.h"

namespace {

using quillon::ComPtr;

class Wide {
 public:
  explicit Wide(const std::string& text) {
    std::u16string wide(text.size() + 1, u'\0');
    const int units = MultiByteToWideChar(quillon::FileSystemCodePage(), 0, text.c_str(), -1,
                                          wide.data(), static_cast<int>(wide.size()));
    bstr_ = SysAllocStringLen(wide.data(), static_cast<UINT>(units - 1));
  }
  ~Wide() { SysFreeString(bstr_); }
  Wide(const Wide&) = delete;
  Wide& operator=(const Wide&) = delete;
  operator BSTR() const { return bstr_; }

 private:
  BSTR bstr_;
};

void require(HRESULT hr, const char* call) {
  if (SUCCEEDED(hr)) return;
  std::fprintf(stdout, "%s 0x%08X\n", call, static_cast<unsigned>(hr));
  std::exit(1);
}

struct Options {
  int systems = 7;
  bool strict = false;
  // Large ones make ext4 of recent kernels several times slower.
  std::size_t pieceBytes = 1U << 16;
  long long leaveOutFrom = 0;
  long long leaveOutTo = 0;
  std::string volume = "Quillon";
  std::string output;
  std::vector<std::string> directories;
};

Options parse(int count, char** values) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string value = values[i];
    if (value == "--strict") {
      options.strict = true;
    } else if (value == "--leave-out" && i + 2 < count) {
      options.leaveOutFrom = std::atoll(values[++i]);
      options.leaveOutTo = std::atoll(values[++i]);
    } else if (value == "--systems" && i + 1 < count) {
      options.systems = std::atoi(values[++i]);
    } else if (value == "--piece" && i + 1 < count) {
      options.pieceBytes = static_cast<std::size_t>(std::atoi(values[++i]));
    } else if (value == "--volume" && i + 1 < count) {
      options.volume = values[++i];
    } else if (options.output.empty()) {
      options.output = value;
    } else {
      options.directories.push_back(value);
    }
  }
  return options;
}

void writePieces(IStream& stream, const Options& options) {
  STATSTG stat{};
  require(stream.Stat(&stat, STATFLAG_NONAME), "Stat");
  const int out = ::open(options.output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  std::vector<char> piece(options.pieceBytes);
  off_t position = 0;
  for (ULONG got = 1; got > 0; position += got) {
    if (position == options.leaveOutFrom && options.leaveOutTo > 0) {
      LARGE_INTEGER target{};
      target.QuadPart = position = options.leaveOutTo;
      require(stream.Seek(target, STREAM_SEEK_SET, nullptr), "Seek");
    }
    require(stream.Read(piece.data(), static_cast<ULONG>(piece.size()), &got), "Read");
    if (::pwrite(out, piece.data(), got, position) != static_cast<ssize_t>(got)) {
      require(E_FAIL, "pwrite");
    }
  }
  if (static_cast<ULONGLONG>(position) != stat.cbSize.QuadPart) require(E_UNEXPECTED, "size");
  if (::ftruncate(out, position) != 0 || ::close(out) != 0) require(E_FAIL, "close");
}

}  // namespace

int main(int count, char** values) {
  const Options options = parse(count, values);
  CoInitialize(nullptr);
  ComPtr<IFileSystemImage> image;
  require(CoCreateInstance(CLSID_MsftFileSystemImage, nullptr, CLSCTX_INPROC_SERVER,
                           IID_IFileSystemImage, image.PutVoid()),
          "CoCreateInstance");
  require(image->put_StrictFileSystemCompliance(options.strict ? VARIANT_TRUE : VARIANT_FALSE),
          "put_StrictFileSystemCompliance");
  require(image->put_FileSystemsToCreate(static_cast<FsiFileSystems>(options.systems)),
          "put_FileSystemsToCreate");
  require(image->put_VolumeName(Wide(options.volume)), "put_VolumeName");
  ComPtr<IFsiDirectoryItem> root;
  require(image->get_Root(root.Put()), "get_Root");
  for (const std::string& directory : options.directories) {
    require(root->AddTree(Wide(directory), VARIANT_FALSE), "AddTree");
  }
  ComPtr<IFileSystemImageResult> result;
  require(image->CreateResultImage(result.Put()), "CreateResultImage");
  ComPtr<IStream> stream;
  require(result->get_ImageStream(stream.Put()), "get_ImageStream");
  writePieces(*stream.Get(), options);
  return 0;
}
