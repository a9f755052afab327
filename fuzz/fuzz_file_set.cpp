// Hostile files on their way into a file set: options, the character set that stands for the files'
// own, the patient's key, each up to a zero byte, and up to three files, each behind its length.
// A creation that fails leaves every file where it was or in the root; after a success every file
// lies in the set with its bytes, the directory refers to it and can be read, and no mark is left.
#include "dicom/dir_dicom_dir.h"
#include "fileset/dicom_dir_processor.h"
#include "input_parts.h"
#include "platform/services.h"
#include "quiet.h"
#include "scratch_directory.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using fuzz::require;

constexpr std::size_t kMostFiles = 3;

Text wide(const fs::path& path) { return WidenText(path.native(), FileSystemCodePage()); }

struct Source {
  fs::path path;
  std::string bytes;
};

std::vector<std::string> bytesBelow(const fs::path& directory) {
  std::vector<std::string> all;
  if (!fs::exists(directory)) return all;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file()) all.push_back(fuzz::readFile(entry.path()));
  }
  return all;
}

void requireNothingLost(const std::vector<Source>& sources, const fs::path& root) {
  const std::vector<std::string> moved = bytesBelow(root);
  for (const Source& source : sources) {
    require(fs::exists(source.path) ? fuzz::readFile(source.path) == source.bytes
                                    : std::ranges::find(moved, source.bytes) != moved.end());
  }
}

std::size_t filesOf(const DcDirRec& record) {
  std::size_t count = record.fileIdParts().empty() ? 0 : 1;
  for (std::size_t i = 0; i < record.lowerCount(); ++i) count += filesOf(*record.lower(i));
  return count;
}

void requireWhole(const PlannedFileSet& planned, const fs::path& root) {
  DcDirDicomDir dir(root.c_str());
  require(dir.initialCode() == kDcOk && filesOf(dir) == planned.objects.size());
  for (const PlannedObject& object : planned.objects) {
    DcDirRec* record = nullptr;
    require(dir.getRefFileObj(NarrowText(object.FileId(), CP_ACP).c_str(), &record) == kDcOk);
    std::string path = NarrowText(object.FileId(), FileSystemCodePage());
    std::ranges::replace(path, '\\', '/');
    require(fs::file_size(root / path) == object.sizeBytes);
  }
  require(!fs::exists(root / "UNFINISHED.TXT") && !fs::exists(root / "DICOMDIR.NEW"));
  // Two bytes a unit, with the line feed at its end.
  require(fs::file_size(root / "LABEL.TXT") == 2 * (planned.label.size() + 1));
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static const fuzz::ScratchDirectory scratch;
  ::setenv("QUILLON_REGISTRY", (scratch / "registry.reg").c_str(), 1);
  scratch.empty();
  const fs::path root = scratch / "root";

  fuzz::InputParts parts(data, size);
  const unsigned choice = parts.byte();
  CDicomDirProcessor builder;
  builder.currentPractice = (choice & 1U) != 0;
  builder.useHierarchyForDicomObjects = (choice & 2U) != 0;
  builder.inventsMissingKeys = (choice & 4U) != 0;
  builder.isForOnePatient = (choice & 8U) != 0;
  if ((choice & 128U) != 0) {
    for (const Profile& profile : AllProfiles()) builder.profiles.push_back(&profile);
  }
  builder.includeOtherContent = false;
  builder.characterSet = parts.text();
  const Text key = WidenText(parts.text(), CP_UTF8);
  FitnessRules rules;
  rules.patientKey = [&key](TextView name, TextView id) {
    return key.empty() ? Text(name) + OLESTR('=') + Text(id) : key;
  };
  rules.refusesCutFiles = (choice & 16U) != 0;
  rules.refusesMissingKeys = (choice & 32U) != 0;
  const bool isHost = (choice & 64U) != 0;
  static_cast<void>(builder.SetUniquePatientId(key.empty() ? OLESTR("K") : key));

  std::vector<Source> sources;
  while (!parts.isEmpty() && sources.size() < kMostFiles) {
    const std::size_t length = parts.byte() | static_cast<std::size_t>(parts.byte()) << 8U;
    const std::string bytes(parts.bytes(length));
    const fs::path path = scratch / ("f" + std::to_string(sources.size()));
    fuzz::writeFile(path, bytes);
    sources.push_back({path, bytes});
    AddedFile told;
    if (!(isHost ? builder.AddFile(wide(path)) : builder.AddFitFile(wide(path), rules, told))) {
      require(!isHost || !builder.ErrorMessage().empty());
    }
  }
  require(builder.SetDicomRootDirectory(wide(root)));
  if (!builder.PlanFileSet({}, {})) {
    require(!builder.ErrorMessage().empty());
    for (const Source& source : sources) require(fuzz::readFile(source.path) == source.bytes);
    return 0;
  }
  const PlannedFileSet planned = builder.Planned();
  const bool isCreated = builder.CreatePlannedFileSet();
  require(isCreated || !builder.ErrorMessage().empty());
  requireNothingLost(sources, root);
  if (isCreated) requireWhole(planned, root);
  return 0;
}
