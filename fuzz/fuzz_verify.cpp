// A DICOMDIR of a medium that holds a few objects: verified.
#include "input_parts.h"
#include "profiles/profile.h"
#include "quiet.h"
#include "support/memory_medium.h"
#include "support/object_maker.h"
#include "verify/verify_medium.h"

namespace {

// Under the names that the DICOMDIRs of the corpus have.
quillon::test::MemoryMedium makeMedium() {
  using namespace quillon;
  test::MemoryMedium medium;
  int instance = 0;
  for (const OLECHAR* path : {OLESTR("DICOMOBJ\\QLN00001"), OLESTR("DICOMOBJ\\QLN00002"),
                              OLESTR("DICOMOBJ\\P0000001\\S0000001\\E0000001\\QLN00001")}) {
    test::ObjectDescription description;
    description.instance = ++instance;
    medium.files[path] = test::makeObject(description);
  }
  medium.others[OLESTR("DICOMOBJ\\QLN00003")] = MediumEntry::Kind::Link;
  return medium;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static test::MemoryMedium medium = makeMedium();
  medium.files[OLESTR("DICOMDIR")].assign(data, data + size);

  VerifyReport report;
  CBaseItem errors;
  VerifyOptions options;
  options.profile = FindProfile(size % 2 == 0 ? "STD-XA1K-CD" : "STD-GEN-DVD-JPEG");
  fuzz::require(VerifyMedium(medium, options, report, errors));
  std::uint64_t counted = 0;
  for (const std::uint64_t count : report.counts) counted += count;
  fuzz::require(counted == report.findings.size() + report.leftOut);
  // A record that is looked at has eight bytes of its own.
  fuzz::require(report.records <= size / 8);
  for (const Finding& finding : report.findings) {
    fuzz::require(!finding.code.empty() && finding.message.size() < 2000);
  }
  return 0;
}
