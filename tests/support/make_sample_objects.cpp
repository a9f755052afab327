// make_sample_objects DIR
//     a small tree with every kind of object
// make_sample_objects --bench COUNT [--series-size N] [--one-series] DIR
//     COUNT CT objects of about 137 KB with about 250 header elements each
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/object_maker.h"

namespace {

namespace fs = std::filesystem;
using quillon::test::Bytes;
using quillon::test::ObjectDescription;

struct BenchOptions {
  int count = 0;
  int seriesSize = 50;
  bool isOneSeries = false;
  fs::path directory;
};

// One object is encoded; the others differ from it in a few texts of fixed width, which are patched
// in the bytes.
class BenchObjects {
 public:
  BenchObjects() {
    ObjectDescription d;
    d.patientName = name(0);
    d.patientId = id(0);
    d.studyUid = studyUid(0, 0);
    d.seriesUid = seriesUid(0, 0, 0);
    d.instanceUid = instanceUid(0);
    d.instance = kFirst;
    d.rows = d.columns = 256;
    d.extraElements = 175;
    bytes_ = quillon::test::makeObject(d);
    names_ = placesOf(name(0));
    ids_ = placesOf(id(0));
    series_ = placesOf(seriesUid(0, 0, 0));
    instances_ = placesOf(instanceUid(0));
    // The study's UID also begins the series' and the frame of reference's.
    studies_ = placesOf(studyUid(0, 0));
    // With the header of Instance Number (0020,0013) before it: the digits occur elsewhere too.
    constexpr std::string_view kNumberHeader("\x20\x00\x13\x00IS\x08\x00", 8);
    numbers_ = placesOf(std::string(kNumberHeader) + wide(0));
    for (std::size_t& at : numbers_) at += kNumberHeader.size();
  }

  const Bytes& make(int patient, int study, int series, int object) {
    patch(names_, name(patient));
    patch(ids_, id(patient));
    patch(studies_, studyUid(patient, study));
    patch(series_, seriesUid(patient, study, series));
    patch(instances_, instanceUid(object));
    patch(numbers_, wide(object));
    return bytes_;
  }

 private:
  // All numbers from here on have the same width.
  static constexpr int kFirst = 1000000;
  static std::string wide(int n) { return std::to_string(kFirst + n); }
  static std::string name(int patient) { return "BENCH^P" + wide(patient); }
  static std::string id(int patient) { return "BID" + wide(patient); }
  static std::string studyUid(int patient, int study) {
    return "2.25.171263510." + wide(patient) + "." + wide(study);
  }
  static std::string seriesUid(int patient, int study, int series) {
    return studyUid(patient, study) + "." + wide(series);
  }
  static std::string instanceUid(int object) { return "2.25.171263511." + wide(object); }

  std::vector<std::size_t> placesOf(std::string_view text) const {
    std::vector<std::size_t> places;
    for (auto at = bytes_.begin();;) {
      at = std::search(at, bytes_.end(), text.begin(), text.end());
      if (at == bytes_.end()) return places;
      places.push_back(static_cast<std::size_t>(at - bytes_.begin()));
      ++at;
    }
  }
  void patch(const std::vector<std::size_t>& places, std::string_view text) {
    for (std::size_t at : places) std::memcpy(bytes_.data() + at, text.data(), text.size());
  }

  Bytes bytes_;
  std::vector<std::size_t> names_, ids_, studies_, series_, instances_, numbers_;
};

void writeAll(const fs::path& file, const Bytes& bytes) {
  const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (fd < 0) throw std::runtime_error("cannot create " + file.string());
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (written <= 0) {
      ::close(fd);
      throw std::runtime_error("cannot write " + file.string());
    }
    done += static_cast<std::size_t>(written);
  }
  ::close(fd);
}

std::string levelName(const char* format, int n) {
  char name[16];
  std::snprintf(name, sizeof name, format, n);
  return name;
}

void makeBenchTree(const BenchOptions& options) {
  constexpr int kSeriesPerStudy = 2;
  constexpr int kStudiesPerPatient = 2;
  BenchObjects objects;
  fs::path directory;
  for (int i = 0; i < options.count; ++i) {
    const int series = options.isOneSeries ? 0 : i / options.seriesSize;
    const int study = series / kSeriesPerStudy;
    const int patient = study / kStudiesPerPatient;
    const bool startsSeries = options.isOneSeries ? i == 0 : i % options.seriesSize == 0;
    if (startsSeries) {
      directory = options.directory / levelName("P%05d", patient + 1) /
                  levelName("ST%05d", study + 1) / levelName("SE%05d", series + 1);
      fs::create_directories(directory);
    }
    writeAll(directory / levelName("IM%06d", i + 1), objects.make(patient, study, series, i));
  }
}

[[noreturn]] void wrongUsage() {
  std::fprintf(stderr,
               "usage: make_sample_objects [--bench COUNT [--series-size N] [--one-series]] DIR\n");
  std::exit(2);
}

int positiveNumber(const char* text) {
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  if (*text == '\0' || *end != '\0' || value < 1 || value > 999999) wrongUsage();
  return static_cast<int>(value);
}

BenchOptions parse(int argc, char** argv) {
  BenchOptions options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--bench" && i + 1 < argc) {
      options.count = positiveNumber(argv[++i]);
    } else if (argument == "--series-size" && i + 1 < argc) {
      options.seriesSize = positiveNumber(argv[++i]);
    } else if (argument == "--one-series") {
      options.isOneSeries = true;
    } else if (argument.empty() || argument.front() == '-' || !options.directory.empty()) {
      wrongUsage();
    } else {
      options.directory = argument;
    }
  }
  if (options.directory.empty()) wrongUsage();
  return options;
}

}  // namespace

int main(int argc, char** argv) {
  const BenchOptions options = parse(argc, argv);
  try {
    if (options.count > 0) {
      makeBenchTree(options);
    } else {
      for (const fs::path& file : quillon::test::makeSampleTree(options.directory)) {
        std::printf("%s\n", file.c_str());
      }
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_sample_objects: %s\n", error.what());
    return 1;
  }
  return 0;
}
