// The class MsftFileSystemImage: collects trees of files and lays them out as one image of ISO
// 9660, Joliet and UDF 1.02 over one copy of the data.
#include <algorithm>
#include <optional>

#include "classes.h"
#include "image/image_layout.h"
#include "image/image_results.h"
#include "image/image_stream.h"
#include "image/volume_name.h"
#include "platform/com/com_object.h"
#include "platform/refusing_disc_interfaces.h"
#include "platform/win32/files.h"

namespace quillon::platform {
namespace {

constexpr unsigned kSupported = FsiFileSystemISO9660 | FsiFileSystemJoliet | FsiFileSystemUDF;

// What the image and its root directory share: it lives as long as the last of them.
struct ImageState {
  ImageSettings settings;
  ImageNode root;
};

class ImageResult final
    : public DispatchObject<Refusing<IFileSystemImageResult>, IID_IFileSystemImageResult> {
 public:
  explicit ImageResult(std::shared_ptr<const ImageLayout> layout) {
    stream_.Attach(new ImageStream(std::move(layout)));
  }

  // The same stream each time, wherever it stands.
  HRESULT STDMETHODCALLTYPE get_ImageStream(IStream** val) override {
    if (val == nullptr) return E_POINTER;
    *val = ComPtr<IStream>(stream_).Detach();
    return S_OK;
  }

 private:
  ComPtr<IStream> stream_;
};

class RootDirectory final
    : public DispatchObject<Refusing<IFsiDirectoryItem>, IID_IFsiItem, IID_IFsiDirectoryItem> {
 public:
  explicit RootDirectory(std::shared_ptr<ImageState> state) : state_(std::move(state)) {}

  HRESULT STDMETHODCALLTYPE AddTree(BSTR sourceDirectory,
                                    VARIANT_BOOL includeBaseDirectory) override {
    return withinMemory(
        [&] { return addTree(unitsOf(sourceDirectory), includeBaseDirectory != VARIANT_FALSE); });
  }

 private:
  // The tree is read aside and joined when all of it is good, so that a refused one leaves nothing.
  HRESULT addTree(std::u16string_view source, bool includesBase) {
    auto scanned = std::make_shared<ImageNode>();
    scanned->isDirectory = true;
    if (const HRESULT hr = scanDirectory(source, *scanned); FAILED(hr)) return hr;
    ImageNode above;
    above.isDirectory = true;
    if (includesBase) {
      const std::vector<std::u16string_view> parts = pathParts(source);
      if (parts.empty() || !isLegalNodeName(parts.back())) {
        return refuseImage(IMAPI_E_INVALID_PATH, u"The directory has no name of its own", source);
      }
      scanned->name = parts.back();
      above.children.emplace(scanned->name, scanned);
    }
    ImageNode& added = includesBase ? above : *scanned;
    if (const HRESULT hr = checkLimits(added, 1, state_->settings); FAILED(hr)) return hr;
    return mergeChildren(added, state_->root);
  }

  std::shared_ptr<ImageState> state_;
};

class FileSystemImage final
    : public DispatchObject<Refusing<IFileSystemImage>, IID_IFileSystemImage> {
 public:
  FileSystemImage() {
    ImageNode& root = state_->root;
    root.isDirectory = true;
    root.created = root.accessed = root.modified = unixSecondsOf(imageTimeNow());
    state_->settings.volumeName = volumeNameOfToday();
  }

  HRESULT STDMETHODCALLTYPE get_Root(IFsiDirectoryItem** val) override {
    if (val == nullptr) return E_POINTER;
    return withinMemory([&] {
      *val = new RootDirectory(state_);
      return S_OK;
    });
  }
  // A disc without room stays a limit, of no blocks.
  HRESULT STDMETHODCALLTYPE SetMaxMediaBlocksFromDevice(IDiscRecorder2* discRecorder) override {
    if (discRecorder == nullptr) return E_POINTER;
    ComPtr<IDiscFormat2Data> format;
    HRESULT hr = CoCreateInstance(CLSID_MsftDiscFormat2Data, nullptr,
                                  CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDiscFormat2Data,
                                  format.PutVoid());
    if (SUCCEEDED(hr)) hr = format->put_Recorder(discRecorder);
    LONG free = 0;
    if (SUCCEEDED(hr)) hr = format->get_FreeSectorsOnMedia(&free);
    if (SUCCEEDED(hr)) mostBlocks_ = static_cast<std::uint32_t>(std::max(free, LONG{0}));
    return hr;
  }
  // The file systems stay as they are: all three fit every disc. A disc that holds something
  // already has less room than a blank one of its type, so the disc itself is asked.
  HRESULT STDMETHODCALLTYPE ChooseImageDefaults(IDiscRecorder2* discRecorder) override {
    return SetMaxMediaBlocksFromDevice(discRecorder);
  }
  HRESULT STDMETHODCALLTYPE put_VolumeName(BSTR newVal) override {
    if (!isLegalVolumeName(unitsOf(newVal))) {
      return refuseImage(IMAPI_E_INVALID_VOLUME_NAME, u"The volume name is not legal");
    }
    return withinMemory([&] {
      state_->settings.volumeName = unitsOf(newVal);
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_StrictFileSystemCompliance(VARIANT_BOOL newVal) override {
    state_->settings.isStrict = newVal != VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_FileSystemsToCreate(FsiFileSystems newVal) override {
    const auto bits = static_cast<unsigned>(newVal);
    if ((bits & ~kSupported) != 0) return IMAPI_E_INVALID_PARAM;
    state_->settings.fileSystems = bits;
    return S_OK;
  }
  // Nothing is staged in either case: files are read while the image is. A directory that could not
  // take it is refused all the same.
  HRESULT STDMETHODCALLTYPE put_StageFiles(VARIANT_BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE put_WorkingDirectory(BSTR newVal) override {
    const DWORD attributes = GetFileAttributesW(newVal);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      return S_OK;
    }
    return refuseImage(IMAPI_E_INVALID_WORKING_DIRECTORY, u"This is not a directory",
                       unitsOf(newVal));
  }
  HRESULT STDMETHODCALLTYPE CreateResultImage(IFileSystemImageResult** resultStream) override {
    if (resultStream == nullptr) return E_POINTER;
    *resultStream = nullptr;
    return withinMemory([&] {
      std::shared_ptr<const ImageLayout> layout;
      const HRESULT hr = ImageLayout::make(state_->root, state_->settings, layout);
      if (FAILED(hr)) return hr;
      if (mostBlocks_ && layout->sectors() > *mostBlocks_) {
        return refuseImage(IMAPI_E_IMAGE_SIZE_LIMIT, u"The image is larger than the disc");
      }
      *resultStream = new ImageResult(std::move(layout));
      return S_OK;
    });
  }

 private:
  std::shared_ptr<ImageState> state_ = std::make_shared<ImageState>();
  std::optional<std::uint32_t> mostBlocks_;  // none: no limit
};

}  // namespace

HRESULT createFileSystemImage(REFIID riid, void** object) {
  return createCurrentObject<FileSystemImage>(riid, object);
}

}  // namespace quillon::platform
