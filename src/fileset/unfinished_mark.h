// The mark of a creation that has begun to move objects and has not ended: the file UNFINISHED.TXT
// in the root. It is there before the first object is moved and goes as the creation's last step,
// so what a failure, a kill or a power cut leaves behind can be told from a finished file set
// whatever step it ended in.
//
// The file is text in the file-system code page, a line each:
//   Unfinished file set
//   moved            or "copied" when the objects are copies whose sources stay
//   DICOMOBJ\QLN00001<tab>C:\IN\IMAGE1.DCM      File ID and source, in the order of moving
#pragma once

#include <vector>

#include "fileset/dicom_dir_processor.h"
#include "fileset/root_names.h"
#include "foundation/file_util.h"

namespace quillon {

// Of an existing or missing directory. objectCount: how many objects of the mark's list are there;
// 0 unless unfinished. A mark that cannot be read counts as one of moved objects. Of a job that
// ended before its first object nothing is left that somebody could miss.
RootState ReadRootState(const Text& root, CFileUtil& files, std::size_t& objectCount);

// False, with the file utility's sentence, when the mark does not reach the disk.
[[nodiscard]] bool WriteUnfinishedMark(const Text& root, const std::vector<PlannedObject>& objects,
                                       bool sourcesStay, CFileUtil& files);
// Before a root is emptied: its DICOMDIR goes first, and what a kill leaves of the rest is told
// from a file set and may go.
void MarkForRemoval(const Text& root, CFileUtil& files);
// Also true when there is none.
[[nodiscard]] bool RemoveUnfinishedMark(const Text& root, CFileUtil& files);

}  // namespace quillon
