#include "media_job.h"

#include <array>

#include "foundation/scoped_bstr.h"
#include "foundation/text.h"
#include "platform/services.h"

namespace quillon::cli {

namespace {

Text wide(std::string_view text) { return WidenText(text, FileSystemCodePage()); }

std::string narrow(const ScopedBstr& text) { return NarrowText(text.View(), FileSystemCodePage()); }

VARIANT_BOOL variantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

template <typename Getter>
std::string read(CQuillonMediaRW& object, Getter getter) {
  ScopedBstr text;
  (object.*getter)(text.Put());
  return narrow(text);
}

}  // namespace

MediaJob::ComScope::ComScope() : isInitialized(SUCCEEDED(CoInitialize(nullptr))) {}

MediaJob::ComScope::~ComScope() {
  if (isInitialized) CoUninitialize();
}

// A put answers S_OK even when the value was refused, which shows in the value alone.
bool MediaJob::setRoot(std::string_view path) {
  const ScopedBstr text(wide(path));
  object_.put_DicomRootDirectory(text.Get());
  return root() == path;
}

bool MediaJob::setObjectDirectory(std::string_view path) {
  const ScopedBstr text(wide(path));
  object_.put_DicomObjectDirectory(text.Get());
  return read(object_, &CQuillonMediaRW::get_DicomObjectDirectory) == path;
}

void MediaJob::setHierarchy(bool enabled) {
  object_.put_UseHierarchyForDicomObjects(variantBool(enabled));
}

void MediaJob::setOtherContent(bool enabled) {
  object_.put_IncludeOtherContent(variantBool(enabled));
}

void MediaJob::setPatientKey(std::string_view key) {
  const ScopedBstr text(wide(key));
  object_.put_UniquePatientId(text.Get());
}

std::string MediaJob::root() { return read(object_, &CQuillonMediaRW::get_DicomRootDirectory); }

std::string MediaJob::label() { return read(object_, &CQuillonMediaRW::get_IheLabel); }

std::string MediaJob::errorText() { return read(object_, &CQuillonMediaRW::get_ErrMessageText); }

bool MediaJob::addFile(std::string_view path) {
  const ScopedBstr text(wide(path));
  VARIANT_BOOL isAccepted = VARIANT_FALSE;
  object_.AddFile(text.Get(), &isAccepted);
  return isAccepted == VARIANT_TRUE;
}

bool MediaJob::createFileSet() {
  VARIANT_BOOL isCreated = VARIANT_FALSE;
  object_.CreateDicomFileSet(&isCreated);
  return isCreated == VARIANT_TRUE;
}

bool MediaJob::setVolume(std::string_view name) {
  const ScopedBstr text(wide(name));
  object_.put_VolumeName(text.Get());
  return read(object_, &CQuillonMediaRW::get_VolumeName) == name;
}

bool MediaJob::setTarget(std::string_view path) {
  const ScopedBstr text(wide(path));
  object_.put_PerformDirectCopy(VARIANT_TRUE);
  return object_.put_DirectCopyDirectory(text.Get()) == S_OK;
}

void MediaJob::setRecording(bool simulate, bool fullErase, bool eject) {
  object_.put_SimulateCreation(variantBool(simulate));
  object_.put_PerformFullErase(variantBool(fullErase));
  object_.put_EjectMediumAfterCreation(variantBool(eject));
}

bool MediaJob::write() {
  object_.put_ClearAfterWrite(VARIANT_FALSE);
  VARIANT_BOOL isWritten = VARIANT_FALSE;
  return object_.Write(&isWritten) == S_OK && isWritten == VARIANT_TRUE;
}

std::optional<bool> MediaJob::holdsRewritableData() {
  VARIANT_BOOL holds = VARIANT_FALSE;
  if (object_.get_CDRWHasContent(&holds) != S_OK) return std::nullopt;
  return holds == VARIANT_TRUE;
}

bool MediaJob::isRecordable() {
  VARIANT_BOOL isRecordable = VARIANT_FALSE;
  object_.get_CDIsRecordable(&isRecordable);
  return isRecordable == VARIANT_TRUE;
}

bool MediaJob::loadHeader(std::string_view file, std::string_view stylesheet, std::string& text) {
  const ScopedBstr fileName(wide(file));
  const ScopedBstr location(wide(stylesheet));
  ScopedBstr header;
  if (object_.LoadHeaderTextFromFile(fileName.Get(), location.Get(), header.Put()) != S_OK ||
      header.Get() == nullptr) {
    return false;
  }
  text = narrow(header);
  return true;
}

void MediaJob::wipe() { object_.Wipe(); }

std::string temporaryJobDirectory() {
  std::array<OLECHAR, MAX_PATH + 1> buffer{};
  const DWORD units = GetTempPathW(static_cast<DWORD>(buffer.size()), buffer.data());
  if (units == 0 || units > buffer.size()) return {};
  return NarrowText(TextView(buffer.data(), units), FileSystemCodePage()) + "QUILLON";
}

}  // namespace quillon::cli
