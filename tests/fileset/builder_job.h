// A file set builder over a directory of the test's own, and the words its sentences come in.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "fileset/dicom_dir_processor.h"
#include "platform/testing.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"

namespace quillon::test {

namespace fs = std::filesystem;

inline std::string narrow(const Text& text) { return fs::path(text).string(); }
inline Text wide(const fs::path& path) { return path.u16string(); }

// Points the registry at a file of the test's own for the life of the object.
class RegistryFile {
 public:
  explicit RegistryFile(const fs::path& file) : file_(file) {
    ::setenv("QUILLON_REGISTRY", file.c_str(), 1);
  }
  ~RegistryFile() { ::unsetenv("QUILLON_REGISTRY"); }
  RegistryFile(const RegistryFile&) = delete;
  RegistryFile& operator=(const RegistryFile&) = delete;

  void setOtherContent(const std::string& directory) const {
    writeText(file_,
              "Windows Registry Editor Version 5.00\n\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation]\n"
              "\"OtherContentSourceDir\"=\"" +
                  directory + "\"\n");
  }
  // The key without the value.
  void setKeyOnly() const {
    writeText(
        file_,
        "Windows Registry Editor Version 5.00\n\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation]\n");
  }

 private:
  fs::path file_;
};

inline ObjectDescription object(int patient, int study, int series, int instance) {
  ObjectDescription d;
  d.patient = patient;
  d.study = study;
  d.series = series;
  d.instance = instance;
  return d;
}

// The fifth of March 2009, a Thursday.
inline SYSTEMTIME exampleDay() {
  SYSTEMTIME day{};
  day.wYear = 2009;
  day.wMonth = 3;
  day.wDay = 5;
  day.wDayOfWeek = 4;
  day.wHour = 10;
  return day;
}

struct BuilderJob {
  BuilderJob() : registry(dir / "registry.reg"), root(dir / "root"), in(dir / "in") {
    fs::create_directory(in);
    platform::testing::SubstituteClock(exampleDay);
    builder.SetDicomRootDirectory(wide(root));
    builder.SetUniquePatientId(u"DOE^JOHN 12345");
    builder.includeOtherContent = false;
  }

  fs::path make(const std::string& name, const ObjectDescription& description) const {
    fs::create_directories((in / name).parent_path());
    makeObjectFile(in / name, description);
    return in / name;
  }
  // Makes the object and adds it.
  fs::path add(const std::string& name, const ObjectDescription& description) {
    fs::path file = make(name, description);
    added = builder.AddFile(wide(file));
    return file;
  }
  bool create() { return builder.CreateDicomFileSet({}, {}); }
  [[nodiscard]] std::string sentence() const { return narrow(builder.ErrorMessage()); }
  // Objects in the patient list; -1 when there is none.
  int count() {
    std::uint32_t files = 0;
    const bool other = builder.includeOtherContent;
    builder.includeOtherContent = false;
    const bool counted = builder.GetTotalFileCount(files);
    builder.includeOtherContent = other;
    return counted ? static_cast<int>(files) : -1;
  }

  TempDir dir;
  RegistryFile registry;
  fs::path root;
  fs::path in;
  CDicomDirProcessor builder;
  bool added = false;
  platform::testing::Scope substitutes;
};

// Every file below a directory, relative to it, in order.
inline std::vector<std::string> filesBelow(const fs::path& directory) {
  std::vector<std::string> names;
  if (fs::is_directory(directory)) {
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
      if (!entry.is_directory()) names.push_back(fs::relative(entry.path(), directory).string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quillon::test
