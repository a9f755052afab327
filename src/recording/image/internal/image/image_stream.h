// The image as a stream of bytes, for reading only. Its size is known from the start; reading
// forwards reads every file once.
#pragma once

#include "image/image_layout.h"
#include "image/image_source.h"
#include "platform/com/com_object.h"
#include "platform/com/refusing.h"

namespace quillon::platform {

class ImageStream final : public ComObject<Refusing<IStream>, IID_ISequentialStream, IID_IStream> {
 public:
  explicit ImageStream(std::shared_ptr<const ImageLayout> layout) : layout_(std::move(layout)) {}

  // Gives fewer bytes only at the end. A failure gives none and leaves the position.
  HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG length, ULONG* read) override;
  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                 ULARGE_INTEGER* newPosition) override;
  HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flag) override;

 private:
  HRESULT readPiece(std::uint8_t* buffer, std::uint32_t length, std::uint32_t& done);
  HRESULT readFileData(const Segment& segment, std::uint64_t offset, std::uint8_t* buffer,
                       std::uint32_t length);

  std::shared_ptr<const ImageLayout> layout_;
  SourceReader source_;
  std::uint64_t position_ = 0;
  // The bytes of the last segment that is not file data.
  const Segment* madeSegment_ = nullptr;
  ImageBytes madeBytes_;
};

}  // namespace quillon::platform
