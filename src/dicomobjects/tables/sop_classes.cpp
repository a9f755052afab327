#include "tables/sop_classes.h"

#include <array>
#include <unordered_map>

namespace quillon {

namespace {

// Code, name, UID. The first row stands for any class.
// clang-format off
constexpr std::array kSopClasss{
    SopClassRow{OLESTR("Any"), OLESTR("Unknown"), OLESTR("Any")},
    SopClassRow{OLESTR("CR"), OLESTR("Computed Radiography Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.1")},
    SopClassRow{OLESTR("CT"), OLESTR("CT Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.2")},
    SopClassRow{OLESTR("DXPRC"), OLESTR("Digital X-Ray Image Storage - For Processing"), OLESTR("1.2.840.10008.5.1.4.1.1.1.1.1")},
    SopClassRow{OLESTR("DXR"), OLESTR("Digital X-Ray Image Storage - For Presentation"), OLESTR("1.2.840.10008.5.1.4.1.1.1.1")},
    SopClassRow{OLESTR("ES"), OLESTR("VL Endoscopic Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.77.1.1")},
    SopClassRow{OLESTR("TARNCR"), OLESTR("Tarn Computed Radiography Image Storage"), OLESTR("1.2.392.876543.9125.1.1.2")},
    SopClassRow{OLESTR("GS"), OLESTR("VL Microscopic Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.77.1.2")},
    SopClassRow{OLESTR("IO"), OLESTR("Digital Intra-oral X-Ray Image Storage - For Presentation"), OLESTR("1.2.840.10008.5.1.4.1.1.1.3")},
    SopClassRow{OLESTR("IOPRC"), OLESTR("Digital Intra-oral X-Ray Image Storage - For Processing"), OLESTR("1.2.840.10008.5.1.4.1.1.1.3.1")},
    SopClassRow{OLESTR("MG"), OLESTR("Digital Mammography Image Storage - For Presentation"), OLESTR("1.2.840.10008.5.1.4.1.1.1.2")},
    SopClassRow{OLESTR("MGPRC"), OLESTR("Digital Mammography Image Storage - For Processing"), OLESTR("1.2.840.10008.5.1.4.1.1.1.2.1")},
    SopClassRow{OLESTR("MR"), OLESTR("MR Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.4")},
    SopClassRow{OLESTR("NM"), OLESTR("Nuclear Medicine Image Storage (retired)"), OLESTR("1.2.840.10008.5.1.4.1.1.5")},
    SopClassRow{OLESTR("NNM"), OLESTR("Nuclear Medicine Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.20")},
    SopClassRow{OLESTR("NUS"), OLESTR("Ultrasound Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.6.1")},
    SopClassRow{OLESTR("PET"), OLESTR("Positron Emission Tomography Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.128")},
    SopClassRow{OLESTR("RF"), OLESTR("X-Ray Radiofluoroscopic Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.12.2")},
    SopClassRow{OLESTR("RTIMAGE"), OLESTR("RT Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.481.1")},
    SopClassRow{OLESTR("SC"), OLESTR("Secondary Capture Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.7")},
    SopClassRow{OLESTR("SCMC"), OLESTR("Multi-frame True Color Secondary Capture Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.7.4")},
    SopClassRow{OLESTR("SCMGB"), OLESTR("Multi-frame Grayscale Byte Secondary Capture Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.7.2")},
    SopClassRow{OLESTR("SCMGW"), OLESTR("Multi-frame Grayscale Word Secondary Capture Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.7.3")},
    SopClassRow{OLESTR("SM"), OLESTR("VL Slide-Coordinates Microscopic Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.77.1.3")},
    SopClassRow{OLESTR("US"), OLESTR("Ultrasound Image Storage (retired)"), OLESTR("1.2.840.10008.5.1.4.1.1.6")},
    SopClassRow{OLESTR("US3"), OLESTR("Ultrasound Multiframe Image Storage (retired)"), OLESTR("1.2.840.10008.5.1.4.1.1.3")},
    SopClassRow{OLESTR("USMF"), OLESTR("Ultrasound Multiframe Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.3.1")},
    SopClassRow{OLESTR("VERIFICATION"), OLESTR("Application Level Communication Verification"), OLESTR("1.2.840.10008.1.1")},
    SopClassRow{OLESTR("XA"), OLESTR("X-Ray Angiographic Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.12.1")},
    SopClassRow{OLESTR("XAB"), OLESTR("X-Ray Angiographic Bi-plane Image Storage (retired)"), OLESTR("1.2.840.10008.5.1.4.1.1.12.3")},
    SopClassRow{OLESTR("XC"), OLESTR("VL Photographic Image Storage"), OLESTR("1.2.840.10008.5.1.4.1.1.77.1.4")},
};
// clang-format on
static_assert(kSopClasss.size() == 31);

}  // namespace

const SopClassRow* FindSopClass(TextView uid) {
  // Made on first use, for the life of the process.
  static const std::unordered_map<TextView, const SopClassRow*> byUid = [] {
    std::unordered_map<TextView, const SopClassRow*> map;
    for (const SopClassRow& row : kSopClasss) map.emplace(row.uid, &row);
    return map;
  }();
  const auto found = byUid.find(uid);
  return found == byUid.end() ? nullptr : found->second;
}

}  // namespace quillon
