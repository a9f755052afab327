// The file system image, its root, its result and its stream.
#include <filesystem>

#include "support/disc_service_objects.h"
#include "support/stub_stream.h"

namespace quillon::test {
namespace {

constexpr std::uint64_t kSectorBytes = 2048;

// Whole sectors of every file below the trees, unless the service was given a size.
std::uint64_t sizeOf(const FakeDiscService& service) {
  if (service.imageBytes) return *service.imageBytes;
  std::uint64_t size = 0;
  for (const auto& tree : service.trees) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.first)) {
      if (!entry.is_regular_file()) continue;
      size += (entry.file_size() + kSectorBytes - 1) / kSectorBytes * kSectorBytes;
    }
  }
  return size;
}

class Stream final : public Booked<StubStream> {
 public:
  explicit Stream(FakeDiscService& service) : Booked(service, "IStream") {}

  HRESULT STDMETHODCALLTYPE Stat(STATSTG* out, DWORD) override {
    return Run("Stat", [&] { return out->cbSize.QuadPart = sizeOf(service_), S_OK; });
  }
};

class Result final
    : public Booked<DispatchObject<Refusing<IFileSystemImageResult>, IID_IFileSystemImageResult>> {
 public:
  explicit Result(FakeDiscService& service) : Booked(service, "IFileSystemImageResult") {}

  HRESULT STDMETHODCALLTYPE get_ImageStream(IStream** out) override {
    return Run("get_ImageStream", [&] { return put(out, new Stream(service_)); });
  }
};

class Directory final
    : public Booked<
          DispatchObject<Refusing<IFsiDirectoryItem>, IID_IFsiItem, IID_IFsiDirectoryItem>> {
 public:
  explicit Directory(FakeDiscService& service) : Booked(service, "IFsiDirectoryItem") {}

  HRESULT STDMETHODCALLTYPE AddTree(BSTR path, VARIANT_BOOL withBase) override {
    return Run("AddTree", [&] {
      service_.trees.emplace_back(Plain(path), withBase == VARIANT_TRUE);
      return S_OK;
    });
  }
};

class Image final
    : public Booked<DispatchObject<Refusing<IFileSystemImage>, IID_IFileSystemImage>> {
 public:
  explicit Image(FakeDiscService& service) : Booked(service, "IFileSystemImage") {}

  HRESULT STDMETHODCALLTYPE get_Root(IFsiDirectoryItem** out) override {
    return Run("get_Root", [&] { return put(out, new Directory(service_)); });
  }
  HRESULT STDMETHODCALLTYPE SetMaxMediaBlocksFromDevice(IDiscRecorder2* recorder) override {
    return Run("SetMaxMediaBlocksFromDevice",
               [&] { return driveOf(recorder) == nullptr ? E_INVALIDARG : S_OK; });
  }
  HRESULT STDMETHODCALLTYPE ChooseImageDefaults(IDiscRecorder2* recorder) override {
    return Run("ChooseImageDefaults",
               [&] { return driveOf(recorder) == nullptr ? E_INVALIDARG : S_OK; });
  }
  HRESULT STDMETHODCALLTYPE put_VolumeName(BSTR name) override {
    return Run("put_VolumeName", [&] { return service_.volumeName = name, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE put_WorkingDirectory(BSTR path) override {
    return Run("put_WorkingDirectory", [&] { return service_.workingDirectory = path, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE put_StrictFileSystemCompliance(VARIANT_BOOL strict) override {
    return Run("put_StrictFileSystemCompliance",
               [&] { return service_.isStrict = strict == VARIANT_TRUE, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE put_FileSystemsToCreate(FsiFileSystems fileSystems) override {
    return Run("put_FileSystemsToCreate", [&] { return service_.fileSystems = fileSystems, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE put_StageFiles(VARIANT_BOOL) override {
    return Run("put_StageFiles", [] { return S_OK; });
  }
  HRESULT STDMETHODCALLTYPE CreateResultImage(IFileSystemImageResult** out) override {
    return Run("CreateResultImage", [&] { return put(out, new Result(service_)); });
  }
};

}  // namespace

IFileSystemImage* makeFileSystemImage(FakeDiscService& service) { return new Image(service); }

}  // namespace quillon::test
