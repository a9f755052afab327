#include "image/image_stream.h"

#include <cstring>

#include "image/image_results.h"

namespace quillon::platform {

HRESULT ImageStream::Read(void* buffer, ULONG length, ULONG* read) {
  if (read != nullptr) *read = 0;
  if (buffer == nullptr) return STG_E_INVALIDPARAMETER;
  const std::uint64_t end = layout_->sizeBytes();
  const std::uint64_t left = position_ < end ? end - position_ : 0;
  const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(length, left));
  const std::uint64_t before = position_;
  const HRESULT hr = withinMemory([&] {
    std::uint32_t done = 0;
    while (done < wanted) {
      std::uint32_t piece = 0;
      const HRESULT result =
          readPiece(static_cast<std::uint8_t*>(buffer) + done, wanted - done, piece);
      if (FAILED(result)) return result;
      done += piece;
      position_ += piece;
    }
    return S_OK;
  });
  if (FAILED(hr)) {
    position_ = before;
    return hr;
  }
  if (read != nullptr) *read = wanted;
  return S_OK;
}

// As much as lies in one segment, or in the empty sectors before the next one.
HRESULT ImageStream::readPiece(std::uint8_t* buffer, std::uint32_t length, std::uint32_t& done) {
  const auto sector = static_cast<std::uint32_t>(position_ / kImageSectorBytes);
  const std::size_t index = layout_->segmentAt(sector);
  const auto upTo = [&](std::uint64_t endByte) {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(length, endByte - position_));
  };
  if (index == layout_->segmentCount() || layout_->segment(index).sector > sector) {
    done = index == layout_->segmentCount()
               ? length
               : upTo(std::uint64_t{layout_->segment(index).sector} * kImageSectorBytes);
    std::memset(buffer, 0, done);
    return S_OK;
  }
  const Segment& segment = layout_->segment(index);
  const std::uint64_t start = std::uint64_t{segment.sector} * kImageSectorBytes;
  const std::uint64_t offset = position_ - start;
  done = upTo(start + std::uint64_t{segment.sectors} * kImageSectorBytes);
  if (segment.kind == Segment::Kind::FileData) return readFileData(segment, offset, buffer, done);
  if (madeSegment_ != &segment) {
    madeSegment_ = nullptr;
    madeBytes_ = layout_->metadata(segment);
    madeSegment_ = &segment;
  }
  std::memcpy(buffer, madeBytes_.data() + offset, done);
  return S_OK;
}

HRESULT ImageStream::readFileData(const Segment& segment, std::uint64_t offset,
                                  std::uint8_t* buffer, std::uint32_t length) {
  const LayoutEntry& entry = layout_->entry(segment.index);
  const std::uint64_t left = offset < entry.size ? entry.size - offset : 0;
  const auto data = static_cast<std::uint32_t>(std::min<std::uint64_t>(length, left));
  std::memset(buffer + data, 0, length - data);
  return data == 0 ? S_OK : source_.read(entry, offset, buffer, data);
}

HRESULT ImageStream::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) {
  std::int64_t base = 0;
  switch (origin) {
    case STREAM_SEEK_SET:
      break;
    case STREAM_SEEK_CUR:
      base = static_cast<std::int64_t>(position_);
      break;
    case STREAM_SEEK_END:
      base = static_cast<std::int64_t>(layout_->sizeBytes());
      break;
    default:
      return STG_E_INVALIDFUNCTION;
  }
  std::int64_t position = 0;
  if (__builtin_add_overflow(base, move.QuadPart, &position) || position < 0) {
    return STG_E_INVALIDFUNCTION;
  }
  position_ = static_cast<std::uint64_t>(position);
  if (newPosition != nullptr) newPosition->QuadPart = position_;
  return S_OK;
}

HRESULT ImageStream::Stat(STATSTG* stat, DWORD) {
  if (stat == nullptr) return E_POINTER;
  *stat = STATSTG{};  // the stream has no name, with either flag
  stat->type = STGTY_STREAM;
  stat->cbSize.QuadPart = layout_->sizeBytes();
  stat->grfMode = STGM_READ;
  return S_OK;
}

}  // namespace quillon::platform
