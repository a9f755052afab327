#include "source_guard.h"

#include <set>

#include "fileset/model/for_each_object.h"
#include "foundation/find_handle.h"
#include "path_join.h"

namespace quillon {

namespace {

using FileIdentities = std::set<FileIdentity>;

// A path in the form in which two spellings of it compare equal. Letter case does not tell files
// apart on every file system, and taking two files for one only refuses a creation.
Text ComparablePath(const Text& path) {
  Text full = AbsolutePath(path);
  for (OLECHAR& unit : full) {
    if (unit == OLESTR('/')) {
      unit = OLESTR('\\');
    } else if (unit >= OLESTR('a') && unit <= OLESTR('z')) {
      unit = static_cast<OLECHAR>(unit - OLESTR('a') + OLESTR('A'));
    }
  }
  return full;
}

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

}  // namespace

bool CheckSourcesOutside(const CPatientList& patients, const Text& objectDirectory,
                         const Text& dicomDir, CFileUtil& files, CBaseItem& errors) {
  Text inside = ComparablePath(objectDirectory);
  if (!EndsInSeparator(inside)) inside += OLESTR('\\');
  const Text directory = ComparablePath(dicomDir);
  // Empty, at no cost, for the usual new root.
  FileIdentities existing;
  AddIdentity(dicomDir, files, existing);
  AddIdentitiesBelow(objectDirectory, files, existing);
  return ForEachObject(patients, [&](const CDicomObjectProperties& object) {
    const Text path = ComparablePath(object.FileName());
    FileIdentity identity;
    const bool isInside =
        path.starts_with(inside) || path == directory ||
        (!existing.empty() && files.GetFileIdentity(object.FileName(), identity) &&
         existing.contains(identity));
    return !isInside || errors.Fail(kMsgSourceInsideFileSet, {object.FileName()});
  });
}

}  // namespace quillon
