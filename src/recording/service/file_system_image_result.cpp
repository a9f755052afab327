#include "file_system_image_result.h"

#include "image/image_results.h"
#include "image/image_stream.h"
#include "platform/com/com_object.h"
#include "recorders/com_answers.h"

namespace quillon::platform {
namespace {

class ImageResult final
    : public DispatchObject<IFileSystemImageResult, IID_IFileSystemImageResult> {
 public:
  explicit ImageResult(std::shared_ptr<const ImageLayout> layout)
      : layout_(std::move(layout)), stream_(nullptr) {
    stream_.Attach(new ImageStream(layout_));
  }

  // The same stream each time, wherever it stands.
  HRESULT STDMETHODCALLTYPE get_ImageStream(IStream** val) override {
    if (val == nullptr) return E_POINTER;
    *val = ComPtr<IStream>(stream_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_ProgressItems(IProgressItems** val) override {
    if (val != nullptr) *val = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_TotalBlocks(LONG* val) override {
    return giveNumber(layout_->sectors(), val).code;
  }
  HRESULT STDMETHODCALLTYPE get_BlockSize(LONG* val) override {
    return giveNumber(kImageSectorBytes, val).code;
  }
  HRESULT STDMETHODCALLTYPE get_DiscId(BSTR* val) override {
    GUID id{};
    const std::uint64_t identity = layout_->identity();
    id.Data1 = static_cast<std::uint32_t>(identity >> 32);
    id.Data2 = static_cast<std::uint16_t>(identity >> 16);
    id.Data3 = static_cast<std::uint16_t>(identity);
    OLECHAR text[39];
    StringFromGUID2(id, text, 39);
    return giveText(text, val).code;
  }

 private:
  std::shared_ptr<const ImageLayout> layout_;
  ComPtr<IStream> stream_;
};

}  // namespace

HRESULT makeImageResult(std::shared_ptr<const ImageLayout> layout,
                        IFileSystemImageResult** result) {
  *result = new ImageResult(std::move(layout));
  return S_OK;
}

}  // namespace quillon::platform
