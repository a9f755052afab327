#include "source_check.h"

#include <set>

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
    // Of files that lie side by side the directory is compared once.
    if (const TextView next = ParentOf(object.source); parent.empty() || next != parent) {
      parent = next;
      isParentInside =
          IsAtOrBelow(ComparablePath(parent.empty() ? object.source : Text(parent)), inside);
    }
    FileIdentity identity;
    if (isParentInside || IsNamedAs(object.source, directory) || IsNamedAs(object.source, inside) ||
        (!existing.empty() && files_.GetFileIdentity(object.source, identity) &&
         existing.contains(identity))) {
      return errors_.Fail(kMsgSourceInsideFileSet, {object.source});
    }
  }
  return true;
}

bool SourceCheck::IsSeenAgain(const PlannedObject& object, FileFacts& facts, DWORD& attributes) {
  if (!object.facts || object.facts->identity.volume != root_.volume) return false;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!files_.GetFileAttributes(object.source, data) || data.dwFileAttributes == 0) return false;
  constexpr DWORD kOthers =
      FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT;
  if ((data.dwFileAttributes & kOthers) != 0 || !(StampOf(data) == object.facts->stamp)) {
    return false;
  }
  facts = *object.facts;
  attributes = data.dwFileAttributes;
  return true;
}

bool SourceCheck::CheckOne(const PlannedObject& object) {
  // That a file can be taken away is a matter of its directory, which is asked once.
  const TextView parent = ParentOf(object.source);
  const bool isNewParent = parent != lastParent_;
  FileFacts facts;
  DWORD attributes = 0;
  if (isNewParent || !IsSeenAgain(object, facts, attributes)) {
    if (!files_.ProbeFile(object.source, /*forMoving=*/isNewParent, facts)) {
      return errors_.FailAs(files_);
    }
    if (object.facts && !(object.facts->stamp == facts.stamp)) {
      return errors_.Fail(kMsgSourceChanged, {object.source});
    }
  }
  if (isNewParent) lastParent_ = parent;
  renamable_.push_back(attributes);
  // The second move would find nothing.
  if (IsSecond(object.source, facts)) return errors_.Fail(kMsgPathNotFound, {object.source});
  if (facts.isLink || facts.identity.volume != root_.volume) {
    bytesToCopy_ += RoundedToBlocks(facts.stamp.sizeBytes);
  }
  return true;
}

bool SourceCheck::IsSecond(const Text& path, const FileFacts& facts) {
  const auto [place, isNew] =
      seen_.try_emplace(facts.identity, Seen{&path, facts.isLink, facts.links});
  if (isNew) return false;
  const Seen first = place->second;
  // Of a link that came before only the link went away.
  const bool isGone =
      !first.isLink && (facts.isLink || facts.links == 1 || IsSameName(*first.path, path, files_));
  if (!isGone) place->second = Seen{&path, facts.isLink, facts.links};
  return isGone || (first.isLink && facts.isLink && IsSameName(*first.path, path, files_));
}

}  // namespace quillon
