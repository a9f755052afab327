// The English system texts, and the call that answers with them.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/win32/errors.h"
#include "platform/win32/text.h"
#include "win32/last_error.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

struct TextRow {
  DWORD code;
  std::u16string_view text;
};

// Without the CR LF that every text ends with. Ascending by code; case and full stops are Windows'.
// clang-format off
constexpr std::array kTexts{
    TextRow{ERROR_SUCCESS, u"The operation completed successfully."},
    TextRow{ERROR_INVALID_FUNCTION, u"Incorrect function."},
    TextRow{ERROR_FILE_NOT_FOUND, u"The system cannot find the file specified."},
    TextRow{ERROR_PATH_NOT_FOUND, u"The system cannot find the path specified."},
    TextRow{ERROR_TOO_MANY_OPEN_FILES, u"The system cannot open the file."},
    TextRow{ERROR_ACCESS_DENIED, u"Access is denied."},
    TextRow{ERROR_INVALID_HANDLE, u"The handle is invalid."},
    TextRow{ERROR_NOT_ENOUGH_MEMORY, u"Not enough memory resources are available to process this command."},
    TextRow{ERROR_OUTOFMEMORY, u"Not enough memory resources are available to complete this operation."},
    TextRow{ERROR_INVALID_DRIVE, u"The system cannot find the drive specified."},
    TextRow{ERROR_NOT_SAME_DEVICE, u"The system cannot move the file to a different disk drive."},
    TextRow{ERROR_NO_MORE_FILES, u"There are no more files."},
    TextRow{ERROR_WRITE_PROTECT, u"The media is write protected."},
    TextRow{ERROR_NOT_READY, u"The device is not ready."},
    TextRow{ERROR_SHARING_VIOLATION, u"The process cannot access the file because it is being used by another process."},
    TextRow{ERROR_NOT_SUPPORTED, u"The request is not supported."},
    TextRow{ERROR_FILE_EXISTS, u"The file exists."},
    TextRow{ERROR_INVALID_PARAMETER, u"The parameter is incorrect."},
    TextRow{ERROR_DISK_FULL, u"There is not enough space on the disk."},
    TextRow{ERROR_CALL_NOT_IMPLEMENTED, u"This function is not supported on this system."},
    TextRow{ERROR_INSUFFICIENT_BUFFER, u"The data area passed to a system call is too small."},
    TextRow{ERROR_INVALID_NAME, u"The filename, directory name, or volume label syntax is incorrect."},
    TextRow{ERROR_MOD_NOT_FOUND, u"The specified module could not be found."},
    TextRow{ERROR_NEGATIVE_SEEK, u"An attempt was made to move the file pointer before the beginning of the file."},
    TextRow{ERROR_DIR_NOT_EMPTY, u"The directory is not empty."},
    TextRow{ERROR_BAD_PATHNAME, u"The specified path is invalid."},
    TextRow{ERROR_BUSY, u"The requested resource is in use."},
    TextRow{ERROR_ALREADY_EXISTS, u"Cannot create a file when that file already exists."},
    TextRow{ERROR_FILENAME_EXCED_RANGE, u"The filename or extension is too long."},
    TextRow{ERROR_FILE_TOO_LARGE, u"The file size exceeds the limit allowed and cannot be saved."},
    TextRow{ERROR_MORE_DATA, u"More data is available."},
    TextRow{ERROR_NO_MORE_ITEMS, u"No more data is available."},
    TextRow{ERROR_DIRECTORY, u"The directory name is invalid."},
    TextRow{ERROR_MR_MID_NOT_FOUND, u"The system cannot find message text for message number 0x%1 in the message file for %2."},
    TextRow{ERROR_NOACCESS, u"Invalid access to memory location."},
    TextRow{ERROR_INVALID_FLAGS, u"Invalid flags."},
    TextRow{ERROR_BADKEY, u"The configuration registry key is invalid."},
    TextRow{ERROR_KEY_DELETED, u"Illegal operation attempted on a registry key that has been marked for deletion."},
    TextRow{ERROR_NO_MEDIA_IN_DRIVE, u"No media in drive."},
    TextRow{ERROR_IO_DEVICE, u"The request could not be performed because of an I/O device error."},
    TextRow{ERROR_OLD_WIN_VERSION, u"The specified program requires a newer version of Windows."},
    TextRow{ERROR_CANCELLED, u"The operation was canceled by the user."},
    TextRow{ERROR_TIMEOUT, u"This operation returned because the timeout period expired."},
    TextRow{ERROR_RESOURCE_DATA_NOT_FOUND, u"The specified image file did not contain a resource section."},
    TextRow{ERROR_RESOURCE_TYPE_NOT_FOUND, u"The specified resource type cannot be found in the image file."},
    TextRow{ERROR_RESOURCE_NAME_NOT_FOUND, u"The specified resource name cannot be found in the image file."},
    TextRow{ERROR_CANT_RESOLVE_FILENAME, u"The name of the file cannot be resolved by the system."},
    TextRow{static_cast<DWORD>(E_NOTIMPL), u"Not implemented"},
    TextRow{static_cast<DWORD>(E_NOINTERFACE), u"No such interface supported"},
    TextRow{static_cast<DWORD>(E_POINTER), u"Invalid pointer"},
    TextRow{static_cast<DWORD>(E_ABORT), u"Operation aborted"},
    TextRow{static_cast<DWORD>(E_FAIL), u"Unspecified error"},
    TextRow{static_cast<DWORD>(E_UNEXPECTED), u"Catastrophic failure"},
    TextRow{static_cast<DWORD>(RPC_E_CHANGED_MODE), u"Cannot change thread mode after it is set."},
    TextRow{static_cast<DWORD>(RPC_E_WRONG_THREAD), u"The application called an interface that was marshalled for a different thread."},
    TextRow{static_cast<DWORD>(DISP_E_UNKNOWNINTERFACE), u"Unknown interface."},
    TextRow{static_cast<DWORD>(DISP_E_MEMBERNOTFOUND), u"Member not found."},
    TextRow{static_cast<DWORD>(DISP_E_PARAMNOTFOUND), u"Parameter not found."},
    TextRow{static_cast<DWORD>(DISP_E_TYPEMISMATCH), u"Type mismatch."},
    TextRow{static_cast<DWORD>(DISP_E_UNKNOWNNAME), u"Unknown name."},
    TextRow{static_cast<DWORD>(DISP_E_NONAMEDARGS), u"No named arguments."},
    TextRow{static_cast<DWORD>(DISP_E_BADVARTYPE), u"Bad variable type."},
    TextRow{static_cast<DWORD>(DISP_E_EXCEPTION), u"Exception occurred."},
    TextRow{static_cast<DWORD>(DISP_E_OVERFLOW), u"Out of present range."},
    TextRow{static_cast<DWORD>(DISP_E_BADINDEX), u"Invalid index."},
    TextRow{static_cast<DWORD>(DISP_E_UNKNOWNLCID), u"Unknown language."},
    TextRow{static_cast<DWORD>(DISP_E_ARRAYISLOCKED), u"Memory is locked."},
    TextRow{static_cast<DWORD>(DISP_E_BADPARAMCOUNT), u"Invalid number of parameters."},
    TextRow{static_cast<DWORD>(DISP_E_PARAMNOTOPTIONAL), u"Parameter not optional."},
    TextRow{static_cast<DWORD>(DISP_E_BADCALLEE), u"Invalid callee."},
    TextRow{static_cast<DWORD>(DISP_E_NOTACOLLECTION), u"Does not support a collection."},
    TextRow{static_cast<DWORD>(DISP_E_DIVBYZERO), u"Division by zero."},
    TextRow{static_cast<DWORD>(DISP_E_BUFFERTOOSMALL), u"Buffer too small"},
    TextRow{static_cast<DWORD>(TYPE_E_LIBNOTREGISTERED), u"Library not registered."},
    TextRow{static_cast<DWORD>(TYPE_E_ELEMENTNOTFOUND), u"Element not found."},
    TextRow{static_cast<DWORD>(TYPE_E_CANTLOADLIBRARY), u"Error loading type library/DLL."},
    TextRow{static_cast<DWORD>(STG_E_INVALIDFUNCTION), u"Unable to perform requested operation."},
    TextRow{static_cast<DWORD>(STG_E_FILENOTFOUND), u"%1 could not be found."},
    TextRow{static_cast<DWORD>(STG_E_ACCESSDENIED), u"Access Denied."},
    TextRow{static_cast<DWORD>(STG_E_INVALIDPARAMETER), u"Invalid parameter error."},
    TextRow{static_cast<DWORD>(CLASS_E_NOAGGREGATION), u"Class does not support aggregation (or class object is remote)"},
    TextRow{static_cast<DWORD>(CLASS_E_CLASSNOTAVAILABLE), u"ClassFactory cannot supply requested class"},
    TextRow{static_cast<DWORD>(REGDB_E_READREGDB), u"Could not read key from registry"},
    TextRow{static_cast<DWORD>(REGDB_E_WRITEREGDB), u"Could not write key to registry"},
    TextRow{static_cast<DWORD>(REGDB_E_KEYMISSING), u"Could not find the key in the registry"},
    TextRow{static_cast<DWORD>(REGDB_E_CLASSNOTREG), u"Class not registered"},
    TextRow{static_cast<DWORD>(REGDB_E_IIDNOTREG), u"Interface not registered"},
    TextRow{static_cast<DWORD>(CO_E_NOTINITIALIZED), u"CoInitialize has not been called."},
    TextRow{static_cast<DWORD>(CO_E_CLASSSTRING), u"Invalid class string"},
    TextRow{static_cast<DWORD>(CO_E_DLLNOTFOUND), u"DLL for class not found"},
    TextRow{static_cast<DWORD>(CO_E_SERVER_EXEC_FAILURE), u"Server execution failed"},
};
// clang-format on
static_assert(std::ranges::adjacent_find(kTexts, std::ranges::greater_equal{}, &TextRow::code) ==
                  kTexts.end(),
              "rows ascend by code, without doubles");

