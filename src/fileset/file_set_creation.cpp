#include "file_set_creation.h"

#include "foundation/move_batch.h"
#include "medium_label.h"
#include "unfinished_mark.h"

namespace quillon {

FileSetCreation::FileSetCreation(FileSetPlan& plan, CFileUtil& files,
                                 const CopyReport::Callback& progress)
    : plan_(plan), files_(files), progress_(progress) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

bool FileSetCreation::Run() {
  // The mark stands before anything changes and goes when everything is done: whatever happens in
  // between, the root tells that it is not a finished file set.
  const Text& root = plan_.RootDirectory();
  if (!WriteUnfinishedMark(root, plan_.Planned().objects, plan_.Options().sourcesStay, files_)) {
    return FailAs(files_);
  }
  const bool isDone = PrepareRoot() && MoveObjects() && FlushCopies() && WritePages() &&
                      WriteDicomDir() && (plan_.Content().Copy() || FailAs(plan_.Content())) &&
                      WriteLabel();
  if (isDone || !hasMoved_) {
    const bool isRemoved = RemoveUnfinishedMark(root, files_);
    if (isDone && !isRemoved) return FailAs(files_);
  }
  return isDone;
}

// The old DICOMDIR describes what is about to be replaced.
bool FileSetCreation::PrepareRoot() {
  if (files_.PathExists(plan_.DicomDirPath()) && !files_.DeleteFile(plan_.DicomDirPath())) {
    return FailAs(files_);
  }
  for (const Text& directory : plan_.Directories()) {
    if (!files_.CreateDirectoryTree(directory)) return FailAs(files_);
    keepsPatients_ = false;
  }
  for (const Text& directory : plan_.Content().Destinations()) {
    if (!files_.CreateDirectoryTree(directory)) return FailAs(files_);
  }
  if (plan_.Pages().HasPages() && !files_.CreateDirectoryTree(plan_.Pages().Directory())) {
    return FailAs(files_);
  }
  return CheckWritable();
}

// Before the first object is moved, so that a directory that takes no file leaves all in place.
bool FileSetCreation::CheckWritable() {
  const Text probe = plan_.ObjectDirectory() + kObjectPrefix + OLESTR(".TMP");
  const HANDLE file =
      CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return Fail(kMsgCannotOpenFile,
                {plan_.RootDirectory() + plan_.Planned().objects.front().FileId()});
  }
  CloseHandle(file);
  return files_.DeleteFile(probe) || FailAs(files_);
}

bool FileSetCreation::MoveObjects() {
  MoveBatch batch(plan_.Places().rootDirectory);
  CopyReport report(files_, progress_, plan_.Planned().bytes);
  std::uint64_t doneBytes = 0;
  const std::vector<PlannedObject>& objects = plan_.Planned().objects;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const PlannedObject& object = objects[i];
    const Text path = plan_.RootDirectory() + object.FileId();
    const DWORD attributes = plan_.RenamableAs(i);
    if (!(attributes != 0 ? files_.MoveSeenFile(path, object.source.Get(), attributes, batch)
                          : files_.MoveFile(path, object.source.Get(), batch))) {
      FailAs(files_);
      // It may be whole in the file set when only its source could not be removed.
      hasMoved_ = hasMoved_ || files_.PathExists(path);
      return false;
    }
    hasMoved_ = true;
    report.SetDone(doneBytes += object.sizeBytes);
  }
  return files_.FinishMoves(batch) || FailAs(files_);
}

// Nobody has waited yet for copies that were handed over. Who made them may delete their sources
// when there is a file set, so they are on the disk before there is a DICOMDIR.
bool FileSetCreation::FlushCopies() {
  if (!plan_.Options().sourcesStay) return true;
  FileSystemFlush flush(plan_.Places().rootDirectory);
  return files_.FlushAll(flush) || FailAs(files_);
}

bool FileSetCreation::WritePages() {
  return !plan_.Pages().HasPages() || plan_.Pages().Write() || FailAs(plan_.Pages());
}

bool FileSetCreation::WriteDicomDir() { return plan_.WriteDicomDir() || FailAs(plan_); }

bool FileSetCreation::WriteLabel() {
  hasLabel_ = true;
  return WriteLabelFile(plan_.Planned().label, plan_.RootDirectory(), files_, *this);
}

}  // namespace quillon
