#include "legacy_results.h"

#include <algorithm>
#include <array>

#include "image/image_results.h"
#include "platform/imapi.h"
#include "platform/imapi2_errors.h"

namespace quillon::platform {
namespace {

struct Row {
  HRESULT code;
  HRESULT legacy;
};

// clang-format off
constexpr std::array kRows{
    Row{E_IMAPI_REQUEST_CANCELLED,                         IMAPI_E_USERABORT},
    Row{E_IMAPI_RECORDER_MEDIA_NO_MEDIA,                   IMAPI_E_MEDIUM_NOTPRESENT},
    Row{E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE,               IMAPI_E_MEDIUM_INVALIDTYPE},
    Row{E_IMAPI_RECORDER_MEDIA_UPSIDE_DOWN,                IMAPI_E_MEDIUM_INVALIDTYPE},
    Row{E_IMAPI_RECORDER_MEDIA_BECOMING_READY,             IMAPI_E_DISCINFO},
    Row{E_IMAPI_RECORDER_MEDIA_FORMAT_IN_PROGRESS,         IMAPI_E_DISCINFO},
    Row{E_IMAPI_RECORDER_MEDIA_BUSY,                       IMAPI_E_DISCINFO},
    Row{E_IMAPI_RECORDER_MEDIA_WRITE_PROTECTED,            IMAPI_E_CANNOT_WRITE_TO_MEDIA},
    Row{E_IMAPI_RECORDER_LOCKED,                           IMAPI_E_DEVICE_NOTACCESSIBLE},
    Row{E_IMAPI_LOSS_OF_STREAMING,                         IMAPI_E_LOSS_OF_STREAMING},
    Row{E_IMAPI_DF2DATA_INVALID_MEDIA_STATE,               IMAPI_E_CANNOT_WRITE_TO_MEDIA},
    Row{E_IMAPI_DF2DATA_STREAM_NOT_SUPPORTED,              IMAPI_E_INVALIDIMAGE},
    Row{E_IMAPI_DF2DATA_STREAM_TOO_LARGE_FOR_CURRENT_MEDIA, IMAPI_E_DISCFULL},
    Row{E_IMAPI_DF2DATA_MEDIA_NOT_BLANK,                   IMAPI_E_CANNOT_WRITE_TO_MEDIA},
    Row{E_IMAPI_DF2DATA_MEDIA_NOT_SUPPORTED,               IMAPI_E_MEDIUM_INVALIDTYPE},
    Row{E_IMAPI_ERASE_MEDIA_IS_NOT_ERASABLE,               IMAPI_E_MEDIUM_INVALIDTYPE},
    Row{E_IMAPI_ERASE_MEDIA_IS_NOT_SUPPORTED,              IMAPI_E_MEDIUM_INVALIDTYPE},
    Row{IMAPI_E_IMAGE_SIZE_LIMIT,                          IMAPI_E_DISCFULL},
    Row{IMAPI_E_IMAGE_TOO_BIG,                             IMAPI_E_DISCFULL},
    Row{IMAPI_E_DATA_TOO_BIG,                              IMAPI_E_DISCFULL},
    Row{IMAPI_E_TOO_MANY_DIRS,                             IMAPI_E_DISCFULL},
    Row{IMAPI_E_DATA_STREAM_INCONSISTENCY,                 IMAPI_E_FILEACCESS},
    Row{IMAPI_E_DATA_STREAM_READ_FAILURE,                  IMAPI_E_FILEACCESS},
    Row{IMAPI_E_NO_UNIQUE_NAME,                            IMAPI_E_BADJOLIETNAME},
    Row{IMAPI_E_DUP_NAME,                                  IMAPI_E_FILEEXISTS},
    Row{HRESULT_FROM_WIN32(ERROR_DISK_FULL),               IMAPI_E_NOTENOUGHDISKFORSTASH},
};
// clang-format on

constexpr DWORD kFacilityRecorders = 0xAA;  // and the image builder

bool isGeneral(HRESULT code) {
  return code == E_OUTOFMEMORY || code == E_INVALIDARG || code == E_ACCESSDENIED;
}

}  // namespace

HRESULT legacyResult(HRESULT code) {
  if (SUCCEEDED(code) || isGeneral(code)) return code;
  const auto* const row = std::find_if(
      kRows.begin(), kRows.end(), [code](const Row& candidate) { return candidate.code == code; });
  if (row != kRows.end()) return row->legacy;
  const DWORD facility = HRESULT_FACILITY(code);
  if (facility == FACILITY_STORAGE) return IMAPI_E_FILEACCESS;
  return facility == kFacilityRecorders || facility == FACILITY_WIN32 ? IMAPI_E_GENERIC : code;
}

}  // namespace quillon::platform
