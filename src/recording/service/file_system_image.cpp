#include "classes.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

#include "file_system_image_result.h"
#include "fsi_items.h"
#include "image/image_layout.h"
#include "image/image_names.h"
#include "image/image_results.h"
#include "image/volume_name.h"
#include "platform/com/com_object.h"
#include "platform/win32/files.h"
#include "recorders/com_answers.h"

namespace quillon::platform {
namespace {

constexpr unsigned kSupported = FsiFileSystemISO9660 | FsiFileSystemJoliet | FsiFileSystemUDF;
constexpr LONG kUdfRevision102 = 0x102;
constexpr LONG kIsoLevels[] = {1, 2};
constexpr LONG kCdSectors = 359'844;  // a disc of 80 minutes

struct MediaSectors {
  IMAPI_MEDIA_PHYSICAL_TYPE type;
  LONG sectors;
};
// What fits on a blank disc of each type that can be written.
constexpr MediaSectors kMediaSectors[] = {
    {IMAPI_MEDIA_TYPE_CDR, kCdSectors},
    {IMAPI_MEDIA_TYPE_CDRW, kCdSectors},
    {IMAPI_MEDIA_TYPE_DVDRAM, 2'295'072},
    {IMAPI_MEDIA_TYPE_DVDPLUSR, 2'295'104},
    {IMAPI_MEDIA_TYPE_DVDPLUSRW, 2'295'104},
    {IMAPI_MEDIA_TYPE_DVDPLUSR_DUALLAYER, 4'173'824},
    {IMAPI_MEDIA_TYPE_DVDDASHR, 2'298'496},
    {IMAPI_MEDIA_TYPE_DVDDASHRW, 2'298'496},
    {IMAPI_MEDIA_TYPE_DVDDASHR_DUALLAYER, 4'171'712},
    {IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER, 4'173'824},
    {IMAPI_MEDIA_TYPE_BDR, 12'219'392},
    {IMAPI_MEDIA_TYPE_BDRE, 11'826'176},
};

template <typename Object>
HRESULT noObject(Object** target) {
  if (target != nullptr) *target = nullptr;
  return E_NOTIMPL;
}

void countNodes(const ImageNode& directory, LONG& files, LONG& directories) {
  for (const auto& [name, child] : directory.children) {
    if (child->isDirectory) {
      ++directories;
      countNodes(*child, files, directories);
    } else {
      ++files;
    }
  }
}

// The data format that tells about the disc in a recorder.
HRESULT openFormat(IDiscRecorder2* recorder, ComPtr<IDiscFormat2Data>& format) {
  if (recorder == nullptr) return E_POINTER;
  const HRESULT hr = CoCreateInstance(CLSID_MsftDiscFormat2Data, nullptr,
                                      CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                      IID_IDiscFormat2Data, format.PutVoid());
  return FAILED(hr) ? hr : format->put_Recorder(recorder);
}

class FileSystemImage final : public DispatchObject<IFileSystemImage, IID_IFileSystemImage> {
 public:
  FileSystemImage() : state_(std::make_shared<ImageState>()) {
    state_->root = std::make_shared<ImageNode>();
    state_->root->isDirectory = true;
    const std::int64_t now = unixSecondsOf(imageTimeNow());
    state_->root->created = state_->root->accessed = state_->root->modified = now;
    state_->settings.volumeName = volumeNameOfToday();
  }

