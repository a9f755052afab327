// What makes a file set readable without a DICOM viewer: README.TXT and INDEX.HTM in its root, and
// a page for each study and for the header of each series' first object in a directory of their
// own. They are made with the plan, so that whatever is wrong with them fails before anything is
// changed; each is kept until it is written, but for headers beyond a bound, which are made again
// of the objects in the set.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "fileset/disc_room.h"
#include "fileset/planned_file_set.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"
#include "institution.h"
#include "other_contents.h"
#include "pages/medium_model.h"
#include "pages/page_stylesheets.h"

namespace quillon {

struct FileSetOptions;
struct FileSetPlaces;

class PortableData : public CBaseItem {
 public:
  // All outlive this object. institution: who the pages say has made the medium.
  PortableData(CFileUtil& files, const FileSetOptions& options, const FileSetPlaces& places,
               const Institution& institution);

  // root: with a separator at its end; objects: the directory of the objects below it; planned: its
  // objects are those of patients, in the same order, and behind them those of none. False, with a
  // sentence, when a stylesheet makes no pages or something else has one of the names.
  [[nodiscard]] bool Plan(const CPatientList& patients, const Text& root, const Text& objects,
                          const PlannedFileSet& planned, const OtherContents& content);
  // After that.
  [[nodiscard]] bool HasPages() const { return !pages_.empty(); }
  [[nodiscard]] std::uint64_t BytesOnDisk() const { return bytesOnDisk_; }
  [[nodiscard]] const DiscRoom& Room() const { return room_; }
  // What the user should know: sentences.
  [[nodiscard]] const std::vector<Text>& Remarks() const { return remarks_; }
  // Of the pages, absolute.
  [[nodiscard]] const Text& Directory() const { return directory_; }

  // When the objects are in the set and the directory is there. What was written is on the disk
  // when it succeeds. False, with a sentence.
  [[nodiscard]] bool Write();

 private:
  struct Page {
    Text path;           // below the root
    std::string bytes;   // empty: a header that is made again
    std::size_t object;  // of a header: its number in the file set, from 0
    Text above;          // of a header: the page that leads to it
  };

  [[nodiscard]] bool CheckNames(const Text& objects, const OtherContents& content);
  // The other content keeps what it brings for the root, and brings nothing for the pages.
  [[nodiscard]] bool CheckContent(const OtherContents& content);
  [[nodiscard]] MediumModel ModelOf(const CPatientList& patients) const;
  [[nodiscard]] bool AddStudyPages(MediumModel& medium);
  void AddHeaderPage(SeriesOnMedium& series, const Text& above);
  [[nodiscard]] bool AddIndex(const MediumModel& medium);
  void AddPage(Text path, std::string bytes);
  void Count(std::size_t bytes);
  [[nodiscard]] bool RemakeHeader(const Page& page, std::string& bytes);
  [[nodiscard]] Text InPages(TextView name) const;

  CFileUtil& files_;
  const FileSetOptions& options_;
  const FileSetPlaces& places_;
  const Institution& institution_;
  const PlannedFileSet* planned_ = nullptr;
  std::unique_ptr<PageStylesheets> stylesheets_;  // made when there are pages to make
  Text root_;
  Text directory_;
  Text otherContentDirectory_;
  Text objectDirectory_;
  Text readmeOfOthers_;  // the file's name, where the other content brings one
  bool isIndexOfOthers_ = false;
  std::vector<Page> pages_;
  std::size_t headers_ = 0;
  std::size_t keptBytes_ = 0;
  std::uint64_t bytesOnDisk_ = 0;
  DiscRoom room_;
  std::vector<Text> remarks_;
};

}  // namespace quillon
