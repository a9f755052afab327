// The UID half of the dictionary: lookups by id and by text, registration, and new UIDs.
#include <array>
#include <cstdio>
#include <string_view>

#include "dicom/dict.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"
#include "dict_impl.h"
#include "platform/win32.h"
#include "uid_table.h"

namespace quillon {
namespace {

constexpr std::size_t kMaxUidChars = 128;
constexpr std::size_t kMaxDescriptionChars = 60;
constexpr std::size_t kMaxRootChars = 100;
// A "." and one component of five characters.
constexpr std::size_t kRootExtensionChars = 6;
constexpr const char* kNullArgument = "Null argument passed";

std::size_t hashOf(std::string_view text) {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash ^ (hash >> 15);
}

// Root that a caller put into the buffer for the new UID; the toolkit's own when it is none of its
// extensions.
std::string_view rootIn(std::string_view buffer) {
  const std::string_view toolkitRoot = kDcToolkitRoot;
  if (!buffer.starts_with(toolkitRoot)) return toolkitRoot;
  const std::string_view extension = buffer.substr(toolkitRoot.size());
  if (!extension.starts_with('.')) return toolkitRoot;
  const bool oneComponent =
      extension.size() == kRootExtensionChars ||
      (extension.size() > kRootExtensionChars && extension[kRootExtensionChars] == '.');
  if (!oneComponent) return toolkitRoot;
  std::string_view root = buffer.substr(0, kMaxRootChars);
  if (root.ends_with('.')) root.remove_suffix(1);
  return root;
}

}  // namespace

DcDict::Impl::Impl() {
  uids.reserve(kUidSlots);
  for (const UidRow& row : kUidTable) {
    append({static_cast<DcUid>(row.id), row.uid, row.kind, row.description});
  }
}

void DcDict::Impl::append(DcDictUidDef def) {
  std::size_t place = hashOf(def.uid) % slotByText.size();
  while (slotByText[place] != 0) place = (place + 1) % slotByText.size();
  uids.push_back(std::move(def));
  const auto slotFromOne = static_cast<std::uint16_t>(uids.size());
  slotByText[place] = slotFromOne;
  const auto id = static_cast<std::uint32_t>(uids.back().id);
  slotById[id] = slotFromOne;
  if (id > largestId) largestId = id;
}

const DcDictUidDef* DcDict::Impl::find(DcUid id) const {
  const auto index = static_cast<std::size_t>(id);
  if (index >= slotById.size() || slotById[index] == 0) return nullptr;
  return &uids[slotById[index] - 1U];
}

const DcDictUidDef* DcDict::Impl::find(std::string_view uid) const {
  for (std::size_t place = hashOf(uid) % slotByText.size(); slotByText[place] != 0;
       place = (place + 1) % slotByText.size()) {
    const DcDictUidDef& def = uids[slotByText[place] - 1U];
    if (def.uid == uid) return &def;
  }
  return nullptr;
}

DcDict::DcDict() : impl_(std::make_unique<Impl>()) {}
DcDict::~DcDict() = default;

DcCode DcDict::getUid(DcUid id, std::string* uid) const {
  if (uid == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::getUid", kNullArgument);
    return kDcDictNullArgument;
  }
  uid->clear();
  if (id == DcUid::None) return kDcNotFound;
  const DcDictUidDef* def = impl_->find(id);
  if (def == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::getUid", "Enum constant UID %d (0x%x) is not in dictionary",
          static_cast<int>(id), static_cast<unsigned>(id));
    return kDcNotFound;
  }
  uid->assign(def->uid);
  return kDcOk;
}

DcCode DcDict::getUidDef(const char* uid, DcUid* idOut) const {
  if (idOut != nullptr) *idOut = DcUid::None;
  if (uid == nullptr || idOut == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::getUidDef", kNullArgument);
    return kDcDictNullArgument;
  }
  const DcDictUidDef* def = impl_->find(std::string_view(uid));
  if (def == nullptr) return kDcNotFound;
  *idOut = def->id;
  return kDcOk;
}

