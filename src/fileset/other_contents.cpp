#include "other_contents.h"

#include <algorithm>
#include <array>
#include <map>

#include "fileset/root_names.h"
#include "path_join.h"

namespace quillon {

namespace {

// What a medium has in its root beside the objects. The sums may come later, of all files.
constexpr std::array kOwnNames{kDicomDirName, kLabelFileName, kUnfinishedMarkName, kSumsFileName};

// As people write it: below the root, with slashes.
Text NameBelow(const Text& path, const Text& root) {
  Text name = AbsolutePath(path).substr(std::min(AbsolutePath(root).size(), path.size()));
  name.erase(0, name.find_first_not_of(OLESTR("\\/")));
  std::ranges::replace(name, OLESTR('\\'), OLESTR('/'));
  return name;
}

}  // namespace

OtherContents::OtherContents(CFileUtil& files, const FileSetOptions& options)
    : files_(files), options_(options) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

bool OtherContents::Plan(const Places& places) {
  contents_.clear();
  return PlanEach(places) && CheckAgainstSet(places) && CheckNames(places);
}

bool OtherContents::PlanEach(const Places& places) {
  for (const NamedContent& named : options_.otherContents) {
    OtherContent& content = contents_.emplace_back(files_, options_.currentPractice);
    if (!content.PlanNamed(named.source, places.rootDirectory, named.directory)) {
      return FailAs(content);
    }
  }
  if (!options_.otherContents.empty()) return true;
  OtherContent& content = contents_.emplace_back(files_, options_.currentPractice);
  if (!content.PlanConfigured(places.rootDirectory, places.otherContentDirectory)) {
    return FailAs(content);
  }
  if (!options_.refusesContentGaps || content.Gap().empty()) return true;
  SetErrorMessage(content.Gap());
  return false;
}

bool OtherContents::CheckAgainstSet(const Places& places) {
  const Text objects = ComparablePath(places.objectDirectory);
  std::vector<Text> own;
  for (const OLECHAR* name : kOwnNames) {
    Text path = places.rootDirectory;
    if (!JoinBelow(path, name, *this)) return false;
    own.push_back(ComparablePath(path));
  }
  const auto meets = [](const Text& a, const Text& b) {
    return IsAtOrBelow(a, b) || IsAtOrBelow(b, a);
  };
  for (const OtherContent& content : contents_) {
    // In a directory of its own, as it usually is, it is in nobody's way.
    const Text place = ComparablePath(content.Destination());
    if (!content.HasContent() ||
        (!meets(place, objects) &&
         std::ranges::none_of(own, [&](const Text& one) { return meets(place, one); }))) {
      continue;
    }
    const auto isInTheWay = [&](const Text& path, bool isFile) {
      const Text comparable = ComparablePath(path);
      if (isFile && meets(comparable, objects)) return true;
      return std::ranges::any_of(own,
                                 [&](const Text& one) { return IsAtOrBelow(comparable, one); });
    };
    for (const Text& file : content.Files()) {
      if (isInTheWay(file, /*isFile=*/true)) return FailInTheWay(content, file, places);
    }
    for (const Text& directory : content.Directories()) {
      if (isInTheWay(directory, /*isFile=*/false)) return FailInTheWay(content, directory, places);
    }
  }
  return true;
}

bool OtherContents::FailInTheWay(const OtherContent& content, const Text& path,
                                 const Places& places) {
  return Fail(kMsgContentInTheWay, {content.Source(), NameBelow(path, places.rootDirectory)});
}

// Two may fill one directory, but no file of one may be where the other has something. On a disc
// names that differ in the case of letters are one name: those of content that a host has
// configured are left to it.
bool OtherContents::CheckNames(const Places& places) {
  if (options_.otherContents.empty() && !options_.currentPractice) return true;
  struct Entry {
    const OtherContent* content;
    Text path;
    bool isFile;
  };
  std::map<Text, Entry> entries;
  const auto add = [&](const OtherContent& content, const Text& path, bool isFile) {
    Text spelled = AbsolutePath(path);
    std::ranges::replace(spelled, OLESTR('/'), OLESTR('\\'));
    const auto [at, isNew] =
        entries.try_emplace(ComparablePath(path), Entry{&content, spelled, isFile});
    const Entry& other = at->second;
    if (isNew || (!isFile && !other.isFile && spelled == other.path)) return true;
    const Text name = NameBelow(path, places.rootDirectory);
    return other.content == &content
               ? Fail(kMsgContentNamesAlike, {content.Source(), name})
               : Fail(kMsgContentsCollide, {other.content->Source(), content.Source(), name});
  };
  const std::size_t rootUnits = ComparablePath(places.rootDirectory).size();
  for (const OtherContent& content : contents_) {
    for (const Text& directory : content.Directories()) {
      for (Text path = AbsolutePath(directory); path.size() > rootUnits;
           path = ParentDirectory(path)) {
        if (!add(content, path, /*isFile=*/false)) return false;
      }
    }
    for (const Text& file : content.Files()) {
      if (!add(content, file, /*isFile=*/true)) return false;
    }
  }
  return true;
}

bool OtherContents::HasContent() const {
  return std::ranges::any_of(contents_, &OtherContent::HasContent);
}

std::vector<Text> OtherContents::Files() const {
  std::vector<Text> files;
  for (const OtherContent& content : contents_) {
    files.insert(files.end(), content.Files().begin(), content.Files().end());
  }
  return files;
}

std::uint64_t OtherContents::BytesOnDisk() const {
  std::uint64_t bytes = 0;
  for (const OtherContent& content : contents_) bytes += content.BytesOnDisk();
  return bytes;
}

DiscRoom OtherContents::Room() const {
  DiscRoom room;
  for (const OtherContent& content : contents_) room.Add(content.Room());
  return room;
}

std::vector<Text> OtherContents::Destinations() const {
  std::vector<Text> directories;
  for (const OtherContent& content : contents_) {
    if (content.HasContent()) directories.push_back(content.Destination());
  }
  return directories;
}

Text OtherContents::Remark() const {
  return contents_.empty() ? Text() : contents_.front().Remark();
}

Text OtherContents::Gap() const { return contents_.empty() ? Text() : contents_.front().Gap(); }

bool OtherContents::Copy() {
  return std::ranges::all_of(
      contents_, [this](OtherContent& content) { return content.Copy() || FailAs(content); });
}

}  // namespace quillon
