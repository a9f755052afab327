// Lets calls of the system fail in a test program that links quillon_test_faults: what full disks,
// dying drives and network shares do, at any call one wants.
#pragma once

namespace quillon::test {

enum class Call {
  Open,
  Read,
  Write,
  CopyRange,  // bytes from file to file; cannot be done at all where reads or writes are to fail
  Seek,
  Sync,
  Close,
  Rename,           // from one directory to another or not
  RenameElsewhere,  // from one directory to another: with EXDEV, every directory is another disk
  Unlink,
  MakeDirectory,
  Any
};

// While it lives, the n-th call of this kind (from 1; 0 for every one) fails with this errno. A
// failing close closes nevertheless. Several can live at once.
class FailingCall {
 public:
  FailingCall(Call call, int nth, int error);
  ~FailingCall();
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;

  // Whether a call has failed.
  [[nodiscard]] bool happened() const { return happened_; }
  // For the calls themselves.
  bool strikes(Call call);
  [[nodiscard]] Call kind() const { return call_; }

 private:
  Call call_;
  int nth_;
  int error_;
  int count_ = 0;
  bool happened_ = false;
};

}  // namespace quillon::test
