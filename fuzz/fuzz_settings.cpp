// What a host or the registry sets: the registry's file and one text for all settings, each up to a
// zero byte. A text that is refused changes nothing; what is taken keeps the rules of its kind.
#include "dicom/dir_rec.h"
#include "file_id_rules.h"
#include "fileset/dicom_dir_processor.h"
#include "input_parts.h"
#include "other_content.h"
#include "path_join.h"
#include "quiet.h"
#include "scratch_directory.h"
#include "win32/utf8.h"

namespace quillon {
namespace {

using fuzz::require;

void setAll(CDicomDirProcessor& builder, const Text& text) {
  const struct {
    bool (CDicomDirProcessor::*set)(TextView);
    const Text& (CDicomDirProcessor::*get)() const;
  } kSettings[] = {
      {&CDicomDirProcessor::SetVolumeName, &CDicomDirProcessor::VolumeName},
      {&CDicomDirProcessor::SetDicomRootDirectory, &CDicomDirProcessor::DicomRootDirectory},
      {&CDicomDirProcessor::SetDicomObjectDirectory, &CDicomDirProcessor::DicomObjectDirectory},
      {&CDicomDirProcessor::SetOtherContentDirectory, &CDicomDirProcessor::OtherContentDirectory},
      {&CDicomDirProcessor::SetDirectCopyDirectory, &CDicomDirProcessor::DirectCopyDirectory},
      {&CDicomDirProcessor::SetUniquePatientId, &CDicomDirProcessor::UniquePatientId},
  };
  for (const auto& setting : kSettings) {
    const Text before = (builder.*setting.get)();
    const bool isTaken = (builder.*setting.set)(text);
    require((builder.*setting.get)() == (isTaken ? text : before));
  }
}

void checkFileId(const Text& text) {
  CFileUtil files;
  CBaseItem errors;
  if (!CheckFileId(text, files, errors)) {
    require(!errors.ErrorMessage().empty());
    return;
  }
  require(!text.empty() && text.size() <= 103);
  std::size_t levels = 1;
  std::size_t chars = 0;
  for (const OLECHAR unit : text) {
    const bool isSeparator = unit == '\\' || unit == '/';
    levels += isSeparator ? 1 : 0;
    chars = isSeparator ? 0 : chars + 1;
    require(isSeparator || (unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9') ||
            unit == '_');
    require(chars <= 12);
  }
  require(levels <= 8);
}

void checkPaths(const Text& text) {
  CFileUtil files;
  CBaseItem errors;
  Text joined(OLESTR("C:\\root"));
  const Text before = joined;
  require(JoinBelow(joined, text, errors) ? joined.size() <= kMaxPathChars
                                          : joined.size() <= before.size() + 1);
  const Text parent = ParentDirectory(text);
  require(parent.empty() || (parent.size() < text.size() && text.starts_with(parent)));
  const Text comparable = ComparablePath(text);
  require(ComparablePath(comparable) == comparable && IsAtOrBelow(comparable, comparable));
  CPathInfo parts;
  if (files.ValidatePath(text)) require(!text.empty() && text.size() <= kMaxPathChars);
  static_cast<void>(files.ValidateName(text));
  static_cast<void>(files.Split(text, parts));
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static const fuzz::ScratchDirectory scratch;
  ::setenv("QUILLON_REGISTRY", (scratch / "registry.reg").c_str(), 1);
  fuzz::InputParts parts(data, size);
  fuzz::writeFile(scratch / "registry.reg", parts.text());
  const std::u16string text = platform::wideFromNative(parts.rest());

  CDicomDirProcessor builder;
  CFileUtil files;
  OtherContent content(files, /*acceptsEmptyFiles=*/true);
  Text directory;
  bool isMissing = false;
  if (content.ReadSourceDirectory(directory, isMissing)) {
    require(!isMissing && directory.find(OLECHAR{0}) == Text::npos);
    setAll(builder, directory);
    checkPaths(directory);
  } else {
    require(directory.empty() && !content.ErrorMessage().empty());
  }
  setAll(builder, text);
  checkFileId(text);
  checkPaths(text);
  return 0;
}
