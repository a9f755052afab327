// The loops that every object goes through: reading a header and its fields from a file, parsing
// and encoding a list of elements. Whole jobs are timed by scripts/bench.sh.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/file_meta_info.h"
#include "dicom/parse_fields.h"
#include "dicom/read_file.h"
#include "typical_object.h"

namespace quillon {
namespace {

using bench::ObjectFile;

bool readHeader(const char* path, DcElemList& elements) {
  DcFileMetaInfo metaInfo;
  std::uint64_t pixelValueOffset = 0;
  std::uint32_t pixelValueLength = 0;
  return dirReadFile(path, metaInfo, elements, &pixelValueOffset, &pixelValueLength) == kDcOk;
}

void countElements(benchmark::State& state, std::size_t perIteration) {
  state.counters["elements"] = benchmark::Counter(
      static_cast<double>(perIteration) * static_cast<double>(state.iterations()),
      benchmark::Counter::kIsRate);
}

void BM_ReadHeaderOfFile(benchmark::State& state) {
  const ObjectFile file(state.range(0));
  std::size_t elementCount = 0;
  for (auto _ : state) {
    DcElemList elements;
    if (!readHeader(file.path(), elements)) return state.SkipWithError("cannot read the file");
    elementCount = elements.size();
  }
  countElements(state, elementCount);
}
BENCHMARK(BM_ReadHeaderOfFile)->Arg(0)->Arg(175)->Arg(1750);

void BM_ReadFieldsOfFile(benchmark::State& state) {
  const ObjectFile file(state.range(0));
  constexpr DcTag kWanted[] = {0x00080018, 0x00100010, 0x00100020, 0x0020000D, 0x0020000E};
  for (auto _ : state) {
    std::vector<DcFieldRequest> requests(std::size(kWanted) + 1);
    for (std::size_t i = 0; i < std::size(kWanted); ++i) requests[i].tag = kWanted[i];
    if (libParseFields(file.path(), requests.data(), false) != kDcOk ||
        requests[std::size(kWanted) - 1].status != DcFieldStatus::Found) {
      return state.SkipWithError("cannot read the fields");
    }
  }
}
BENCHMARK(BM_ReadFieldsOfFile)->Arg(0)->Arg(175);

void BM_ReadMetaInfoOfFile(benchmark::State& state) {
  const ObjectFile file(0);
  for (auto _ : state) {
    DcFileMetaInfo metaInfo;
    if (dirReadFileMetaInfo(file.path(), metaInfo, nullptr) != kDcOk) {
      return state.SkipWithError("cannot read the meta information");
    }
    benchmark::DoNotOptimize(metaInfo);
  }
}
BENCHMARK(BM_ReadMetaInfoOfFile);

// The header of a typical object as encoded bytes.
class EncodedHeader {
 public:
  EncodedHeader(std::int64_t extraElements, DcUid syntax) {
    const ObjectFile file(extraElements);
    isMade_ = readHeader(file.path(), elements_);
    bytes_.resize(static_cast<std::size_t>(elements_.encodedLengthEstimate()));
    std::uint32_t length = 0;
    isMade_ = isMade_ && elements_.frame(bytes_.data(), length, syntax) == kDcOk;
    bytes_.resize(length);
  }
  [[nodiscard]] bool isMade() const { return isMade_; }
  [[nodiscard]] DcElemList& elements() { return elements_; }
  [[nodiscard]] std::vector<std::uint8_t>& bytes() { return bytes_; }

 private:
  DcElemList elements_;
  std::vector<std::uint8_t> bytes_;
  bool isMade_ = false;
};

void BM_ParseElementList(benchmark::State& state, DcUid syntax) {
  EncodedHeader header(state.range(0), syntax);
  if (!header.isMade()) return state.SkipWithError("cannot make the header");
  for (auto _ : state) {
    DcElemList parsed;
    const DcCode code = parsed.parse(header.bytes().data(),
                                     static_cast<std::uint32_t>(header.bytes().size()), syntax);
    if (code != kDcOk) return state.SkipWithError("cannot parse the header");
  }
  countElements(state, header.elements().size());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(header.bytes().size()));
}
BENCHMARK_CAPTURE(BM_ParseElementList, ExplicitLittle, DcUid::ExplicitLittleEndian)
    ->Arg(0)
    ->Arg(175)
    ->Arg(1750);
BENCHMARK_CAPTURE(BM_ParseElementList, ImplicitLittle, DcUid::ImplicitLittleEndian)->Arg(175);
BENCHMARK_CAPTURE(BM_ParseElementList, ExplicitBig, DcUid::ExplicitBigEndian)->Arg(175);

void BM_EncodeElementList(benchmark::State& state, DcUid syntax) {
  EncodedHeader header(state.range(0), syntax);
  if (!header.isMade()) return state.SkipWithError("cannot make the header");
  for (auto _ : state) {
    std::uint32_t length = 0;
    if (header.elements().frame(header.bytes().data(), length, syntax) != kDcOk) {
      return state.SkipWithError("cannot encode the header");
    }
    benchmark::ClobberMemory();
  }
  countElements(state, header.elements().size());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(header.bytes().size()));
}
BENCHMARK_CAPTURE(BM_EncodeElementList, ExplicitLittle, DcUid::ExplicitLittleEndian)
    ->Arg(0)
    ->Arg(175)
    ->Arg(1750);
BENCHMARK_CAPTURE(BM_EncodeElementList, ImplicitLittle, DcUid::ImplicitLittleEndian)->Arg(175);

}  // namespace
}  // namespace quillon