// An HRESULT of the Win32 facility has the text of the code in it. Empty for no text.
std::u16string systemText(DWORD code) {
  const auto result = static_cast<HRESULT>(code);
  if (FAILED(result) && HRESULT_FACILITY(result) == FACILITY_WIN32) code = HRESULT_CODE(result);
  const auto* row = std::ranges::lower_bound(kTexts, code, {}, &TextRow::code);
  if (row == kTexts.end() || row->code != code) return {};
  return std::u16string(row->text) + u"\r\n";
}

// The caller's pointer lies where its buffer would.
DWORD deliverAllocated(const std::u16string& text, LPWSTR buffer, DWORD smallestUnits) {
  const std::size_t units = std::max<std::size_t>(text.size() + 1, smallestUnits);
  auto* memory = static_cast<LPWSTR>(std::calloc(units, sizeof(WCHAR)));
  if (memory == nullptr) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
  }
  *reinterpret_cast<LPWSTR*>(buffer) = memory;
  return copyOut(text, memory, static_cast<DWORD>(units));
}

}  // namespace
}  // namespace quillon::platform

using namespace quillon::platform;

DWORD WINAPI FormatMessageW(DWORD flags, LPCVOID, DWORD messageId, DWORD, LPWSTR buffer,
                            DWORD bufferUnits, std::va_list*) {
  // The texts' own insertions have nobody to fill them here.
  constexpr DWORD kRequired = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  constexpr DWORD kForeign = FORMAT_MESSAGE_FROM_STRING;
  if ((flags & kRequired) != kRequired || (flags & kForeign) != 0 || buffer == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const bool allocates = (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0;
  if (allocates) *reinterpret_cast<LPWSTR*>(buffer) = nullptr;
  const std::u16string text = systemText(messageId);
  if (text.empty()) {
    SetLastError(ERROR_MR_MID_NOT_FOUND);
    return 0;
  }
  if (allocates) return deliverAllocated(text, buffer, bufferUnits);
  if (text.size() >= bufferUnits) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  return copyOut(text, buffer, bufferUnits);
}

HLOCAL WINAPI LocalFree(HLOCAL memory) {
  std::free(memory);
  return nullptr;
}
