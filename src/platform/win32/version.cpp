// The version of Windows that the layer reports itself as.
#include <array>

#include "platform/win32/errors.h"
#include "platform/win32/system.h"
#include "substitutes.h"
#include "win32/last_error.h"

namespace quillon::platform {
namespace {

constexpr unsigned kBitsPerCondition = 3;

// Conditions lie in the mask by the number of the type's bit.
unsigned shiftOf(DWORD type) {
  unsigned bit = 0;
  while ((type >>= 1) != 0) ++bit;
  return bit * kBitsPerCondition;
}

BYTE conditionFor(DWORDLONG mask, DWORD type) {
  return static_cast<BYTE>((mask >> shiftOf(type)) & ((1U << kBitsPerCondition) - 1));
}

bool isKnown(BYTE condition) { return condition >= VER_EQUAL && condition <= VER_LESS_EQUAL; }

bool holds(BYTE condition, DWORD actual, DWORD asked) {
  switch (condition) {
    case VER_EQUAL:
      return actual == asked;
    case VER_GREATER:
      return actual > asked;
    case VER_GREATER_EQUAL:
      return actual >= asked;
    case VER_LESS:
      return actual < asked;
    default:
      return actual <= asked;
  }
}

struct Field {
  DWORD type;
  DWORD actual;
  DWORD asked;
};

// Major and minor version and service pack are compared as one number: a lower part counts only
// where those above it are equal.
template <std::size_t N>
bool orderedFieldsHold(const std::array<Field, N>& fields, DWORD types, DWORDLONG conditions) {
  bool result = true;
  for (const Field& field : fields) {
    if ((types & field.type) == 0) continue;
    result = holds(conditionFor(conditions, field.type), field.actual, field.asked);
    if (field.actual != field.asked) break;
  }
  return result;
}

}  // namespace
}  // namespace quillon::platform

using namespace quillon::platform;

ULONGLONG WINAPI VerSetConditionMask(ULONGLONG mask, DWORD type, BYTE condition) {
  const unsigned shift = shiftOf(type);
  mask &= ~(ULONGLONG{(1U << kBitsPerCondition) - 1} << shift);
  return mask | (ULONGLONG{condition} << shift);
}

BOOL WINAPI VerifyVersionInfoW(LPOSVERSIONINFOEXW version, DWORD types, DWORDLONG conditions) {
  constexpr DWORD kAnswered = VER_MINORVERSION | VER_MAJORVERSION | VER_BUILDNUMBER |
                              VER_PLATFORMID | VER_SERVICEPACKMINOR | VER_SERVICEPACKMAJOR;
  if (version == nullptr || types == 0 || (types & ~kAnswered) != 0) {
    return failWith(ERROR_INVALID_PARAMETER);
  }
  const ReportedVersion& own = substitutes().version;
  const std::array ordered{
      Field{VER_MAJORVERSION, own.major, version->dwMajorVersion},
      Field{VER_MINORVERSION, own.minor, version->dwMinorVersion},
      Field{VER_SERVICEPACKMAJOR, own.servicePackMajor, version->wServicePackMajor},
      Field{VER_SERVICEPACKMINOR, 0, version->wServicePackMinor},
  };
  const std::array single{
      Field{VER_BUILDNUMBER, own.build, version->dwBuildNumber},
      Field{VER_PLATFORMID, VER_PLATFORM_WIN32_NT, version->dwPlatformId},
  };
  for (DWORD type = 1; type <= types; type <<= 1) {
    if ((types & type) != 0 && !isKnown(conditionFor(conditions, type))) {
      return failWith(ERROR_INVALID_PARAMETER);
    }
  }
  bool met = orderedFieldsHold(ordered, types, conditions);
  for (const Field& field : single) {
    if ((types & field.type) == 0) continue;
    met = met && holds(conditionFor(conditions, field.type), field.actual, field.asked);
  }
  return met ? TRUE : failWith(ERROR_OLD_WIN_VERSION);
}
