#include "tables/transfer_syntaxes.h"

#include <array>
#include <unordered_map>

namespace quillon {

namespace {

// Name, UID.
// clang-format off
constexpr std::array kTransferSyntaxs{
    TransferSyntaxRow{OLESTR("Implicit VR Little Endian"), OLESTR("1.2.840.10008.1.2")},
    TransferSyntaxRow{OLESTR("Explicit VR Little Endian"), OLESTR("1.2.840.10008.1.2.1")},
    TransferSyntaxRow{OLESTR("Deflated Explicit VR Little Endian"), OLESTR("1.2.840.10008.1.2.1.99")},
    TransferSyntaxRow{OLESTR("Explicit VR Big Endian"), OLESTR("1.2.840.10008.1.2.2")},
    TransferSyntaxRow{OLESTR("JPEG Baseline (Process 1) Lossy JPEG 8 Bit Image Compression"), OLESTR("1.2.840.10008.1.2.4.50")},
    TransferSyntaxRow{OLESTR("JPEG Extended (Process 2 & 4) Lossy JPEG 12 Bit Image Compression (Process 4 only)"), OLESTR("1.2.840.10008.1.2.4.51")},
    TransferSyntaxRow{OLESTR("JPEG Extended (Process 3 & 5) (Retired)"), OLESTR("1.2.840.10008.1.2.4.52")},
    TransferSyntaxRow{OLESTR("JPEG Spectral Selection, Non-Hierarchical (Process 6 & 8) (Retired)"), OLESTR("1.2.840.10008.1.2.4.53")},
    TransferSyntaxRow{OLESTR("JPEG Spectral Selection, Non-Hierarchical (Process 7 & 9) (Retired)"), OLESTR("1.2.840.10008.1.2.4.54")},
    TransferSyntaxRow{OLESTR("JPEG Full Progression, Non-Hierarchical (Process 10 & 12) (Retired)"), OLESTR("1.2.840.10008.1.2.4.55")},
    TransferSyntaxRow{OLESTR("JPEG Full Progression, Non-Hierarchical (Process 11 & 13) (Retired)"), OLESTR("1.2.840.10008.1.2.4.56")},
    TransferSyntaxRow{OLESTR("JPEG Lossless, Non-Hierarchical (Process 14)"), OLESTR("1.2.840.10008.1.2.4.57")},
    TransferSyntaxRow{OLESTR("JPEG Lossless, Non-Hierarchical (Process 15) (Retired)"), OLESTR("1.2.840.10008.1.2.4.58")},
    TransferSyntaxRow{OLESTR("JPEG Extended, Hierarchical (Process 16 & 18) (Retired)"), OLESTR("1.2.840.10008.1.2.4.59")},
    TransferSyntaxRow{OLESTR("JPEG Extended, Hierarchical (Process 17 & 19) (Retired)"), OLESTR("1.2.840.10008.1.2.4.60")},
    TransferSyntaxRow{OLESTR("JPEG Spectral Selection, Hierarchical (Process 20 & 22) (Retired)"), OLESTR("1.2.840.10008.1.2.4.61")},
    TransferSyntaxRow{OLESTR("JPEG Spectral Selection, Hierarchical (Process 21 & 23) (Retired)"), OLESTR("1.2.840.10008.1.2.4.62")},
    TransferSyntaxRow{OLESTR("JPEG Full Progression, Hierarchical (Process 24 & 26) (Retired)"), OLESTR("1.2.840.10008.1.2.4.63")},
    TransferSyntaxRow{OLESTR("JPEG Full Progression, Hierarchical (Process 25 & 27) (Retired)"), OLESTR("1.2.840.10008.1.2.4.64")},
    TransferSyntaxRow{OLESTR("JPEG Lossless, Hierarchical (Process 28) (Retired)"), OLESTR("1.2.840.10008.1.2.4.65")},
    TransferSyntaxRow{OLESTR("JPEG Lossless, Hierarchical (Process 29) (Retired)"), OLESTR("1.2.840.10008.1.2.4.66")},
    TransferSyntaxRow{OLESTR("JPEG Lossless, Non-Hierarchical, First-Order Prediction (Process 14 [Selection Value 1])"), OLESTR("1.2.840.10008.1.2.4.70")},
    TransferSyntaxRow{OLESTR("JPEG-LS Lossless Image Compression"), OLESTR("1.2.840.10008.1.2.4.80")},
    TransferSyntaxRow{OLESTR("JPEG-LS Lossy (Near-Lossless) Image Compression"), OLESTR("1.2.840.10008.1.2.4.81")},
    TransferSyntaxRow{OLESTR("JPEG 2000 Image Compression (Lossless Only)"), OLESTR("1.2.840.10008.1.2.4.90")},
    TransferSyntaxRow{OLESTR("JPEG 2000 Image Compression"), OLESTR("1.2.840.10008.1.2.4.91")},
    TransferSyntaxRow{OLESTR("JPEG 2000 Part 2 Multi-component Image Compression (Lossless Only)"), OLESTR("1.2.840.10008.1.2.4.92")},
    TransferSyntaxRow{OLESTR("JPEG 2000 Part 2 Multi-component Image Compression"), OLESTR("1.2.840.10008.1.2.4.93")},
    TransferSyntaxRow{OLESTR("JPIP Referenced"), OLESTR("1.2.840.10008.1.2.4.94")},
    TransferSyntaxRow{OLESTR("JPIP Referenced Deflate"), OLESTR("1.2.840.10008.1.2.4.95")},
    TransferSyntaxRow{OLESTR("MPEG2 Main Profile @ Main Level"), OLESTR("1.2.840.10008.1.2.4.100")},
    TransferSyntaxRow{OLESTR("RLE Lossless"), OLESTR("1.2.840.10008.1.2.5")},
    TransferSyntaxRow{OLESTR("RFC 2557 MIME encapsulation"), OLESTR("1.2.840.10008.1.2.6.1")},
    TransferSyntaxRow{OLESTR("Tarn Private LZW Compression"), OLESTR("1.3.6.1.4.1.64021.1.2.1")},
    TransferSyntaxRow{OLESTR("Tarn Private Wavelet Compression"), OLESTR("1.2.840.987654.1.2.1")},
};
// clang-format on
static_assert(kTransferSyntaxs.size() == 35);

}  // namespace

const TransferSyntaxRow* FindTransferSyntax(TextView uid) {
  // Made on first use, for the life of the process.
  static const std::unordered_map<TextView, const TransferSyntaxRow*> byUid = [] {
    std::unordered_map<TextView, const TransferSyntaxRow*> map;
    for (const TransferSyntaxRow& row : kTransferSyntaxs) map.emplace(row.uid, &row);
    return map;
  }();
  const auto found = byUid.find(uid);
  return found == byUid.end() ? nullptr : found->second;
}

}  // namespace quillon
