#include "recorders/catalogue.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <sstream>
#include <string>

#include "drive_recorders.h"
#include "platform/win32/registry.h"
#include "recorders/recorder_store.h"
#include "recording/disc_recorders.h"
#include "virtual_recorder.h"
#include "win32/environment.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr const char16_t* kServiceValue = u"Service";

// A text value; empty for none.
std::u16string configuredText(const char16_t* name) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Tarn Imaging\\Quillon\\DiscMastering", 0,
                    KEY_QUERY_VALUE, &key) != 0) {
    return {};
  }
  std::array<char16_t, 2048> text{};
  DWORD type = 0;
  DWORD lengthBytes = sizeof(text) - sizeof(char16_t);
  const LSTATUS status = RegQueryValueExW(key, name, nullptr, &type,
                                          reinterpret_cast<LPBYTE>(text.data()), &lengthBytes);
  RegCloseKey(key);
  return status == 0 && type == REG_SZ ? std::u16string(text.data()) : std::u16string();
}

// The recorder that the process has chosen.
struct Choice {
  std::mutex mutex;
  std::string name;
};
Choice& choice() {
  static Choice single;
  return single;
}
std::string chosenName() {
  const std::lock_guard lock(choice().mutex);
  return choice().name;
}

DiscResult unknownService() {
  return {E_FAIL, u"The registry names the disc-mastering service \"" +
                      configuredText(kServiceValue) +
                      u"\"; there are auto, virtual, drives, legacy and none."};
}

DiscResult addVirtualRecorders(RecorderList& recorders) {
  std::vector<std::string> directories;
  DiscResult result = recorderDirectories(directories);
  for (std::string& directory : directories) {
    recorders.push_back(std::make_unique<VirtualRecorder>(std::move(directory)));
  }
  return result;
}

}  // namespace

DiscService configuredDiscService() {
  struct Row {
    std::u16string_view name;
    DiscService service;
  };
  constexpr std::array kRows{
      Row{u"", DiscService::Auto},           Row{u"auto", DiscService::Auto},
      Row{u"virtual", DiscService::Virtual}, Row{u"drives", DiscService::Drives},
      Row{u"legacy", DiscService::Legacy},   Row{u"none", DiscService::None},
  };
  const std::u16string name = configuredText(kServiceValue);
  for (const Row& row : kRows) {
    if (row.name == name) return row.service;
  }
  return DiscService::Unknown;
}

std::vector<std::string> configuredDrives() {
  std::vector<std::string> addresses;
  std::istringstream text(nativeFromWide(configuredText(u"Drives")));
  for (std::string address; std::getline(text, address, ';');) {
    if (!address.empty()) addresses.push_back(std::move(address));
  }
  return addresses;
}

bool offersCurrentDiscService() {
  const DiscService service = configuredDiscService();
  return service != DiscService::Legacy && service != DiscService::None;
}

bool offersLegacyDiscService() { return configuredDiscService() != DiscService::None; }

void chooseDiscRecorder(std::string recorder) {
  const std::lock_guard lock(choice().mutex);
  choice().name = std::move(recorder);
}

namespace {

// Drives that are not wanted are not asked for anything.
DiscResult listAll(RecorderList& recorders, const std::string& onlyDrive) {
  const DiscService service = configuredDiscService();
  if (service == DiscService::Unknown) return unknownService();
  if (service == DiscService::None) return S_OK;
  const bool isVirtual =
      service == DiscService::Virtual ||
      (service != DiscService::Drives && !environmentValue("QUILLON_RECORDERS").empty());
  if (isVirtual) return addVirtualRecorders(recorders);
  recorders = listDrives(onlyDrive);
  return S_OK;
}

// The one of that name, or none.
void keepOnly(const std::string& name, RecorderList& recorders) {
  std::erase_if(recorders, [&](const auto& one) { return one->identity().name != name; });
  std::string directory;
  if (recorders.empty() && configuredDiscService() != DiscService::None &&
      !findRecorder(name, directory).failed()) {
    recorders.push_back(std::make_unique<VirtualRecorder>(std::move(directory)));
  }
}

}  // namespace

DiscResult listRecorders(RecorderList& recorders) {
  recorders.clear();
  const std::string name = chosenName();
  DiscResult result = listAll(recorders, name);
  if (!name.empty() && !result.failed()) keepOnly(name, recorders);
  LONG number = 0;
  for (const std::unique_ptr<Recorder>& recorder : recorders) recorder->setLegacyNumber(number++);
  return result;
}

DiscResult openRecorder(std::u16string_view uniqueId, std::unique_ptr<Recorder>& recorder) {
  RecorderList recorders;
  DiscResult result = listRecorders(recorders);
  if (result.failed()) return result;
  for (std::unique_ptr<Recorder>& candidate : recorders) {
    if (candidate->identity().uniqueId != uniqueId) continue;
    recorder = std::move(candidate);
    return S_OK;
  }
  std::u16string sentence = u"There is no disc recorder with the unique identifier \"";
  sentence.append(uniqueId).append(u"\".");
  return {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), std::move(sentence)};
}

}  // namespace quillon::platform
