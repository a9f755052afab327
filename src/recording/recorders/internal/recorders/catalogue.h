// Which recorders there are, and which generation of the disc-mastering service answers: the value
// Service (text) of HKEY_LOCAL_MACHINE\SOFTWARE\Tarn Imaging\Quillon\DiscMastering.
//
//   value      recorders                                               current   legacy classes
//   auto       the optical drives                                      yes       yes
//   virtual    virtual ones                                            yes       yes
//   drives     the optical drives                                      yes       yes
//   legacy     as auto                                                 no        yes
//   none       none                                                    no        no
//
// auto stands for a missing value; another one is refused. Nobody gets a virtual recorder who has
// not asked for it, and takes the image of a disc for a disc. Where $QUILLON_RECORDERS is set, auto
// and legacy mean the virtual recorders in it, drives or not: whoever names a directory of virtual
// recorders does not expect a disc to be burnt. Virtual recorders are made on first use: one, with
// a blank CD-R in it.
//
// The value Drives (text) beside it names the optical drives, with semicolons between them:
// "/dev/sr1", or "stdio:" and the path of a file that libburn is to treat as a disc that can be
// written at any place, here a DVD+RW. Without it all of /dev/sr* are there. Drives are reached
// through a library that is loaded when it is installed (optical_library.h).
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "recorders/recorder.h"

namespace quillon::platform {

enum class DiscService { Auto, Virtual, Drives, Legacy, None, Unknown };

// Read anew by every call, so that a change is noticed by a running process.
DiscService configuredDiscService();
// What CoCreateInstance goes by; where the answer is no, it is REGDB_E_CLASSNOTREG.
bool offersCurrentDiscService();
bool offersLegacyDiscService();

using RecorderList = std::vector<std::unique_ptr<Recorder>>;

// The recorders of the configured service in their order, the legacy number of each set to its
// position. Fails for an unknown service, and when the directory of the virtual ones cannot be made
// or read.
DiscResult listRecorders(RecorderList& recorders);
// ERROR_FILE_NOT_FOUND, as an HRESULT, when there is none with that identifier.
DiscResult openRecorder(std::u16string_view uniqueId, std::unique_ptr<Recorder>& recorder);

// Ends the sentences about a drive that is missing.
inline constexpr const char* kWhenVirtual =
    "; a virtual recorder is there when QUILLON_RECORDERS names a directory for it.";

// What the value Drives holds; nothing for all drives of the machine.
std::vector<std::string> configuredDrives();

// Lets go of the drives that the process has open, once its operations have been stopped, and comes
// back when they are unlocked.
void releaseOpticalDrives();

}  // namespace quillon::platform
