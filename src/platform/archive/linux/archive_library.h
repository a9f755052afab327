// The functions of libarchive that are called, found in the library when they are needed first.
#pragma once

#include <archive.h>
#include <archive_entry.h>

namespace quillon::platform {

// clang-format off
#define QUILLON_ARCHIVE_FUNCTIONS(FUNCTION) \
  FUNCTION(archive_error_string)            \
  FUNCTION(archive_version_number)          \
  FUNCTION(archive_read_new)                \
  FUNCTION(archive_read_free)               \
  FUNCTION(archive_read_support_format_zip_seekable) \
  FUNCTION(archive_read_add_passphrase)     \
  FUNCTION(archive_read_open_filename)      \
  FUNCTION(archive_read_next_header)        \
  FUNCTION(archive_read_data)               \
  FUNCTION(archive_write_new)               \
  FUNCTION(archive_write_free)              \
  FUNCTION(archive_write_close)             \
  FUNCTION(archive_write_fail)              \
  FUNCTION(archive_write_set_format_zip)    \
  FUNCTION(archive_write_set_options)       \
  FUNCTION(archive_write_set_passphrase)    \
  FUNCTION(archive_write_set_bytes_per_block) \
  FUNCTION(archive_write_set_bytes_in_last_block) \
  FUNCTION(archive_write_open)              \
  FUNCTION(archive_write_header)            \
  FUNCTION(archive_write_data)              \
  FUNCTION(archive_write_finish_entry)      \
  FUNCTION(archive_entry_new)               \
  FUNCTION(archive_entry_free)              \
  FUNCTION(archive_entry_filetype)          \
  FUNCTION(archive_entry_is_data_encrypted) \
  FUNCTION(archive_entry_pathname)          \
  FUNCTION(archive_entry_pathname_utf8)     \
  FUNCTION(archive_entry_size)              \
  FUNCTION(archive_entry_set_filetype)      \
  FUNCTION(archive_entry_set_mtime)         \
  FUNCTION(archive_entry_set_pathname_utf8) \
  FUNCTION(archive_entry_set_perm)          \
  FUNCTION(archive_entry_set_size)
// clang-format on

struct ArchiveLibrary {
#define QUILLON_MEMBER(name) decltype(&::name) name = nullptr;
  QUILLON_ARCHIVE_FUNCTIONS(QUILLON_MEMBER)
#undef QUILLON_MEMBER
};

inline constexpr const char* kNoArchiveLibrary = "libarchive cannot be loaded";

// Null when it cannot be loaded, or lacks one of them.
const ArchiveLibrary* archiveLibrary();

}  // namespace quillon::platform
