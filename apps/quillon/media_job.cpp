#include "media_job.h"

#include <array>

#include "foundation/text.h"
#include "platform/services.h"

namespace quillon::cli {

namespace {

class ScopedBstr {
 public:
  ScopedBstr() = default;
  explicit ScopedBstr(std::string_view text) {
    const Text wide = WidenText(text, FileSystemCodePage());
    bstr_ = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  }
  ~ScopedBstr() { SysFreeString(bstr_); }
  ScopedBstr(const ScopedBstr&) = delete;
  ScopedBstr& operator=(const ScopedBstr&) = delete;

  [[nodiscard]] BSTR get() const { return bstr_; }
  [[nodiscard]] BSTR* out() { return &bstr_; }
  [[nodiscard]] std::string text() const {
    if (bstr_ == nullptr) return {};
    return NarrowText(TextView(bstr_, SysStringLen(bstr_)), FileSystemCodePage());
  }

 private:
  BSTR bstr_ = nullptr;
};

VARIANT_BOOL variantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

template <typename Getter>
std::string read(CQuillonMediaRW& object, Getter getter) {
  ScopedBstr text;
  (object.*getter)(text.out());
  return text.text();
}

}  // namespace

MediaJob::ComScope::ComScope() : isInitialized(SUCCEEDED(CoInitialize(nullptr))) {}

MediaJob::ComScope::~ComScope() {
  if (isInitialized) CoUninitialize();
}

// A put answers S_OK even when the value was refused, which shows in the value alone.
bool MediaJob::setRoot(std::string_view path) {
  const ScopedBstr text(path);
  object_.put_DicomRootDirectory(text.get());
  return root() == path;
}

bool MediaJob::setObjectDirectory(std::string_view path) {
  const ScopedBstr text(path);
  object_.put_DicomObjectDirectory(text.get());
  return read(object_, &CQuillonMediaRW::get_DicomObjectDirectory) == path;
}

void MediaJob::setHierarchy(bool enabled) {
  object_.put_UseHierarchyForDicomObjects(variantBool(enabled));
}

void MediaJob::setOtherContent(bool enabled) {
  object_.put_IncludeOtherContent(variantBool(enabled));
}

void MediaJob::setPatientKey(std::string_view key) {
  const ScopedBstr text(key);
  object_.put_UniquePatientId(text.get());
}

std::string MediaJob::root() { return read(object_, &CQuillonMediaRW::get_DicomRootDirectory); }

std::string MediaJob::label() { return read(object_, &CQuillonMediaRW::get_IheLabel); }

std::string MediaJob::errorText() { return read(object_, &CQuillonMediaRW::get_ErrMessageText); }

bool MediaJob::addFile(std::string_view path) {
  const ScopedBstr text(path);
  VARIANT_BOOL isAccepted = VARIANT_FALSE;
  object_.AddFile(text.get(), &isAccepted);
  return isAccepted == VARIANT_TRUE;
}

bool MediaJob::createFileSet() {
  VARIANT_BOOL isCreated = VARIANT_FALSE;
  object_.CreateDicomFileSet(&isCreated);
  return isCreated == VARIANT_TRUE;
}

bool MediaJob::setVolume(std::string_view name) {
  const ScopedBstr text(name);
  object_.put_VolumeName(text.get());
  return read(object_, &CQuillonMediaRW::get_VolumeName) == name;
}

bool MediaJob::setTarget(std::string_view path) {
  const ScopedBstr text(path);
  object_.put_PerformDirectCopy(VARIANT_TRUE);
  return object_.put_DirectCopyDirectory(text.get()) == S_OK;
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

void MediaJob::wipe() { object_.Wipe(); }

std::string temporaryJobDirectory() {
  std::array<OLECHAR, MAX_PATH + 1> buffer{};
  const DWORD units = GetTempPathW(static_cast<DWORD>(buffer.size()), buffer.data());
  if (units == 0 || units > buffer.size()) return {};
  return NarrowText(TextView(buffer.data(), units), FileSystemCodePage()) + "QUILLON";
}

}  // namespace quillon::cli
