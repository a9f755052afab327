// The same headers read by the toolkit and by the readers of dcmtk and gdcm, each up to the pixel
// data and without it: what indexing a file costs here and elsewhere. One run, one machine: only
// the ratios mean anything.
#include <benchmark/benchmark.h>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctk.h>
#include <gdcmReader.h>

#include <set>

#include "dicom/elem_list.h"
#include "dicom/file_meta_info.h"
#include "dicom/read_file.h"
#include "typical_object.h"

namespace quillon {
namespace {

using bench::ObjectFile;

void BM_Header_Quillon(benchmark::State& state) {
  const ObjectFile file(state.range(0));
  for (auto _ : state) {
    DcElemList elements;
    DcFileMetaInfo metaInfo;
    std::uint64_t pixelValueOffset = 0;
    std::uint32_t pixelValueLength = 0;
    if (dirReadFile(file.path(), metaInfo, elements, &pixelValueOffset, &pixelValueLength) !=
        kDcOk) {
      return state.SkipWithError("cannot read the file");
    }
  }
}
BENCHMARK(BM_Header_Quillon)->Arg(0)->Arg(175)->Arg(1750);

void BM_Header_Dcmtk(benchmark::State& state) {
  const ObjectFile file(state.range(0));
  for (auto _ : state) {
    DcmFileFormat object;
    if (object
            .loadFileUntilTag(file.path(), EXS_Unknown, EGL_noChange, DCM_MaxReadLength,
                              ERM_autoDetect, DCM_PixelData)
            .bad()) {
      return state.SkipWithError("cannot read the file");
    }
  }
}
BENCHMARK(BM_Header_Dcmtk)->Arg(0)->Arg(175)->Arg(1750);

// As dcmdump +L does: all values, those of the pixel data too.
void BM_WholeFile_Dcmtk(benchmark::State& state) {
  const ObjectFile file(state.range(0));
  for (auto _ : state) {
    DcmFileFormat object;
    if (object.loadFile(file.path()).bad() || object.loadAllDataIntoMemory().bad()) {
      return state.SkipWithError("cannot read the file");
    }
  }
}
BENCHMARK(BM_WholeFile_Dcmtk)->Arg(175);

void BM_Header_Gdcm(benchmark::State& state) {
  const ObjectFile file(state.range(0));
  for (auto _ : state) {
    gdcm::Reader reader;
    reader.SetFileName(file.path());
    if (!reader.ReadUpToTag(gdcm::Tag(0x7FE0, 0x0010), {})) {
      return state.SkipWithError("cannot read the file");
    }
  }
}
BENCHMARK(BM_Header_Gdcm)->Arg(0)->Arg(175)->Arg(1750);

}  // namespace
}  // namespace quillon
