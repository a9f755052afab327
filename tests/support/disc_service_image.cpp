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
    : public Booked<DispatchObject<IFileSystemImageResult, IID_IFileSystemImageResult>> {
 public:
  explicit Result(FakeDiscService& service) : Booked(service, "IFileSystemImageResult") {}

  HRESULT STDMETHODCALLTYPE get_ImageStream(IStream** out) override {
    return Run("get_ImageStream", [&] { return put(out, new Stream(service_)); });
  }
  HRESULT STDMETHODCALLTYPE get_ProgressItems(IProgressItems**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TotalBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_BlockSize(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DiscId(BSTR*) override { return E_NOTIMPL; }
};

class Directory final
    : public Booked<DispatchObject<IFsiDirectoryItem, IID_IFsiItem, IID_IFsiDirectoryItem>> {
 public:
  explicit Directory(FakeDiscService& service) : Booked(service, "IFsiDirectoryItem") {}

  HRESULT STDMETHODCALLTYPE AddTree(BSTR path, VARIANT_BOOL withBase) override {
    return Run("AddTree", [&] {
      service_.trees.emplace_back(Plain(path), withBase == VARIANT_TRUE);
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FullPath(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CreationTime(DATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_CreationTime(DATE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastAccessedTime(DATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_LastAccessedTime(DATE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastModifiedTime(DATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_LastModifiedTime(DATE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IsHidden(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_IsHidden(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FileSystemName(FsiFileSystems, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FileSystemPath(FsiFileSystems, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Item(BSTR, IFsiItem**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_EnumFsiItems(IEnumFsiItems**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddDirectory(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddFile(BSTR, IStream*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Add(IFsiItem*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Remove(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RemoveTree(BSTR) override { return E_NOTIMPL; }
};

class Image final : public Booked<DispatchObject<IFileSystemImage, IID_IFileSystemImage>> {
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
  HRESULT STDMETHODCALLTYPE get_SessionStartBlock(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_SessionStartBlock(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FreeMediaBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_FreeMediaBlocks(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_UsedBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ImportedVolumeName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_BootImageOptions(IBootOptions**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_BootImageOptions(IBootOptions*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FileCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DirectoryCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_WorkingDirectory(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ChangePoint(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StrictFileSystemCompliance(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_UseRestrictedCharacterSet(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_UseRestrictedCharacterSet(VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_FileSystemsToCreate(FsiFileSystems*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FileSystemsSupported(FsiFileSystems*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_UDFRevision(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_UDFRevision(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_UDFRevisionsSupported(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ChooseImageDefaultsForMediaType(IMAPI_MEDIA_PHYSICAL_TYPE) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_ISO9660InterchangeLevel(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevel(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevelsSupported(SAFEARRAY**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Exists(BSTR, FsiItemType*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CalculateDiscIdentifier(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE IdentifyFileSystemsOnDisc(IDiscRecorder2*, FsiFileSystems*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetDefaultFileSystemForImport(FsiFileSystems,
                                                          FsiFileSystems*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ImportFileSystem(FsiFileSystems*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ImportSpecificFileSystem(FsiFileSystems) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RollbackToChangePoint(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockInChangePoint() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CreateDirectoryItem(BSTR, IFsiDirectoryItem**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateFileItem(BSTR, IFsiFileItem**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeNameUDF(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeNameJoliet(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeNameISO9660(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StageFiles(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_MultisessionInterfaces(SAFEARRAY*) override { return E_NOTIMPL; }
};

}  // namespace

IFileSystemImage* makeFileSystemImage(FakeDiscService& service) { return new Image(service); }

}  // namespace quillon::test
