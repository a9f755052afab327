#include "registrar.h"

#include <array>
#include <vector>

namespace quillon {
namespace {

struct ScriptValue {
  Text name;  // empty for the key's default value
  Text text;
};

struct ScriptKey {
  Text name;
  bool isKept = false;
  bool isReplaced = false;
  std::vector<ScriptValue> values;
  std::vector<ScriptKey> subkeys;
};

constexpr std::string_view kWhiteSpace = " \t\r\n";

// Reads the tree; each step answers false where the text is no script.
class ScriptParser {
 public:
  ScriptParser(std::string_view script, std::span<const Replacement> replacements)
      : rest_(script), replacements_(replacements) {}

  // The keys below HKEY_CLASSES_ROOT, the only root that servers write to.
  bool Parse(std::vector<ScriptKey>& keys) {
    ScriptKey root;
    if (!Take() || token_ != "HKCR" || !Take() || !ParseBody(root)) return false;
    if (!root.values.empty() || Take()) return false;
    keys = std::move(root.subkeys);
    return true;
  }

 private:
  // The next word or text; false at the end.
  bool Take() {
    const std::size_t start = rest_.find_first_not_of(kWhiteSpace);
    if (start == std::string_view::npos) return false;
    rest_.remove_prefix(start);
    isQuoted_ = rest_[0] == '\'';
    token_.clear();
    if (!isQuoted_) {
      token_ = rest_.substr(0, rest_.find_first_of(kWhiteSpace));
      rest_.remove_prefix(token_.size());
      return true;
    }
    for (rest_.remove_prefix(1); !rest_.empty(); rest_.remove_prefix(1)) {
      if (rest_[0] == '\'') {
        const bool isApostrophe = rest_.size() > 1 && rest_[1] == '\'';
        rest_.remove_prefix(1);
        if (!isApostrophe) return true;
      }
      token_ += rest_[0];
    }
    return false;
  }
  [[nodiscard]] bool IsWord(std::string_view word) const { return !isQuoted_ && token_ == word; }
  [[nodiscard]] bool IsName() const {
    return !token_.empty() && !IsWord("{") && !IsWord("}") && !IsWord("=");
  }

  // Starts at the brace, ends after the one that belongs to it.
  bool ParseBody(ScriptKey& key) {
    if (!IsWord("{")) return false;
    if (!Take()) return false;
    while (!IsWord("}")) {
      if (!(IsWord("val") ? ParseNamedValue(key) : ParseKey(key))) return false;
    }
    return true;
  }

  bool ParseNamedValue(ScriptKey& key) {
    ScriptValue value;
    if (!Take() || !IsName() || !Replace(value.name) || !Take() || !ParseText(value.text)) {
      return false;
    }
    key.values.push_back(std::move(value));
    return Take();
  }

  // Each entry ends with the token after it taken.
  bool ParseKey(ScriptKey& parent) {
    ScriptKey key;
    key.isKept = IsWord("NoRemove");
    key.isReplaced = IsWord("ForceRemove");
    if ((key.isKept || key.isReplaced) && !Take()) return false;
    if (!IsName() || !Replace(key.name) || !Take()) return false;
    if (IsWord("=")) {
      ScriptValue value;
      if (!ParseText(value.text) || !Take()) return false;
      key.values.push_back(std::move(value));
    }
    if (IsWord("{") && (!ParseBody(key) || !Take())) return false;
    parent.subkeys.push_back(std::move(key));
    return true;
  }

  // From the equals sign on.
  bool ParseText(Text& text) {
    return IsWord("=") && Take() && IsWord("s") && Take() && isQuoted_ && Replace(text);
  }

  bool Replace(Text& text) const {
    std::string_view left = token_;
    while (!left.empty()) {
      const std::size_t start = left.find('%');
      text.append(left.begin(),
                  left.begin() + static_cast<std::ptrdiff_t>(std::min(start, left.size())));
      if (start == std::string_view::npos) return true;
      const std::size_t end = left.find('%', start + 1);
      if (end == std::string_view::npos) return false;
      const std::string_view name = left.substr(start + 1, end - start - 1);
      const Replacement* found = Find(Text(name.begin(), name.end()));
      if (found == nullptr) return false;
      text += found->value;
      left.remove_prefix(end + 1);
    }
    return true;
  }

  [[nodiscard]] const Replacement* Find(TextView name) const {
    for (const Replacement& replacement : replacements_) {
      if (replacement.name == name) return &replacement;
    }
    return nullptr;
  }

