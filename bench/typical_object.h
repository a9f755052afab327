// The object that all benchmarks of one file read.
#pragma once

#include <cstdint>
#include <string>

#include "support/object_maker.h"
#include "support/temp_dir.h"

namespace quillon::bench {

// A CT object of 137 KB, most of it pixel data, with the given number of header elements beyond
// the about 75 of its modules.
inline test::ObjectDescription typicalObject(std::int64_t extraElements) {
  test::ObjectDescription object;
  object.rows = object.columns = 256;
  object.extraElements = static_cast<int>(extraElements);
  return object;
}

// That object as a file, for the life of this.
class ObjectFile {
 public:
  explicit ObjectFile(std::int64_t extraElements) : path_((directory_ / "object").string()) {
    test::makeObjectFile(path_, typicalObject(extraElements));
  }
  [[nodiscard]] const char* path() const { return path_.c_str(); }

 private:
  test::TempDir directory_;
  std::string path_;
};

}  // namespace quillon::bench
