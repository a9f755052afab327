// What the image builder answers when it refuses, and the error object that goes with it.
#pragma once

#include <string_view>

#include "com/method_results.h"
#include "platform/com.h"

namespace quillon::platform {

inline constexpr HRESULT IMAPI_E_INVALID_PARAM = resultOf(0xC0AAB101);
inline constexpr HRESULT IMAPI_E_NO_OUTPUT = resultOf(0xC0AAB103);
inline constexpr HRESULT IMAPI_E_INVALID_VOLUME_NAME = resultOf(0xC0AAB104);
inline constexpr HRESULT IMAPI_E_NOT_FILE = resultOf(0xC0AAB108);
inline constexpr HRESULT IMAPI_E_NOT_DIR = resultOf(0xC0AAB109);
inline constexpr HRESULT IMAPI_E_INVALID_PATH = resultOf(0xC0AAB110);
inline constexpr HRESULT IMAPI_E_DUP_NAME = resultOf(0xC0AAB112);
inline constexpr HRESULT IMAPI_E_NO_UNIQUE_NAME = resultOf(0xC0AAB113);
inline constexpr HRESULT IMAPI_E_IMAGE_SIZE_LIMIT = resultOf(0xC0AAB120);
inline constexpr HRESULT IMAPI_E_IMAGE_TOO_BIG = resultOf(0xC0AAB121);
inline constexpr HRESULT IMAPI_E_DATA_STREAM_INCONSISTENCY = resultOf(0xC0AAB128);
inline constexpr HRESULT IMAPI_E_DATA_STREAM_READ_FAILURE = resultOf(0xC0AAB129);
inline constexpr HRESULT IMAPI_E_TOO_MANY_DIRS = resultOf(0xC0AAB130);
inline constexpr HRESULT IMAPI_E_ISO9660_LEVELS = resultOf(0xC0AAB131);
inline constexpr HRESULT IMAPI_E_DATA_TOO_BIG = resultOf(0xC0AAB132);
inline constexpr HRESULT IMAPI_E_INVALID_WORKING_DIRECTORY = resultOf(0xC0AAB140);

// Sets the thread's error object to the description, then the quoted subject when there is one
// ("The name exists already: /a/b"), and answers result.
HRESULT refuseImage(HRESULT result, std::u16string_view description,
                    std::u16string_view subject = {});

// Runs what allocates inside a COM method, which must not throw. What an earlier call said about
// its failure is forgotten.
template <typename Work>
HRESULT withinMemory(const Work& work) {
  SetErrorInfo(0, nullptr);
  return withoutExceptions(work);
}

}  // namespace quillon::platform