  std::string_view rest_;
  std::span<const Replacement> replacements_;
  std::string token_;
  bool isQuoted_ = false;
};

// Closes what it holds.
class OpenKey {
 public:
  OpenKey() = default;
  ~OpenKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  [[nodiscard]] HKEY Get() const { return key_; }
  HKEY* Put() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

bool IsMissing(LSTATUS status) {
  return status == static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND) ||
         status == static_cast<LSTATUS>(ERROR_PATH_NOT_FOUND) ||
         status == static_cast<LSTATUS>(ERROR_KEY_DELETED);
}

LSTATUS ListSubkeys(HKEY key, std::vector<Text>& names) {
  constexpr DWORD kLongestNameUnits = 255;
  std::array<OLECHAR, kLongestNameUnits + 1> name{};
  for (DWORD index = 0;; ++index) {
    auto units = static_cast<DWORD>(name.size());
    const LSTATUS status =
        RegEnumKeyExW(key, index, name.data(), &units, nullptr, nullptr, nullptr, nullptr);
    if (status == static_cast<LSTATUS>(ERROR_NO_MORE_ITEMS) || IsMissing(status)) return 0;
    if (status != 0) return status;
    names.emplace_back(name.data(), units);
  }
}

// Windows XP has no call that does it, and its RegDeleteKeyW takes only keys without subkeys.
// Answers that the key is missing when it was, or when somebody else has removed it meanwhile.
LSTATUS RemoveKeyWithSubkeys(HKEY parent, const Text& name) {
  // The key is listed again until nothing below it goes away any more: while somebody else removes
  // subkeys, too, a listing may pass over some; and one may name a key that cannot be opened.
  for (bool goesOn = true; goesOn;) {
    goesOn = false;
    OpenKey opened;
    LSTATUS status = RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ, opened.Put());
    if (status != 0) return status;
    std::vector<Text> subkeys;
    if (status = ListSubkeys(opened.Get(), subkeys); status != 0) return status;
    for (const Text& subkey : subkeys) {
      status = RemoveKeyWithSubkeys(opened.Get(), subkey);
      if (status != 0 && !IsMissing(status)) return status;
      goesOn = goesOn || status == 0;
    }
  }
  return RegDeleteKeyW(parent, name.c_str());
}

LSTATUS RemoveTree(HKEY parent, const Text& name) {
  const LSTATUS status = RemoveKeyWithSubkeys(parent, name);
  return IsMissing(status) ? 0 : status;
}

LSTATUS WriteValue(HKEY key, const ScriptValue& value) {
  const auto lengthBytes = static_cast<DWORD>((value.text.size() + 1) * sizeof(OLECHAR));
  return RegSetValueExW(key, value.name.empty() ? nullptr : value.name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(value.text.c_str()), lengthBytes);
}

// isReplacing: what the script replaces whole is removed first.
LSTATUS AddKey(HKEY parent, const ScriptKey& key, bool isReplacing) {
  LSTATUS status = isReplacing && key.isReplaced ? RemoveTree(parent, key.name) : 0;
  if (status != 0) return status;
  OpenKey opened;
  status = RegCreateKeyExW(parent, key.name.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                           KEY_READ | KEY_WRITE, nullptr, opened.Put(), nullptr);
  if (status != 0) return status;
  for (const ScriptValue& value : key.values) {
    if (status = WriteValue(opened.Get(), value); status != 0) return status;
  }
  for (const ScriptKey& subkey : key.subkeys) {
    if (status = AddKey(opened.Get(), subkey, isReplacing); status != 0) return status;
  }
  return 0;
}

LSTATUS AddKeys(const std::vector<ScriptKey>& keys, bool isReplacing) {
  for (const ScriptKey& key : keys) {
    const LSTATUS status = AddKey(HKEY_CLASSES_ROOT, key, isReplacing);
    if (status != 0) return status;
  }
  return 0;
}

// Goes on after a failure; the first one.
LSTATUS RemoveKey(HKEY parent, const ScriptKey& key) {
  if (!key.isKept) return RemoveTree(parent, key.name);
  OpenKey opened;
  const LSTATUS status =
      RegOpenKeyExW(parent, key.name.c_str(), 0, KEY_READ | KEY_WRITE, opened.Put());
  if (status != 0) return IsMissing(status) ? 0 : status;
  LSTATUS first = 0;
  for (const ScriptKey& subkey : key.subkeys) {
    const LSTATUS removed = RemoveKey(opened.Get(), subkey);
    if (first == 0) first = removed;
  }
  return first;
}

LSTATUS RemoveKeys(const std::vector<ScriptKey>& keys) {
  LSTATUS first = 0;
  for (const ScriptKey& key : keys) {
    const LSTATUS removed = RemoveKey(HKEY_CLASSES_ROOT, key);
    if (first == 0) first = removed;
  }
  return first;
}

LSTATUS RegisterKeys(const std::vector<ScriptKey>& keys, ScriptUse use) {
  const LSTATUS status = AddKeys(keys, /*isReplacing=*/true);
  if (status == 0) return 0;
  if (use == ScriptUse::Register) {
    RemoveKeys(keys);
  } else {
    AddKeys(keys, /*isReplacing=*/false);  // what was removed already comes back
  }
  return status;
}

}  // namespace

HRESULT RunRegistrarScript(std::string_view script, ScriptUse use,
                           std::span<const Replacement> replacements) {
  std::vector<ScriptKey> keys;
  if (!ScriptParser(script, replacements).Parse(keys)) return E_FAIL;
  const LSTATUS status = use == ScriptUse::Unregister ? RemoveKeys(keys) : RegisterKeys(keys, use);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

}  // namespace quillon