  HRESULT STDMETHODCALLTYPE get_Root(IFsiDirectoryItem** val) override {
    if (val == nullptr) return E_POINTER;
    return withinMemory([&] { return makeDirectoryItem(state_, state_->root, val); });
  }
  // Images are the first session of their disc.
  HRESULT STDMETHODCALLTYPE get_SessionStartBlock(LONG* val) override {
    return giveNumber(0, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_SessionStartBlock(LONG newVal) override {
    return newVal == 0 ? S_OK : E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_FreeMediaBlocks(LONG* val) override {
    return giveNumber(mostBlocks_.value_or(0), val).code;
  }
  HRESULT STDMETHODCALLTYPE put_FreeMediaBlocks(LONG newVal) override;
  HRESULT STDMETHODCALLTYPE SetMaxMediaBlocksFromDevice(IDiscRecorder2* discRecorder) override;
  HRESULT STDMETHODCALLTYPE get_UsedBlocks(LONG* val) override;
  HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR* val) override {
    return giveText(settings().volumeName, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_VolumeName(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE get_ImportedVolumeName(BSTR* val) override { return noObject(val); }
  HRESULT STDMETHODCALLTYPE get_BootImageOptions(IBootOptions** val) override {
    return noObject(val);
  }
  HRESULT STDMETHODCALLTYPE put_BootImageOptions(IBootOptions*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FileCount(LONG* val) override { return count(val, nullptr); }
  HRESULT STDMETHODCALLTYPE get_DirectoryCount(LONG* val) override { return count(nullptr, val); }
  HRESULT STDMETHODCALLTYPE get_WorkingDirectory(BSTR* val) override;
  HRESULT STDMETHODCALLTYPE put_WorkingDirectory(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE get_ChangePoint(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StrictFileSystemCompliance(VARIANT_BOOL* val) override {
    return giveBool(settings().isStrict, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_StrictFileSystemCompliance(VARIANT_BOOL newVal) override {
    settings().isStrict = newVal != VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_UseRestrictedCharacterSet(VARIANT_BOOL* val) override {
    return giveBool(settings().usesRestrictedNames, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_UseRestrictedCharacterSet(VARIANT_BOOL newVal) override {
    settings().usesRestrictedNames = newVal != VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_FileSystemsToCreate(FsiFileSystems* val) override {
    return giveNumber(settings().fileSystems, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_FileSystemsToCreate(FsiFileSystems newVal) override;
  HRESULT STDMETHODCALLTYPE get_FileSystemsSupported(FsiFileSystems* val) override {
    return giveNumber(kSupported, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_UDFRevision(LONG newVal) override {
    return newVal == kUdfRevision102 ? S_OK : IMAPI_E_INVALID_PARAM;
  }
  HRESULT STDMETHODCALLTYPE get_UDFRevision(LONG* val) override {
    return giveNumber(kUdfRevision102, val).code;
  }
  HRESULT STDMETHODCALLTYPE get_UDFRevisionsSupported(SAFEARRAY** val) override {
    return giveNumbers({&kUdfRevision102, 1}, VT_I4, val).code;
  }
  HRESULT STDMETHODCALLTYPE ChooseImageDefaults(IDiscRecorder2* discRecorder) override;
  HRESULT STDMETHODCALLTYPE
  ChooseImageDefaultsForMediaType(IMAPI_MEDIA_PHYSICAL_TYPE value) override;
  HRESULT STDMETHODCALLTYPE put_ISO9660InterchangeLevel(LONG newVal) override;
  HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevel(LONG* val) override {
    return giveNumber(settings().effectiveIsoLevel(), val).code;
  }
  HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevelsSupported(SAFEARRAY** val) override {
    return giveNumbers(kIsoLevels, VT_I4, val).code;
  }
  HRESULT STDMETHODCALLTYPE CreateResultImage(IFileSystemImageResult** resultStream) override;
  HRESULT STDMETHODCALLTYPE Exists(BSTR fullPath, FsiItemType* itemType) override;
  HRESULT STDMETHODCALLTYPE CalculateDiscIdentifier(BSTR* discIdentifier) override {
    return noObject(discIdentifier);
  }
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
  HRESULT STDMETHODCALLTYPE CreateDirectoryItem(BSTR, IFsiDirectoryItem** newItem) override {
    return noObject(newItem);
  }
  HRESULT STDMETHODCALLTYPE CreateFileItem(BSTR, IFsiFileItem** newItem) override {
    return noObject(newItem);
  }
  HRESULT STDMETHODCALLTYPE get_VolumeNameUDF(BSTR* val) override { return get_VolumeName(val); }
  HRESULT STDMETHODCALLTYPE get_VolumeNameJoliet(BSTR* val) override {
    return withinMemory(
        [&] { return giveText(jolietVolumeName(settings().volumeName), val).code; });
  }
  HRESULT STDMETHODCALLTYPE get_VolumeNameISO9660(BSTR* val) override {
    return withinMemory([&] { return giveText(isoVolumeName(settings().volumeName), val).code; });
  }
  HRESULT STDMETHODCALLTYPE get_StageFiles(VARIANT_BOOL* val) override {
    return giveBool(stagesFiles_, val).code;
  }
  // Nothing is staged in either case: files are read while the image is.
  HRESULT STDMETHODCALLTYPE put_StageFiles(VARIANT_BOOL newVal) override {
    stagesFiles_ = newVal != VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY** val) override {
    return noObject(val);
  }
  HRESULT STDMETHODCALLTYPE put_MultisessionInterfaces(SAFEARRAY*) override { return E_NOTIMPL; }

 private:
  ImageSettings& settings() { return state_->settings; }
  HRESULT count(LONG* files, LONG* directories);
  HRESULT layOut(std::shared_ptr<const ImageLayout>& layout) {
    return ImageLayout::make(*state_->root, settings(), layout);
  }

  std::shared_ptr<ImageState> state_;
  std::optional<LONG> mostBlocks_;  // none: no limit
  std::u16string workingDirectory_;
  bool stagesFiles_ = false;
};

HRESULT FileSystemImage::put_FreeMediaBlocks(LONG newVal) {
  if (newVal < 0) return IMAPI_E_INVALID_PARAM;
  LONG used = 0;
  if (newVal > 0 && !state_->root->children.empty()) {
    if (const HRESULT hr = get_UsedBlocks(&used); FAILED(hr)) return hr;
  }
  if (used > newVal) {
    return refuseImage(IMAPI_E_IMAGE_TOO_BIG, u"What the image holds already needs more blocks");
  }
  mostBlocks_ = newVal == 0 ? std::nullopt : std::optional(newVal);
  return S_OK;
}

// A disc without room stays a limit, of no blocks.
HRESULT FileSystemImage::SetMaxMediaBlocksFromDevice(IDiscRecorder2* discRecorder) {
  ComPtr<IDiscFormat2Data> format;
  if (const HRESULT hr = openFormat(discRecorder, format); FAILED(hr)) return hr;
  LONG free = 0;
  if (const HRESULT hr = format->get_FreeSectorsOnMedia(&free); FAILED(hr)) return hr;
  mostBlocks_ = std::max(free, LONG{0});
  return S_OK;
}

HRESULT FileSystemImage::get_UsedBlocks(LONG* val) {
  if (val == nullptr) return E_POINTER;
  *val = 0;
  return withinMemory([&] {
    std::shared_ptr<const ImageLayout> layout;
    if (const HRESULT hr = layOut(layout); FAILED(hr)) return hr;
    *val = static_cast<LONG>(layout->sectors());
    return S_OK;
  });
}

HRESULT FileSystemImage::put_VolumeName(BSTR newVal) {
  if (!isLegalVolumeName(unitsOf(newVal))) {
    return refuseImage(IMAPI_E_INVALID_VOLUME_NAME, u"The volume name is not legal");
  }
  return withinMemory([&] {
    settings().volumeName = unitsOf(newVal);
    return S_OK;
  });
}

HRESULT FileSystemImage::count(LONG* files, LONG* directories) {
  LONG* target = files != nullptr ? files : directories;
  if (target == nullptr) return E_POINTER;
  LONG fileCount = 0;
  LONG directoryCount = 0;
  countNodes(*state_->root, fileCount, directoryCount);
  *target = files != nullptr ? fileCount : directoryCount;
  return S_OK;
}

HRESULT FileSystemImage::get_WorkingDirectory(BSTR* val) {
  if (!workingDirectory_.empty()) return giveText(workingDirectory_, val).code;
  return withinMemory([&] {
    std::u16string text(GetTempPathW(0, nullptr), u'\0');
    text.resize(GetTempPathW(static_cast<DWORD>(text.size()), text.data()));
    return giveText(text, val).code;
  });
}

HRESULT FileSystemImage::put_WorkingDirectory(BSTR newVal) {
  const DWORD attributes = GetFileAttributesW(newVal);
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    return refuseImage(IMAPI_E_INVALID_WORKING_DIRECTORY, u"This is not a directory",
                       unitsOf(newVal));
  }
  return withinMemory([&] {
    workingDirectory_ = unitsOf(newVal);
    return S_OK;
  });
}

HRESULT FileSystemImage::put_FileSystemsToCreate(FsiFileSystems newVal) {
  const auto bits = static_cast<unsigned>(newVal);
  if ((bits & ~kSupported) != 0) return IMAPI_E_INVALID_PARAM;
  settings().fileSystems = bits;
  return S_OK;
}

// The file systems stay as they are: all three fit every disc. A disc that holds something already
// has less room than a blank one of its type, so the disc itself is asked.
HRESULT FileSystemImage::ChooseImageDefaults(IDiscRecorder2* discRecorder) {
  ComPtr<IDiscFormat2Data> format;
  if (const HRESULT hr = openFormat(discRecorder, format); FAILED(hr)) return hr;
  IMAPI_MEDIA_PHYSICAL_TYPE type = IMAPI_MEDIA_TYPE_UNKNOWN;
  if (const HRESULT hr = format->get_CurrentPhysicalMediaType(&type); FAILED(hr)) return hr;
  LONG free = 0;
  if (const HRESULT hr = format->get_FreeSectorsOnMedia(&free); FAILED(hr)) return hr;
  mostBlocks_ = std::max(free, LONG{0});
  return S_OK;
}

HRESULT FileSystemImage::ChooseImageDefaultsForMediaType(IMAPI_MEDIA_PHYSICAL_TYPE value) {
  const auto* const row = std::find_if(std::begin(kMediaSectors), std::end(kMediaSectors),
                                       [value](const MediaSectors& m) { return m.type == value; });
  if (row == std::end(kMediaSectors)) return IMAPI_E_INVALID_PARAM;
  mostBlocks_ = row->sectors;
  return S_OK;
}

HRESULT FileSystemImage::put_ISO9660InterchangeLevel(LONG newVal) {
  if (std::ranges::find(kIsoLevels, newVal) == std::end(kIsoLevels)) return IMAPI_E_INVALID_PARAM;
  settings().isoLevel = newVal;
  return S_OK;
}

HRESULT FileSystemImage::CreateResultImage(IFileSystemImageResult** resultStream) {
  if (resultStream == nullptr) return E_POINTER;
  *resultStream = nullptr;
  return withinMemory([&] {
    std::shared_ptr<const ImageLayout> layout;
    if (const HRESULT hr = layOut(layout); FAILED(hr)) return hr;
    if (mostBlocks_ && layout->sectors() > static_cast<std::uint32_t>(*mostBlocks_)) {
      return refuseImage(IMAPI_E_IMAGE_SIZE_LIMIT, u"The image is larger than the disc");
    }
    return makeImageResult(std::move(layout), resultStream);
  });
}

HRESULT FileSystemImage::Exists(BSTR fullPath, FsiItemType* itemType) {
  if (itemType == nullptr) return E_POINTER;
  const std::shared_ptr<ImageNode> found = findNode(state_->root, unitsOf(fullPath));
  if (!found) {
    *itemType = FsiItemNotFound;
  } else {
    *itemType = found->isDirectory ? FsiItemDirectory : FsiItemFile;
  }
  return S_OK;
}

}  // namespace

HRESULT createFileSystemImage(REFIID riid, void** object) {
  return createCurrentObject<FileSystemImage>(riid, object);
}

}  // namespace quillon::platform
