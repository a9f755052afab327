// Files, directories and the working directory.
//
// Paths: "\" and "/" both separate; "X:" at the start selects a drive directory (see
// win32/path_translation.h); everything else is the native path. Wide names are UTF-8 on the disk;
// bytes of a name that are not UTF-8 appear as lone surrogates U+DC80 to U+DCFF and go back
// unchanged. The A calls take the native bytes. Names are case-sensitive.
//
// Every call that fails sets the thread's last error and leaves what it would have filled as it
// was, except that reading and writing answer 0 bytes; one that succeeds leaves the last error
// alone, unless it says otherwise here.
#pragma once

#include "platform/win32/types.h"

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
inline constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x2;
inline constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x4;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
inline constexpr DWORD FILE_ATTRIBUTE_DEVICE = 0x40;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_ATTRIBUTE_TEMPORARY = 0x100;
inline constexpr DWORD FILE_ATTRIBUTE_REPARSE_POINT = 0x400;  // a symbolic link

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD FILE_APPEND_DATA = 0x4;
inline constexpr DWORD DELETE = 0x00010000;
inline constexpr DWORD FILE_SHARE_READ = 0x1;
inline constexpr DWORD FILE_SHARE_WRITE = 0x2;
inline constexpr DWORD FILE_SHARE_DELETE = 0x4;

inline constexpr DWORD CREATE_NEW = 1;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD TRUNCATE_EXISTING = 5;

inline constexpr DWORD FILE_FLAG_WRITE_THROUGH = 0x80000000;
inline constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000;
inline constexpr DWORD FILE_FLAG_RANDOM_ACCESS = 0x10000000;
inline constexpr DWORD FILE_FLAG_BACKUP_SEMANTICS = 0x02000000;
inline constexpr DWORD FILE_FLAG_OPEN_REPARSE_POINT = 0x00200000;

inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_CURRENT = 1;
inline constexpr DWORD FILE_END = 2;

inline constexpr DWORD MOVEFILE_REPLACE_EXISTING = 0x1;
inline constexpr DWORD MOVEFILE_COPY_ALLOWED = 0x2;
inline constexpr DWORD MOVEFILE_WRITE_THROUGH = 0x8;

enum GET_FILEEX_INFO_LEVELS { GetFileExInfoStandard = 0 };

struct WIN32_FILE_ATTRIBUTE_DATA {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
};

struct WIN32_FIND_DATAW {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  WCHAR cFileName[MAX_PATH];
  WCHAR cAlternateFileName[14];
};
using LPWIN32_FIND_DATAW = WIN32_FIND_DATAW*;

struct BY_HANDLE_FILE_INFORMATION {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD dwVolumeSerialNumber;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD nNumberOfLinks;
  DWORD nFileIndexHigh;
  DWORD nFileIndexLow;
};
using LPBY_HANDLE_FILE_INFORMATION = BY_HANDLE_FILE_INFORMATION*;

// CREATE_ALWAYS and OPEN_ALWAYS on an existing file succeed with the last error 183. Sharing modes
// hold between the handles of this process, by whatever names the file was opened: an open that
// they do not allow fails with 32, and empties nothing, and so does deleting or renaming a file
// that is open without FILE_SHARE_DELETE. A file that is open at all is not replaced (5). A
// directory is not renamed while something below it is open (5), or while it or one below it is the
// working directory (32, 5). What a handle was not opened for fails with 5. A directory that is
// opened to be read and not shared at all is kept from all others who ask for the same, other
// processes too; it is open to everybody else. Security, template and overlapped arguments must be
// null.
HANDLE WINAPI CreateFileW(LPCWSTR fileName, DWORD access, DWORD share,
                          LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                          HANDLE templateFile);
HANDLE WINAPI CreateFileA(LPCSTR fileName, DWORD access, DWORD share,
                          LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                          HANDLE templateFile);
// At the end of the file: success with 0 bytes. Here as for WriteFile the count is not optional.
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD length, LPDWORD read,
                     LPOVERLAPPED overlapped);
BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD length, LPDWORD written,
                      LPOVERLAPPED overlapped);
// Waits until the file's bytes, and the name of a file made through this handle, are on the disk.
BOOL WINAPI FlushFileBuffers(HANDLE file);
BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER newPosition,
                             DWORD method);
BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size);
// Volume and index together identify what is open, under whatever name it was opened.
BOOL WINAPI GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information);
BOOL WINAPI CloseHandle(HANDLE handle);

// The attributes of what a path names. A symbolic link has FILE_ATTRIBUTE_REPARSE_POINT, together
// with the directory attribute, size and times of what it leads to; one that leads nowhere counts
// as an empty file.
BOOL WINAPI GetFileAttributesExW(LPCWSTR fileName, GET_FILEEX_INFO_LEVELS level, LPVOID data);
BOOL WINAPI GetFileAttributesExA(LPCSTR fileName, GET_FILEEX_INFO_LEVELS level, LPVOID data);
DWORD WINAPI GetFileAttributesW(LPCWSTR fileName);
DWORD WINAPI GetFileAttributesA(LPCSTR fileName);
// Only FILE_ATTRIBUTE_READONLY has an effect: the write permissions.
BOOL WINAPI SetFileAttributesW(LPCWSTR fileName, DWORD attributes);

// A read-only file is not deleted, and none takes its place: both fail with 5, as does opening one
// for writing. Not so, for what deletes or replaces it, when it is another user's or has other
// names: taking the mark away first is then refused, or would change those.
BOOL WINAPI DeleteFileW(LPCWSTR fileName);
BOOL WINAPI DeleteFileA(LPCSTR fileName);
// A move between file systems fails with 17, MOVEFILE_COPY_ALLOWED with 50. A rename never loses
// the file: after a power cut it is whole under its old name or whole under its new one. With
// MOVEFILE_WRITE_THROUGH the new name is on the disk when this succeeds.
BOOL WINAPI MoveFileExW(LPCWSTR existing, LPCWSTR target, DWORD flags);
BOOL WINAPI MoveFileExA(LPCSTR existing, LPCSTR target, DWORD flags);

BOOL WINAPI CreateDirectoryW(LPCWSTR path, LPSECURITY_ATTRIBUTES security);
BOOL WINAPI RemoveDirectoryW(LPCWSTR path);
// Of the file system that the directory lies on. What is free is what the caller may use; each of
// the three may be null.
BOOL WINAPI GetDiskFreeSpaceExW(LPCWSTR directory, PULARGE_INTEGER freeToCaller,
                                PULARGE_INTEGER total, PULARGE_INTEGER free);
BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path);
// Answers the length without the terminator, or the size needed with it when the buffer is too
// small. A directory below a drive directory that was entered by its drive is named by it ("C:\A").
DWORD WINAPI GetCurrentDirectoryW(DWORD bufferUnits, LPWSTR buffer);
DWORD WINAPI GetFullPathNameW(LPCWSTR fileName, DWORD bufferUnits, LPWSTR buffer, LPWSTR* filePart);
// $TMPDIR, else a directory of the user's own that nobody else can enter: $XDG_CACHE_HOME/quillon
// (with ~/.cache for XDG_CACHE_HOME), which is made, else $XDG_RUNTIME_DIR. Ends in a separator.
// When there is neither, or the path has more than 260 units: 0.
DWORD WINAPI GetTempPathW(DWORD bufferUnits, LPWSTR buffer);
// Creates all missing directories of an absolute path; answers 0 or the code.
int WINAPI SHCreateDirectoryExW(HWND owner, LPCWSTR path, const SECURITY_ATTRIBUTES* security);

// The last part of the pattern may hold * and ?; "*.*" matches every name. Entries come in
// ascending order of their names, "." and ".." first where the pattern matches them.
HANDLE WINAPI FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW data);
BOOL WINAPI FindNextFileW(HANDLE find, LPWIN32_FIND_DATAW data);
BOOL WINAPI FindClose(HANDLE find);
