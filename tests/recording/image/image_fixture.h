// An image over a tree of small files, with the layer's clock standing still.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "layer_fixture.h"
#include "platform/imapi2.h"
#include "platform/testing.h"
#include "text_argument.h"

namespace quillon::test {

constexpr HRESULT fsi(unsigned code) { return static_cast<HRESULT>(0xC0AAB100U + code); }

class ImageTest : public LayerTest {
 protected:
  ImageTest() {
    platform::testing::SubstituteClock([] { return SYSTEMTIME{2021, 3, 5, 5, 14, 15, 9, 260}; });
    CoInitialize(nullptr);
    makeDirectory("tree");
    renew();
  }
  ~ImageTest() override {
    image_.Reset();
    root_.Reset();
    CoUninitialize();
  }

  // A new image object, without content.
  void renew() {
    root_.Reset();
    ASSERT_EQ(CoCreateInstance(CLSID_MsftFileSystemImage, nullptr, CLSCTX_INPROC_SERVER,
                               IID_IFileSystemImage, image_.PutVoid()),
              S_OK);
    ASSERT_EQ(image_->get_Root(root_.Put()), S_OK);
  }

  void makeDirectory(std::string_view name) { std::filesystem::create_directories(dir_ / name); }

  // With directories above it, at a fixed time.
  void makeFile(std::string_view name, std::string_view content) {
    std::filesystem::create_directories((dir_ / name).parent_path());
    writeText(dir_ / name, content);
    setTime(name, 1'600'000'000);
  }
  void makeHole(std::string_view name, std::uint64_t size) {
    makeFile(name, "");
    std::filesystem::resize_file(dir_ / name, size);
  }
  void setTime(std::string_view name, std::int64_t seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ::utimensat(AT_FDCWD, (dir_ / name).c_str(), times, 0);
  }

  HRESULT addTree(std::string_view name, bool withBase = false) {
    return root_->AddTree(Bstr(wide(name)), withBase ? VARIANT_TRUE : VARIANT_FALSE);
  }
  HRESULT create(ComPtr<IStream>& stream) {
    ComPtr<IFileSystemImageResult> result;
    const HRESULT hr = image_->CreateResultImage(result.Put());
    return FAILED(hr) ? hr : result->get_ImageStream(stream.Put());
  }

  // The whole image, read in pieces of that size.
  static HRESULT readAll(IStream& stream, std::string& bytes, ULONG pieceBytes = 1U << 20) {
    bytes.clear();
    std::string piece(pieceBytes, '\0');
    for (ULONG got = 1; got > 0;) {
      const HRESULT hr = stream.Read(piece.data(), pieceBytes, &got);
      if (FAILED(hr)) return hr;
      bytes.append(piece, 0, got);
    }
    return S_OK;
  }

  ComPtr<IFileSystemImage> image_;
  ComPtr<IFsiDirectoryItem> root_;

 private:
  platform::testing::Scope scope_;
};

}  // namespace quillon::test
