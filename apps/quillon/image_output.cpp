#include "image_output.h"

#include <optional>
#include <vector>

#include "foundation/base_item.h"
#include "foundation/com_values.h"
#include "image/image_results.h"
#include "image/image_stream.h"
#include "image/image_time.h"
#include "image/volume_name.h"
#include "media_job.h"
#include "platform/imapi2.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;
// As on discs.
constexpr unsigned kFileSystems = FsiFileSystemISO9660 | FsiFileSystemJoliet | FsiFileSystemUDF;

// What the failed call has left to be known, else what its code means.
std::string sentenceOf(HRESULT hr) {
  ComPtr<IErrorInfo> info;
  ScopedBstr text;
  if (GetErrorInfo(0, info.Put()) == S_OK && info) info->GetDescription(text.Put());
  std::string sentence = narrow(text.View().empty() ? TextView(ResultText(hr)) : text.View());
  if (!sentence.ends_with('.')) sentence += '.';
  return sentence;
}

// What the service does for a disc, whichever service is configured: the file systems, the names
// and the times are the same.
HRESULT makeStream(const std::string& directory, const std::string& volume,
                   ComPtr<IStream>& stream) {
  platform::ImageSettings settings;
  settings.fileSystems = kFileSystems;
  settings.volumeName = wide(volume);
  if (!platform::isLegalVolumeName(settings.volumeName)) {
    return platform::refuseImage(platform::IMAPI_E_INVALID_VOLUME_NAME,
                                 u"The volume name is not legal");
  }
  platform::ImageNode root;
  HRESULT hr = platform::scanDirectory(wide(directory), root);
  if (FAILED(hr)) return hr;
  root.isDirectory = true;
  root.created = root.accessed = root.modified = platform::unixSecondsOf(platform::imageTimeNow());
  hr = platform::checkLimits(root, 1, settings);
  std::shared_ptr<const platform::ImageLayout> layout;
  if (SUCCEEDED(hr)) hr = platform::ImageLayout::make(root, settings, layout);
  if (SUCCEEDED(hr)) stream.Attach(new platform::ImageStream(std::move(layout)));
  return hr;
}

}  // namespace

platform::LateFile lateFileOf(SetSums& sums, const std::string& directory) {
  return {directory, wide(kSumsName), sums.textBytes(), [&sums](std::string& bytes) {
            if (sums.finish().failed()) return false;
            bytes = sums.text();
            return true;
          }};
}

Outcome writeImage(const std::string& directory, const std::string& volume, SetSums* sums,
                   OutputFile& output, const MediumOutput::Progress& progress) {
  const ComLibrary com;
  std::optional<platform::LateFileScope> late;
  if (sums != nullptr) late.emplace(lateFileOf(*sums, directory));
  ComPtr<IStream> stream;
  STATSTG stat{};
  HRESULT hr = makeStream(directory, volume, stream);
  if (SUCCEEDED(hr)) hr = stream->Stat(&stat, STATFLAG_NONAME);
  if (FAILED(hr)) return sentenceOf(hr);
  const std::uint64_t total = stat.cbSize.QuadPart;
  std::vector<char> piece(kPieceBytes);
  for (std::uint64_t done = 0; done < total;) {
    ULONG got = 0;
    hr = stream->Read(piece.data(), static_cast<ULONG>(piece.size()), &got);
    if (FAILED(hr)) return sentenceOf(hr);
    if (got == 0) return "The image ends early.";
    if (!output.write(piece.data(), got)) return output.failure();
    progress(done += got, total);
  }
  return {};
}

}  // namespace quillon::cli
