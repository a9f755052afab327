// What a file set takes on a disc, told before there is an image: never more than the image takes,
// so that nothing that fits is refused, and near it, so that most of what does not fit is.
#include <gtest/gtest.h>

#include <functional>

#include "builder_job.h"
#include "foundation/com_values.h"
#include "platform/com.h"
#include "platform/imapi2.h"

namespace quillon::test {
namespace {

struct ComScope {
  ComScope() { EXPECT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
  ~ComScope() { CoUninitialize(); }
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;
};

void addTree(DiscRoom& room, const fs::path& directory) {
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_directory()) {
      room.AddDirectory();
    } else {
      room.AddFile(entry.file_size());
    }
  }
}

// Of an image of all that is in the directory, made by the service.
std::uint64_t imageSectors(const fs::path& directory, LONG fileSystems) {
  const ComScope com;
  ComPtr<IFileSystemImage> image;
  EXPECT_EQ(CoCreateInstance(CLSID_MsftFileSystemImage, nullptr, CLSCTX_ALL, IID_IFileSystemImage,
                             image.PutVoid()),
            S_OK);
  EXPECT_EQ(image->put_FileSystemsToCreate(static_cast<FsiFileSystems>(fileSystems)), S_OK);
  ComPtr<IFsiDirectoryItem> root;
  EXPECT_EQ(image->get_Root(root.Put()), S_OK);
  const ScopedBstr path(WideOf(directory));
  EXPECT_EQ(root->AddTree(path.Get(), VARIANT_FALSE), S_OK);
  ComPtr<IFileSystemImageResult> result;
  EXPECT_EQ(image->CreateResultImage(result.Put()), S_OK);
  ComPtr<IStream> stream;
  EXPECT_EQ(result->get_ImageStream(stream.Put()), S_OK);
  STATSTG stat{};
  EXPECT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
  return stat.cbSize.QuadPart / 2048;
}

void fill(const fs::path& directory, int files, std::uint64_t sizeBytes) {
  fs::create_directories(directory);
  for (int i = 0; i < files; ++i) {
    const fs::path file = directory / ("QLN" + std::to_string(10000 + i));
    writeText(file, "");
    fs::resize_file(file, sizeBytes);
  }
}

TEST(DiscRoom, IsNeverMoreThanAnImageTakesAndNearIt) {
  struct Case {
    const char* what;
    std::function<void(const fs::path&)> fill;
  };
  const Case cases[] = {
      {"nothing", [](const fs::path&) {}},
      {"a file of no bytes", [](const fs::path& at) { fill(at, 1, 0); }},
      {"a last sector that is full", [](const fs::path& at) { fill(at, 3, 4096); }},
      {"small files that need more for their entries than for their bytes",
       [](const fs::path& at) { fill(at / "DICOMOBJ", 3000, 700); }},
      {"directories in directories",
       [](const fs::path& at) {
         for (int i = 0; i < 40; ++i) fill(at / ("P" + std::to_string(i)) / "S1/E1", 2, 5000);
       }},
      {"more than one extent", [](const fs::path& at) { fill(at, 1, std::uint64_t{5} << 30); }},
      {"long names",
       [](const fs::path& at) {
         for (int i = 0; i < 300; ++i) {
           writeText(at / (std::to_string(i) + std::string(60, 'n') + ".html"), "x");
         }
       }},
  };
  for (const Case& c : cases) {
    const TempDir dir;
    c.fill(dir.path());
    DiscRoom room;
    addTree(room, dir.path());
    for (const bool hasUdf : {true, false}) {
      SCOPED_TRACE(std::string(c.what) + (hasUdf ? " with UDF" : ""));
      const LONG fileSystems =
          FsiFileSystemISO9660 | FsiFileSystemJoliet | (hasUdf ? FsiFileSystemUDF : 0);
      const std::uint64_t real = imageSectors(dir.path(), fileSystems);
      EXPECT_LE(room.LeastSectors(hasUdf), real);
      EXPECT_GE(room.MostSectors(), real);
      EXPECT_GE(room.LeastSectors(hasUdf) + real / 50 + 100, real);
    }
  }
}

TEST(DiscRoom, OfAPlanIsThatOfTheFileSetMadeOfIt) {
  for (const bool hasHierarchy : {false, true}) {
    SCOPED_TRACE(hasHierarchy);
    BuilderJob job;
    job.builder.useHierarchyForDicomObjects = hasHierarchy;
    fill(job.dir / "viewer", 5, 3000);
    fill(job.dir / "viewer/data/more", 5, 100);
    job.registry.setOtherContent(job.dir / "viewer");
    job.builder.includeOtherContent = true;
    for (int i = 1; i <= 30; ++i) job.add(std::to_string(i), object(1, 1 + i % 3, i, i));
    ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
    const DiscRoom planned = job.builder.Planned().room;
    ASSERT_TRUE(job.builder.CreatePlannedFileSet()) << job.sentence();
    DiscRoom made;
    addTree(made, job.root);
    EXPECT_EQ(planned.Files(), made.Files());
    EXPECT_LE(planned.Bytes(), made.Bytes());
    const std::uint64_t real =
        imageSectors(job.root, FsiFileSystemISO9660 | FsiFileSystemJoliet | FsiFileSystemUDF);
    EXPECT_LE(planned.LeastSectors(true), real);
    EXPECT_GE(planned.MostSectors(), real);
    EXPECT_GE(planned.LeastSectors(true) + 250, real);
  }
}

TEST(Preview, PlansAsACreationDoesAndChangesNothing) {
  BuilderJob job;
  EXPECT_TRUE(job.builder.SetDicomRootDirectory(WideOf(job.dir / "new" / "root")));
  job.add("a", object(1, 1, 1, 1));
  job.add("b", object(1, 1, 1, 2));
  const std::vector<std::string> before = filesBelow(job.dir.path());
  ASSERT_TRUE(job.builder.PreviewFileSet({}, {})) << job.sentence();
  const Text label = job.builder.Planned().label;
  EXPECT_EQ(filesBelow(job.dir.path()), before);
  EXPECT_FALSE(fs::exists(job.dir / "new"));
  ASSERT_TRUE(job.builder.CreatePlannedFileSet()) << job.sentence();
  EXPECT_EQ(job.builder.IheLabel(), label);
}

TEST(Preview, TakesNoHoldOnTheRoot) {
  BuilderJob job;
  job.add("a", object(1, 1, 1, 1));
  ASSERT_TRUE(job.create()) << job.sentence();
  CDicomDirProcessor other;
  EXPECT_TRUE(other.SetDicomRootDirectory(WideOf(job.root)));
  EXPECT_TRUE(other.SetUniquePatientId(OLESTR("ROE^JANE 2")));
  other.includeOtherContent = false;
  ASSERT_TRUE(other.AddFile(WideOf(job.make("b", object(2, 1, 1, 1)))));
  EXPECT_TRUE(other.PreviewFileSet({}, {})) << Plain(other.ErrorMessage());
  EXPECT_FALSE(other.CreatePlannedFileSet()) << "what is created of a look is planned anew";
  EXPECT_TRUE(fs::exists(job.in / "b"));
  EXPECT_FALSE(other.PlanFileSet({}, {}));
}

}  // namespace
}  // namespace quillon::test
