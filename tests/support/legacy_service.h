// A legacy disc-mastering service of the test's own: one recorder with a medium in it, which
// remembers what was done to it, and of which any one call can be made to fail.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/imapi.h"
#include "support/com_class.h"
#include "support/text.h"

namespace quillon::test {

struct LegacyService {
  // The machine.
  bool hasRecordableDrive = true;
  int recorders = 1;
  LONG recorderType = RECORDER_CDR;
  ULONG recorderState = RECORDER_DOING_NOTHING;
  LONG mediumType = MEDIA_SPECIAL;
  LONG mediumFlags = MEDIA_BLANK | MEDIA_WRITABLE;

  // The fault plan: the call of this name fails, or throws its code. "Create" is the second
  // creation of the disc master; the first is the probe.
  std::string failingCall;
  HRESULT failure = E_FAIL;
  bool throws = false;
  std::string alsoFailing;  // with E_FAIL

  // What happened.
  std::vector<std::string> calls;
  std::map<std::string, std::string> files;  // path on the disc to content
  Text volumeName;
  std::string record;  // "write", "simulate", with "+eject"
  std::string erase;   // "quick" or "full"
  bool isMasterOpen = false;
  bool isRecorderOpen = false;
  int liveObjects = 0;
  int mastersCreated = 0;

  HRESULT call(const std::string& name);
};

// Registers the classes of the service for the life of the object. COM must be initialised.
class RegisteredLegacyService {
 public:
  RegisteredLegacyService(LegacyService& service, bool hasMaster, bool hasBurner);
  ~RegisteredLegacyService();
  RegisteredLegacyService(const RegisteredLegacyService&) = delete;
  RegisteredLegacyService& operator=(const RegisteredLegacyService&) = delete;

 private:
  std::vector<DWORD> cookies_;
};

}  // namespace quillon::test
