// What a job leaves in its root: a mark of an unfinished creation, which anybody may have changed,
// one that is written with hostile names, and the label of a patient with hostile texts. The input:
// what is there, the mark, a source's name, each up to a zero byte, and a data set.
#include "fileset/model/patient_list.h"
#include "input_parts.h"
#include "medium_label.h"
#include "quiet.h"
#include "scratch_directory.h"
#include "unfinished_mark.h"
#include "win32/utf8.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using fuzz::require;

void readMark(const fs::path& root, const Text& wideRoot, unsigned choice, std::string_view mark) {
  CFileUtil files;
  fuzz::writeFile(root / "UNFINISHED.TXT", mark);
  if ((choice & 1U) != 0) fuzz::writeFile(root / "DICOMDIR", "x");
  std::size_t count = 0;
  const RootState state = ReadRootState(wideRoot, files, count);
  require(count <= static_cast<std::size_t>(std::ranges::count(mark, '\n')) + 1);
  require(state != RootState::Free);
  require(count == 0 || state != RootState::Finished);
}

// However the sources are called, the mark names each object once.
void writeMark(const fs::path& root, const Text& wideRoot, unsigned choice, const Text& source) {
  CFileUtil files;
  std::vector<PlannedObject> objects(3);
  std::size_t present = 0;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const std::string name = "QLN0000" + std::to_string(i + 1);
    objects[i].number = static_cast<std::uint32_t>(i + 1);
    objects[i].source.Set(source);
    if ((choice & (2U << i)) == 0) continue;
    fuzz::writeFile(root / name, "x");
    ++present;
  }
  const bool sourcesStay = (choice & 16U) != 0;
  require(WriteUnfinishedMark(wideRoot, objects, sourcesStay, files));
  std::size_t count = 0;
  const RootState state = ReadRootState(wideRoot, files, count);
  require(count == present);
  if (present != 0) {
    require(state == (sourcesStay ? RootState::UnfinishedCopies : RootState::Unfinished));
  }
  require(RemoveUnfinishedMark(wideRoot, files) && !fs::exists(root / "UNFINISHED.TXT"));
}

void writeLabel(const fs::path& root, const Text& wideRoot, const DcElemList& dataSet) {
  CPatientList patients;
  CPatient* const patient = patients.Add(&dataSet, OLESTR("K"));
  if (patient == nullptr) return;
  static_cast<void>(patient->Studies().Add(&dataSet));
  MediumLabel strict(/*leavesOutBadDates=*/false);
  MediumLabel label(/*leavesOutBadDates=*/true);
  const bool isStrict = strict.Compose(patients);
  if (!label.Compose(patients)) {
    require(!label.ErrorMessage().empty() && !isStrict);
    return;
  }
  const Text text = label.GetText();
  require(isStrict ? strict.GetText() == text : !strict.ErrorMessage().empty());
  require(isStrict == label.LeftOut().empty());
  constexpr std::size_t kOwnText = 300;
  require(text.size() <= patient->Name().size() + patient->PatientId().size() + kOwnText);
  CFileUtil files;
  CBaseItem errors;
  require(WriteLabelFile(text, wideRoot, files, errors));
  const std::string bytes = fuzz::readFile(root / "LABEL.TXT");
  require(bytes.size() == 2 * (text.size() + 1) && bytes.ends_with(std::string_view("\n\0", 2)));
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static const fuzz::ScratchDirectory scratch;
  static const Text wideRoot = platform::wideFromNative(scratch.path().native());
  static_cast<void>(dcSetValueChecking(false));
  scratch.empty();
  fuzz::InputParts parts(data, size);
  const unsigned choice = parts.byte();
  readMark(scratch.path(), wideRoot, choice, parts.text());
  writeMark(scratch.path(), wideRoot, choice, platform::wideFromNative(parts.text()));
  const std::vector<std::uint8_t> bytes(parts.rest().begin(), parts.rest().end());
  DcElemList list;
  static_cast<void>(list.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                               DcUid::ExplicitLittleEndian));
  writeLabel(scratch.path(), wideRoot, list);
  return 0;
}
