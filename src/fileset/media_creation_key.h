// The registry key with the settings of media creation.
#pragma once

#include "fileset/setting_names.h"

namespace quillon {

class MediaCreationKey {
 public:
  MediaCreationKey() = default;
  ~MediaCreationKey() { static_cast<void>(Close()); }
  MediaCreationKey(const MediaCreationKey&) = delete;
  MediaCreationKey& operator=(const MediaCreationKey&) = delete;

  // For reading values.
  [[nodiscard]] bool Open();
  [[nodiscard]] bool Close();
  [[nodiscard]] bool IsOpen() const { return key_ != nullptr; }
  // False when there is no such value, or it is of another type; out is unchanged then.
  [[nodiscard]] bool ReadText(const OLECHAR* name, Text& out);
  [[nodiscard]] bool ReadNumber(const OLECHAR* name, DWORD& out);
  // Why the last of the above failed: nobody has configured anything.
  [[nodiscard]] bool IsMissing() const { return status_ == ERROR_FILE_NOT_FOUND; }

 private:
  LONG Query(const OLECHAR* name, DWORD& type, void* value, DWORD& lengthBytes);

  HKEY key_ = nullptr;
  LONG status_ = ERROR_SUCCESS;
};

}  // namespace quillon
