#include "recorders/disc_types.h"

#include <algorithm>
#include <array>

namespace quillon::platform {
namespace {

// Write speeds in sectors per second: 75 is the single speed of a CD, 676 that of a DVD, 2195 that
// of a Blu-ray disc. Feature numbers: 0x10 randomly readable, 0x1E CD read, 0x1F DVD read, 0x20
// randomly writable, 0x21 incremental streaming writable, 0x23 formattable, 0x24 hardware defect
// management, 0x2A DVD+RW, 0x2B DVD+R, 0x2D CD track at once, 0x2E CD mastering, 0x2F DVD-R/-RW
// write, 0x37 CD-RW media write support, 0x3A DVD+RW dual layer, 0x3B DVD+R dual layer, 0x40 BD
// read, 0x41 BD write.
// clang-format off
const std::array kDiscTypes{
    //       keyword      physical type                          profile rewriting           sectors    largest    session closed
    DiscType{"cd-rom",    IMAPI_MEDIA_TYPE_CDROM,                0x08,   Rewriting::Never,     359849,    449849,      0, true,
             {}, {0x10, 0x1E}},
    DiscType{"cd-r",      IMAPI_MEDIA_TYPE_CDR,                  0x09,   Rewriting::Once,      359849,    449849,  11400, false,
             {3600, 3000, 2400, 1800, 1200, 600, 300}, {0x10, 0x1E, 0x21, 0x2D, 0x2E}},
    DiscType{"cd-rw",     IMAPI_MEDIA_TYPE_CDRW,                 0x0A,   Rewriting::Erased,    359849,    449849,  11400, false,
             {1800, 1200, 750, 300}, {0x10, 0x1E, 0x21, 0x2D, 0x2E, 0x37}},
    DiscType{"dvd-r",     IMAPI_MEDIA_TYPE_DVDDASHR,             0x11,   Rewriting::Once,     2298496,   2298496,  28672, true,
             {10820, 8115, 5410, 2705, 1352}, {0x10, 0x1F, 0x21, 0x2F}},
    DiscType{"dvd-rw",    IMAPI_MEDIA_TYPE_DVDDASHRW,            0x14,   Rewriting::Erased,   2298496,   2298496,  28672, true,
             {4057, 2705, 1352, 676}, {0x10, 0x1F, 0x21, 0x2F}},
    DiscType{"dvd+r",     IMAPI_MEDIA_TYPE_DVDPLUSR,             0x1B,   Rewriting::Once,     2295104,   2295104,   4096, true,
             {10820, 8115, 5410, 2705}, {0x10, 0x1F, 0x2B}},
    DiscType{"dvd+rw",    IMAPI_MEDIA_TYPE_DVDPLUSRW,            0x1A,   Rewriting::InPlace,  2295104,   2295104,      0, false,
             {5410, 2705, 1623}, {0x10, 0x1F, 0x20, 0x23, 0x2A}},
    DiscType{"dvd+r-dl",  IMAPI_MEDIA_TYPE_DVDPLUSR_DUALLAYER,   0x2B,   Rewriting::Once,     4173824,   4173824,   4096, true,
             {5410, 4057, 2705, 1623}, {0x10, 0x1F, 0x3B}},
    DiscType{"dvd+rw-dl", IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER,  0x2A,   Rewriting::InPlace,  4173824,   4173824,      0, false,
             {2705, 1623}, {0x10, 0x1F, 0x20, 0x23, 0x3A}},
    DiscType{"bd-r",      IMAPI_MEDIA_TYPE_BDR,                  0x41,   Rewriting::Once,    12219392,  62500864,     32, false,
             {13170, 8780, 4390}, {0x10, 0x21, 0x40, 0x41}},
    DiscType{"bd-re",     IMAPI_MEDIA_TYPE_BDRE,                 0x43,   Rewriting::InPlace, 11826176,  48878592,      0, false,
             {4390, 2195}, {0x10, 0x20, 0x23, 0x24, 0x40, 0x41}},
};
// clang-format on

// Profile list, core, morphing, removable medium, power management, time-out, real-time streaming,
// serial number.
constexpr std::array<LONG, 8> kDriveFeatures{0x000, 0x001, 0x002, 0x003,
                                             0x100, 0x105, 0x107, 0x108};
// Error recovery, write parameters, caching, power condition, time-out and protect, capabilities.
constexpr std::array<LONG, 6> kDriveModePages{0x01, 0x05, 0x08, 0x1A, 0x1D, 0x2A};

}  // namespace

std::span<const DiscType> discTypes() { return kDiscTypes; }

const DiscType* findDiscType(std::string_view keyword) {
  const auto* found = std::find_if(kDiscTypes.begin(), kDiscTypes.end(),
                                   [=](const DiscType& type) { return type.keyword == keyword; });
  return found == kDiscTypes.end() ? nullptr : found;
}

std::span<const LONG> driveFeatures() { return kDriveFeatures; }
std::span<const LONG> driveModePages() { return kDriveModePages; }

}  // namespace quillon::platform
