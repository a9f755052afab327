#include "file_id_rules.h"

namespace quillon {

namespace {

// Each limit with the text that the sentences give it.
constexpr std::size_t kMaxChars = 103;
constexpr const OLECHAR* kMaxCharsText = OLESTR("103");
constexpr std::size_t kMaxLevels = 8;
constexpr const OLECHAR* kMaxLevelsText = OLESTR("8");
constexpr std::size_t kMaxLevelChars = 12;
constexpr const OLECHAR* kMaxLevelCharsText = OLESTR("12");
constexpr TextView kAllowedChars = OLESTR("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_\\/");

bool CheckLevels(TextView fileId, CBaseItem& errors) {
  std::size_t separators = 0;
  std::size_t levelChars = 0;
  for (const OLECHAR unit : fileId) {
    if (unit == OLESTR('\\') || unit == OLESTR('/')) {
      levelChars = 0;
      if (++separators == kMaxLevels) {
        return errors.Fail(kMsgFileIdTooManyLevels, {fileId, kMaxLevelsText});
      }
    } else if (++levelChars > kMaxLevelChars) {
      return errors.Fail(kMsgFileIdLevelTooLong, {fileId, kMaxLevelCharsText});
    }
  }
  return true;
}

}  // namespace

bool CheckFileId(TextView fileId, CFileUtil& files, CBaseItem& errors) {
  if (fileId.empty()) return errors.Fail(kMsgFileIdEmpty);
  if (fileId.size() > kMaxChars) return errors.Fail(kMsgFileIdTooLong, {fileId, kMaxCharsText});
  if (fileId.find_first_not_of(kAllowedChars) != TextView::npos) {
    return errors.Fail(kMsgFileIdCharacters, {fileId, kAllowedChars});
  }
  if (!files.ValidatePath(fileId)) return errors.FailAs(files);
  return CheckLevels(fileId, errors);
}

}  // namespace quillon
