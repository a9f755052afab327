#include "media_job.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <utility>

#include "foundation/com_values.h"
#include "foundation/file_util.h"
#include "foundation/text.h"
#include "platform/services.h"
#include "platform/xml.h"

namespace quillon::cli {

namespace {

std::string narrow(const ScopedBstr& text) { return cli::narrow(text.View()); }

template <typename Getter>
std::string read(CQuillonMediaRW& object, Getter getter) {
  ScopedBstr text;
  (object.*getter)(text.Put());
  return narrow(text);
}

// The builder joins names by "\\", which the user of a directory did not write.
std::string withNativeSeparators(std::string sentence, const std::string& directory) {
  if (directory.empty()) return sentence;
  for (auto at = sentence.find(directory + '\\'); at != std::string::npos;
       at = sentence.find(directory + '\\', at)) {
    const auto end =
        std::min(sentence.find_first_of(" \"\n", at + directory.size()), sentence.size());
    std::replace(sentence.begin() + static_cast<std::ptrdiff_t>(at + directory.size()),
                 sentence.begin() + static_cast<std::ptrdiff_t>(end), '\\', '/');
    at = end;
  }
  return sentence;
}

// False where the library that it comes from, or one below it, is missing.
bool canMakeXmlDocument() {
  ComPtr<IXMLDOMDocument> document;
  return SUCCEEDED(CoCreateInstance(kClsidDomDocument, nullptr, CLSCTX_SERVER, IID_IXMLDOMDocument,
                                    document.PutVoid()));
}

// whatNeeds: "Stylesheets need".
std::string noXmlLibrary(const char* whatNeeds) {
  return std::string(whatNeeds) +
         " libquillon_xml.so of this installation, which cannot be loaded.";
}

}  // namespace

// A host that says nothing gets what the description says; this one follows the field, unless the
// workstation is set up otherwise.
MediaJob::MediaJob() {
  if (!builder().HasPracticeSetting()) builder().currentPractice = true;
  builder().makesSums = false;  // it makes them beside the delivery
}

// A put answers S_OK even when the value was refused, which shows in the value alone.
Outcome MediaJob::setRoot(std::string_view path) {
  const ScopedBstr text(wide(path));
  object_.put_DicomRootDirectory(text.Get());
  return outcomeOf(root() == path);
}

Outcome MediaJob::setObjectDirectory(std::string_view path) {
  const std::string before = errorText();
  const ScopedBstr text(wide(path));
  object_.put_DicomObjectDirectory(text.Get());
  if (read(object_, &CQuillonMediaRW::get_DicomObjectDirectory) == path) return {};
  if (std::string after = errorText(); after != before) return after;
  return "The object directory " + std::string(path) + " is invalid.";
}

Outcome MediaJob::setOtherContentDirectory(std::string_view name) {
  return outcomeOf(builder().SetOtherContentDirectory(wide(name)));
}

std::string MediaJob::root() { return read(object_, &CQuillonMediaRW::get_DicomRootDirectory); }

std::string MediaJob::label() { return read(object_, &CQuillonMediaRW::get_IheLabel); }

std::string MediaJob::errorText() {
  std::string sentence = read(object_, &CQuillonMediaRW::get_ErrMessageText);
  for (const auto get :
       {&CQuillonMediaRW::get_DicomRootDirectory, &CQuillonMediaRW::get_DirectCopyDirectory}) {
    sentence = withNativeSeparators(std::move(sentence), read(object_, get));
  }
  return sentence;
}

Outcome MediaJob::clearRoot(std::string_view leaveOut) {
  return outcomeOf(builder().ClearRoot(wide(leaveOut)));
}

Outcome MediaJob::takesPath(std::string_view path) {
  return outcomeOf(builder().TakesPath(wide(path)));
}

Added MediaJob::addFile(std::string_view path, const AddRules& rules) {
  FitnessRules fitness;
  fitness.refusesCutFiles = rules.refusesCutFiles;
  fitness.refusesMissingKeys = rules.refusesMissingKeys;
  fitness.selection = rules.selection;
  fitness.patientKey = [&rules](TextView name, TextView id) {
    return rules.patientKey ? wide(*rules.patientKey) : patientKey(name, id);
  };
  AddedFile told;
  static_cast<void>(builder().AddFitFile(wide(path), fitness, told));  // told says it
  return {told.outcome, narrow(told.firstFile), told.isPixelDataCut, std::move(told.missingKeys)};
}

void MediaJob::setCopies(bool needRoom) {
  builder().sourcesStay = true;
  builder().needsRoomForCopies = needRoom;
}

Outcome MediaJob::handOver(std::size_t index, std::string_view copy) {
  return outcomeOf(builder().HandOver(index, wide(copy)));
}

Outcome MediaJob::setVolume(const std::string& name) {
  const ScopedBstr text(wide(name));
  object_.put_VolumeName(text.Get());
  if (read(object_, &CQuillonMediaRW::get_VolumeName) == name) return {};
  return "The volume name " + name + " has more than 32 characters.";
}

Outcome MediaJob::setTarget(std::string_view path) {
  const ScopedBstr text(wide(path));
  builder().performDirectCopy = true;
  if (object_.put_DirectCopyDirectory(text.Get()) == S_OK) return {};
  if (SysStringLen(text.Get()) > kMaxPathChars) {
    return "The path name " + std::string(path) + " is longer than " +
           std::to_string(kMaxPathChars) + " characters.";
  }
  return outcomeOf(false);
}

Outcome MediaJob::askForPages() {
  if (!builder().portableData || canMakeXmlDocument()) return {};
  return noXmlLibrary("The pages for a browser need");
}

void MediaJob::setPageStylesheets(std::string_view directory) {
  builder().pageStylesheets = wide(directory);
}

void MediaJob::setRecording(bool simulate, bool fullErase, bool eject) {
  builder().simulateCreation = simulate;
  builder().performFullErase = fullErase;
  builder().ejectMediumAfterCreation = eject;
}

Outcome MediaJob::write() {
  builder().clearAfterWrite = false;
  builder().holdsRootWhenWritten = true;
  VARIANT_BOOL isWritten = VARIANT_FALSE;
  return outcomeOf(object_.Write(&isWritten) == S_OK && isWritten == VARIANT_TRUE);
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

Outcome MediaJob::loadHeader(std::string_view file, std::string_view stylesheet,
                             std::string& text) {
  const ScopedBstr fileName(wide(file));
  const ScopedBstr location(wide(stylesheet));
  ScopedBstr header;
  if (object_.LoadHeaderTextFromFile(fileName.Get(), location.Get(), header.Put()) != S_OK ||
      header.Get() == nullptr) {
    return canMakeXmlDocument() ? errorText() : noXmlLibrary("Stylesheets need");
  }
  text = narrow(header);
  return {};
}

Outcome MediaJob::loadHeader(std::string_view file, HeaderForm form, std::string& text) {
  Text header;
  if (!object_.LoadHeader(wide(file), form, header)) return errorText();
  text = cli::narrow(header);
  return {};
}

std::string MediaJob::failedFile() {
  Text path;
  Text reason;
  if (!builder().GetFailedFile(path, reason)) return {};
  return narrow(path) + ": " + narrow(reason);
}

void MediaJob::wipe(bool removesAll, std::string& asideDirectory) {
  Text aside;
  builder().Wipe(removesAll, aside);
  asideDirectory = narrow(aside);
}

Text patientKey(TextView name, TextView id) {
  // DOE^JOHN and DOE^JOHN^^ are the same name: trailing separators of empty components say nothing.
  Text key(name.substr(0, name.find_last_not_of(OLESTR("^= ")) + 1));
  // A backslash separates values in the file and therefore occurs in neither of the two.
  return key.append(OLESTR("\\")).append(id);
}

Text wide(std::string_view text) { return WidenText(text, FileSystemCodePage()); }

std::string narrow(TextView text) { return NarrowText(text, FileSystemCodePage()); }

std::string mediumPath(TextView path) {
  std::string text = narrow(path);
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

std::string labelOfFileSet(const std::string& root) {
  std::ifstream file(root + "/LABEL.TXT", std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  Text text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text += static_cast<OLECHAR>(static_cast<unsigned char>(bytes[i]) |
                                 static_cast<unsigned char>(bytes[i + 1]) << 8);
  }
  if (text.ends_with(OLESTR('\n'))) text.pop_back();
  return narrow(text);
}

std::string temporaryDirectory() {
  std::array<OLECHAR, MAX_PATH + 1> buffer{};
  const DWORD units = GetTempPathW(static_cast<DWORD>(buffer.size()), buffer.data());
  if (units == 0 || units > buffer.size()) return {};
  return narrow(TextView(buffer.data(), units));
}

std::string temporaryJobDirectory() {
  const std::string directory = temporaryDirectory();
  return directory.empty() ? directory : directory + "QUILLON";
}

}  // namespace quillon::cli
