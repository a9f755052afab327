#include "source_check.h"

#include <functional>
#include <set>

#include "dicomobjects/dicom_file_facts.h"
#include "foundation/find_handle.h"
#include "other_content.h"
#include "path_join.h"

namespace quillon {

namespace {

using FileIdentities = std::set<FileIdentity>;

// False when it was there already, or there is no such file.
bool AddIdentity(const Text& path, CFileUtil& files, FileIdentities& identities) {
  FileIdentity identity;
  return files.GetFileIdentity(path, identity) && identities.insert(identity).second;
}

// Of every file below the directory. What has a name that no path can have is not overwritten.
void AddIdentitiesBelow(const Text& directory, CFileUtil& files, FileIdentities& identities) {
  Text pattern = directory;
  if (!EndsInSeparator(pattern)) pattern += OLESTR('\\');
  const std::size_t prefix = pattern.size();
  FindHandle found(pattern.append(OLESTR("*.*")));
  if (!found.IsOpen()) return;
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry)) continue;
    const Text path = Text(pattern, 0, prefix).append(entry.cFileName);
    // A directory that was met before is one that a link led back to.
    const bool isNew = AddIdentity(path, files, identities);
    if (isNew && IsDirectory(entry)) AddIdentitiesBelow(path, files, identities);
  } while (found.Next());
}

TextView ParentOf(TextView path) {
  const std::size_t separator = path.find_last_of(OLESTR("\\/"));
  return path.substr(0, separator == TextView::npos ? 0 : separator + 1);
}

// Whether a path is another one in its comparable form. Most differ in their last unit already.
bool IsNamedAs(const Text& path, const Text& comparable) {
  if (path.empty() || comparable.empty()) return false;
  const auto upper = [](OLECHAR unit) {
    return unit >= OLESTR('a') && unit <= OLESTR('z')
               ? static_cast<OLECHAR>(unit - OLESTR('a') + OLESTR('A'))
               : unit;
  };
  return upper(path.back()) == comparable.back() && ComparablePath(path) == comparable;
}

// Whether two paths lead to one name and not to two names of one file.
bool IsSameName(const Text& a, const Text& b, CFileUtil& files) {
  const Text fullA = AbsolutePath(a);
  const Text fullB = AbsolutePath(b);
  const TextView parentA = ParentOf(fullA);
  const TextView parentB = ParentOf(fullB);
  FileIdentity ofA;
  FileIdentity ofB;
  return fullA.substr(parentA.size()) == fullB.substr(parentB.size()) &&
         (parentA == parentB || (files.GetFileIdentity(parentA, ofA) &&
                                 files.GetFileIdentity(parentB, ofB) && ofA == ofB));
}

}  // namespace

SourceCheck::SourceCheck(const Text& rootDirectory, const Text& objectDirectory,
                         const Text& dicomDir, CFileUtil& files, CBaseItem& errors)
    : files_(files), errors_(errors), objectDirectory_(objectDirectory), dicomDir_(dicomDir) {
  // A root that cannot be identified is the same as no source.
  static_cast<void>(files_.GetFileIdentity(rootDirectory, root_));
}

bool SourceCheck::Run(const std::vector<PlannedObject>& objects) {
  bytesToCopy_ = 0;
  seen_.clear();
  seen_.reserve(objects.size());
  seenByIdentity_.Clear();
  renamable_.clear();
  renamable_.reserve(objects.size());
  for (const PlannedObject& object : objects) {
    if (!CheckOne(object)) return false;
  }
  return true;
}

bool SourceCheck::CheckOutside(const std::vector<PlannedObject>& objects) {
  const Text inside = ComparablePath(objectDirectory_);
  // By its name too: not every file system gives files an identity.
  const Text directory = ComparablePath(dicomDir_);
  // Empty, at no cost, for the usual new root.
  FileIdentities existing;
  AddIdentity(dicomDir_, files_, existing);
  AddIdentitiesBelow(objectDirectory_, files_, existing);
  TextView parent;
  bool isParentInside = false;
  for (const PlannedObject& object : objects) {
    const Text& source = object.source.Get();
    // Of files that lie side by side the directory is compared once.
    if (const TextView next = ParentOf(source); parent.empty() || next != parent) {
      parent = next;
      isParentInside = IsAtOrBelow(ComparablePath(parent.empty() ? source : Text(parent)), inside);
    }
    FileIdentity identity;
    if (isParentInside || IsNamedAs(source, directory) || IsNamedAs(source, inside) ||
        (!existing.empty() && files_.GetFileIdentity(source, identity) &&
         existing.contains(identity))) {
      return errors_.Fail(kMsgSourceInsideFileSet, {source});
    }
  }
  return true;
}

bool SourceCheck::IsSeenAgain(const PlannedObject& object, FileFacts& facts, DWORD& attributes) {
  const Text& source = object.source.Get();
  if (!object.facts || object.facts->file.identity.volume != root_.volume) return false;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!files_.GetFileAttributes(source, data) || data.dwFileAttributes == 0) return false;
  constexpr DWORD kOthers =
      FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT;
  if ((data.dwFileAttributes & kOthers) != 0 || !(StampOf(data) == object.facts->file.stamp)) {
    return false;
  }
  facts = object.facts->file;
  attributes = data.dwFileAttributes;
  return true;
}

bool SourceCheck::CheckOne(const PlannedObject& object) {
  const Text& source = object.source.Get();
  // That a file can be taken away is a matter of its directory, which is asked once.
  const TextView parent = ParentOf(source);
  const bool isNewParent = parent != lastParent_;
  FileFacts facts;
  DWORD attributes = 0;
  if (isNewParent || !IsSeenAgain(object, facts, attributes)) {
    if (!files_.ProbeFile(source, /*forMoving=*/isNewParent, facts)) {
      return errors_.FailAs(files_);
    }
    if (object.facts && !(object.facts->file.stamp == facts.stamp)) {
      return errors_.Fail(kMsgSourceChanged, {source});
    }
  }
  if (isNewParent) lastParent_ = parent;
  renamable_.push_back(attributes);
  // The second move would find nothing.
  if (IsSecond(source, facts)) return errors_.Fail(kMsgPathNotFound, {source});
  if (facts.isLink || facts.identity.volume != root_.volume) {
    bytesToCopy_ += RoundedToBlocks(facts.stamp.sizeBytes);
  }
  return true;
}

bool SourceCheck::IsSecond(const Text& path, const FileFacts& facts) {
  const Seen now{facts.identity, &path, facts.links, facts.isLink};
  const std::size_t hash =
      std::hash<std::uint64_t>{}(facts.identity.index * 31 + facts.identity.volume);
  const std::uint32_t place = seenByIdentity_.Find(
      hash, [&](std::uint32_t position) { return seen_[position].identity == facts.identity; });
  if (place == PositionIndex::kNone) {
    seenByIdentity_.Add(hash, static_cast<std::uint32_t>(seen_.size()));
    seen_.push_back(now);
    return false;
  }
  const Seen first = seen_[place];
  // Of a link that came before only the link went away.
  const bool isGone =
      !first.isLink && (facts.isLink || facts.links == 1 || IsSameName(*first.path, path, files_));
  if (!isGone) seen_[place] = now;
  return isGone || (first.isLink && facts.isLink && IsSameName(*first.path, path, files_));
}

}  // namespace quillon