DcCode DcDict::getUidType(DcUid id, DcUidKind* kindOut) const {
  if (kindOut == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::getUidType", kNullArgument);
    return kDcDictNullArgument;
  }
  const DcDictUidDef* def = impl_->find(id);
  *kindOut = def != nullptr ? def->kind : DcUidKind::Other;
  return def != nullptr ? kDcOk : kDcNotFound;
}

DcCode DcDict::getDesc(DcUid id, std::string* description) const {
  if (description == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::getDesc", kNullArgument);
    return kDcDictNullArgument;
  }
  const DcDictUidDef* def = impl_->find(id);
  description->assign(def != nullptr ? std::string_view(def->description) : "Unknown UID");
  return def != nullptr ? kDcOk : kDcNotFound;
}

DcCode DcDict::getEndian(DcUid transferSyntax, int* orderOut) const {
  if (orderOut == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::getEndian", kNullArgument);
    return kDcDictNullArgument;
  }
  const DcDictUidDef* def = impl_->find(transferSyntax);
  if (def == nullptr || def->kind != DcUidKind::TransferSyntax) {
    *orderOut = 2;
    dcLog(DcLogLevel::Error, "DcDict::getEndian", "'%s' is not a Transfer Syntax UID",
          def != nullptr ? def->uid.c_str() : "");
    return kDcDictInvalidArgument;
  }
  *orderOut = transferSyntax == DcUid::ExplicitBigEndian ? 1 : 0;
  return kDcOk;
}

DcCode DcDict::add(const char* uid, const char* description, DcUid* idOut, DcUidKind kind) {
  static constexpr const char* kFunction = "DcDict::add";
  if (uid == nullptr) {
    if (idOut != nullptr) *idOut = DcUid::None;
    dcLog(DcLogLevel::Error, kFunction, kNullArgument);
    return kDcDictNullArgument;
  }
  const std::string text(trimmed(std::string_view(uid).substr(0, kMaxUidChars)));
  if (const DcDictUidDef* known = impl_->find(text)) {
    if (idOut != nullptr) *idOut = known->id;
    dcLog(DcLogLevel::Error, kFunction, "UID '%s' already exists in dictionary", text.c_str());
    return kDcUidKnown;
  }
  for (const char c : text) {
    if ((c >= '0' && c <= '9') || c == '.') continue;
    dcLog(DcLogLevel::Error, kFunction, "Invalid character '%c' in UID string %s", c, text.c_str());
    return kDcDictInvalidArgument;
  }
  if (impl_->uids.size() == Impl::kUidSlots) {
    dcLog(DcLogLevel::Error, kFunction, "Dictionary UID limit of %d reached",
          static_cast<int>(Impl::kUidSlots));
    return kDcUidTableFull;
  }
  DcDictUidDef def;
  def.id = static_cast<DcUid>(impl_->largestId + 1);
  def.uid = text;
  def.kind = kind == DcUidKind::SopClass ? DcUidKind::SopClassAdded : kind;
  def.description = description != nullptr
                        ? std::string_view(description).substr(0, kMaxDescriptionChars)
                        : "Private UID";
  if (idOut != nullptr) *idOut = def.id;
  impl_->append(std::move(def));
  return kDcOk;
}

void DcDict::genUid(std::string* uid) {
  if (uid == nullptr) {
    dcLog(DcLogLevel::Error, "DcDict::genUid", kNullArgument);
    return;
  }
  std::string made(rootIn(*uid));
  SYSTEMTIME now{};
  GetLocalTime(&now);
  if (now.wYear != 0) {  // 0: the clock could not be read
    for (const WORD field :
         {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond}) {
      made.append(".").append(std::to_string(field));
    }
  }
  made.append(".").append(std::to_string(impl_->uidCounter));
  ++impl_->uidCounter;
  *uid = std::move(made);
}

}  // namespace quillon
