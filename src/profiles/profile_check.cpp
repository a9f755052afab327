#include "profiles/profile_check.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "dicom/elem_sq.h"
#include "dicom/tags.h"
#include "tables/profile_tables.h"

namespace quillon {

namespace {

constexpr std::string_view kNone = "none";
constexpr std::size_t kMaxShown = 80;  // of a value that somebody may have made long
constexpr ProfileElement kSopClass{tags::kSopClassUid, "SOP Class UID"};
constexpr DcTag kOverlays = 16;
constexpr DcTag kNextOverlay = 0x00020000;

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kPadding(" \0", 2);
  const std::size_t first = text.find_first_not_of(kPadding);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kPadding) + 1 - first);
}

template <typename Each>
void ForEachValue(std::string_view values, Each each) {
  for (std::size_t begin = 0; begin <= values.size();) {
    const std::size_t end = std::min(values.find('\\', begin), values.size());
    each(values.substr(begin, end - begin));
    begin = end + 1;
  }
}

bool IsOneOf(std::string_view value, std::string_view values) {
  bool isFound = false;
  ForEachValue(values, [&](std::string_view one) { isFound = isFound || one == value; });
  return isFound;
}

std::string Shown(std::string_view value) {
  if (value.size() <= kMaxShown) return std::string(value);
  return std::string(value.substr(0, kMaxShown)) + "...";
}

std::string SyntaxText(std::string_view uid) {
  const auto names = SyntaxNames();
  const auto found = std::ranges::find(names, uid, &SyntaxName::uid);
  return std::string(found == names.end() ? uid : found->name);
}

// "8, 10 or 12"
std::string ListText(const ProfileElement& element, std::string_view values) {
  const bool isSyntax = element.tag == tags::kTransferSyntaxUid;
  std::vector<std::string> texts;
  ForEachValue(values, [&](std::string_view one) {
    texts.push_back(isSyntax ? SyntaxText(one) : std::string(one));
  });
  std::string text = texts.front();
  for (std::size_t i = 1; i < texts.size(); ++i) {
    text += (i + 1 == texts.size() ? " or " : ", ") + texts[i];
  }
  return text;
}

// The first value, as a text. Nothing for an element without one.
std::optional<std::string> ValueOf(DcElem& element) {
  if (const auto text = element.stringValue(0)) {
    const std::string_view value = Trimmed(*text);
    return value.empty() ? std::nullopt : std::optional<std::string>(value);
  }
  std::uint32_t number = 0;
  if (element.valueCount() == 0 || element.getValue(number) != kDcOk) return std::nullopt;
  return std::to_string(number);
}

std::optional<long> NumberIn(const std::optional<std::string>& value) {
  long number = 0;
  if (!value) return std::nullopt;
  const char* const end = value->data() + value->size();
  const auto read = std::from_chars(value->data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

std::string RuleText(const ProfileRule& rule) {
  std::string text = ElementText(rule.element) + " must ";
  switch (rule.test) {
    case ProfileTest::OneOf:
      text += "be " + ListText(rule.element, rule.values);
      break;
    case ProfileTest::AtMost:
      text += "be at most " + std::string(rule.values);
      break;
    case ProfileTest::Anything:
    case ProfileTest::There:
      text += "be there";
      break;
    case ProfileTest::Items:
      text += "have an item";
      break;
    case ProfileTest::Components:
      text += "have an item with Pixel Component Organization (0018,6044)";
      break;
    case ProfileTest::OneLess:
      text += "be one less than Bits Stored";
      break;
    case ProfileTest::AllAllocated:
      text += "be as Bits Allocated";
      break;
    case ProfileTest::Narrowest:
      text += "be 8 for 8 bits that are stored and 16 for more";
      break;
    case ProfileTest::NoOverlays:
      text += "not be there, in no group of overlays";
      break;
  }
  if (rule.when.element.tag != 0 && rule.when.element.tag != tags::kTransferSyntaxUid) {
    text += " in images with " + ListText(rule.when.element, rule.when.values);
  }
  return text;
}

class Check {
 public:
  Check(const Profile& profile, const ProfileObject& object) : profile_(profile), object_(object) {}

  std::vector<ProfileBreach> Run() {
    if (!IsClassTaken()) {
      const std::string_view found = object_.sopClassUid.empty() ? kNone : object_.sopClassUid;
      return {{ElementText(kSopClass) + " must be one that the profile takes", Shown(found)}};
    }
    for (const ProfileRule& rule : profile_.rules) {
      if (Concerns(rule) && CanBeAsked(rule) && Holds(rule.when)) Test(rule);
    }
    return std::move(breaches_);
  }

 private:
  [[nodiscard]] bool IsClassTaken() const {
    return std::ranges::any_of(profile_.rules, [this](const ProfileRule& rule) {
      return rule.element.tag == tags::kTransferSyntaxUid && Concerns(rule);
    });
  }

  [[nodiscard]] bool CanBeAsked(const ProfileRule& rule) const {
    const auto isOfElements = [](DcTag tag) { return tag != 0 && tag != tags::kTransferSyntaxUid; };
    return object_.isReadable ||
           (!isOfElements(rule.element.tag) && !isOfElements(rule.when.element.tag));
  }

  [[nodiscard]] bool Concerns(const ProfileRule& rule) const {
    return rule.sopClass == object_.sopClassUid ||
           (rule.sopClass == kAnySopClass && IsStoredOnMedia());
  }

  [[nodiscard]] bool IsStoredOnMedia() const {
    constexpr std::string_view kRoot = "1.2.840.10008.5.1.";
    return object_.isKnownClass && object_.sopClassUid.starts_with(kRoot) &&
           std::ranges::count(ClassesNotOnMedia(), object_.sopClassUid.substr(kRoot.size())) == 0;
  }

  [[nodiscard]] std::optional<std::string> Value(DcTag tag) const {
    if (tag != tags::kTransferSyntaxUid) {
      DcElem* const element = object_.elements.find(tag);
      return element == nullptr ? std::nullopt : ValueOf(*element);
    }
    if (object_.transferSyntaxUid.empty()) return std::nullopt;
    return std::string(object_.transferSyntaxUid);
  }

  [[nodiscard]] bool Holds(const ProfileCondition& condition) const {
    if (condition.element.tag == 0) return true;
    const auto value = Value(condition.element.tag);
    return value && IsOneOf(*value, condition.values);
  }

  void Test(const ProfileRule& rule) {
    const auto value = Value(rule.element.tag);
    const auto number = NumberIn(value);
    const auto stored = NumberIn(Value(tags::kBitsStored));
    switch (rule.test) {
      case ProfileTest::OneOf:
        return Demand(rule, value && IsOneOf(*value, rule.values), value);
      case ProfileTest::AtMost:
        return Demand(rule, number && *number <= *NumberIn(std::string(rule.values)), value);
      case ProfileTest::Anything:
        return;
      case ProfileTest::There:
        return Demand(rule, object_.elements.contains(rule.element.tag), value);
      case ProfileTest::Items:
        return Demand(rule, HasItem(rule.element.tag, 0), value);
      case ProfileTest::Components:
        return Demand(rule, HasItem(rule.element.tag, tags::kPixelComponentOrganization), value);
      case ProfileTest::OneLess:
        return Demand(rule, number && stored && *number == *stored - 1, value);
      case ProfileTest::AllAllocated:
        return Demand(rule, number && number == NumberIn(Value(tags::kBitsAllocated)), value);
      case ProfileTest::Narrowest:
        return Demand(rule, number && stored && *number == (*stored == 8 ? 8 : 16), value);
      case ProfileTest::NoOverlays:
        for (DcTag i = 0; i < kOverlays; ++i) {
          const DcTag tag = rule.element.tag + i * kNextOverlay;
          if (object_.elements.contains(tag)) return Demand(rule, false, Value(tag));
        }
        return;
    }
  }

  // inner: 0 for any item.
  [[nodiscard]] bool HasItem(DcTag tag, DcTag inner) const {
    const auto* sequence = dynamic_cast<const DcElemSq*>(object_.elements.find(tag));
    for (std::size_t i = 0; sequence != nullptr && i < sequence->itemCount(); ++i) {
      if (inner == 0 || sequence->item(i)->contains(inner)) return true;
    }
    return false;
  }

  void Demand(const ProfileRule& rule, bool isMet, const std::optional<std::string>& value) {
    if (isMet) return;
    std::string found(value ? std::string_view(*value) : kNone);
    if (value && rule.element.tag == tags::kTransferSyntaxUid) found = SyntaxText(found);
    breaches_.push_back({RuleText(rule), Shown(found)});
  }

  const Profile& profile_;
  const ProfileObject& object_;
  std::vector<ProfileBreach> breaches_;
};

}  // namespace

std::vector<ProfileBreach> CheckObject(const Profile& profile, const ProfileObject& object) {
  return Check(profile, object).Run();
}

bool Concerns(const ProfileKey& key, DcDirRecType type, std::string_view sopClassUid) {
  return key.type == type && (key.sopClass == kAnySopClass || key.sopClass == sopClassUid);
}

bool WantsValue(const ProfileKey& key, const DcElemList& elements) {
  switch (key.need) {
    case ProfileNeed::Value:
      return true;
    case ProfileNeed::Place:
      return false;
    case ProfileNeed::IfThere:
    case ProfileNeed::IfShared:
      return HasValueFor(key, elements);
    case ProfileNeed::IfBiplane:
      break;
  }
  constexpr int kPlaneAt = 2;
  const DcElem* type = elements.find(tags::kImageType);
  const std::string_view plane =
      type == nullptr ? "" : Trimmed(type->stringValue(kPlaneAt).value_or(""));
  return plane == "BIPLANE A" || plane == "BIPLANE B";
}

bool HasValueFor(const ProfileKey& key, const DcElemList& elements) {
  const DcTag tag = key.element.tag;
  DcElem* const element =
      key.need == ProfileNeed::IfShared ? FindForKey(elements, tag) : elements.find(tag);
  const auto* sequence = dynamic_cast<const DcElemSq*>(element);
  if (sequence != nullptr) return sequence->itemCount() != 0;
  return element != nullptr && ValueOf(*element).has_value();
}

DcElem* FindForKey(const DcElemList& elements, DcTag tag) {
  if (DcElem* own = elements.find(tag)) return own;
  const auto* shared =
      dynamic_cast<const DcElemSq*>(elements.find(tags::kSharedFunctionalGroupsSequence));
  if (shared == nullptr || shared->itemCount() == 0) return nullptr;
  const DcElemSqItem& groups = *shared->item(0);
  if (DcElem* group = groups.find(tag)) return group;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const auto* group = dynamic_cast<const DcElemSq*>(groups.at(i));
    if (group == nullptr || group->itemCount() == 0) continue;
    if (DcElem* found = group->item(0)->find(tag)) return found;
  }
  return nullptr;
}

std::string MediumRule(const Profile& profile) {
  return "the medium must be " + MediaText(profile);
}

std::string KeyRule(const ProfileKey& key) {
  const std::string element = ElementText(key.element);
  switch (key.need) {
    case ProfileNeed::Value:
      return element + " must have a value in the directory";
    case ProfileNeed::Place:
      return element + " must be in the directory";
    case ProfileNeed::IfBiplane:
      return element + " must have a value in the directory for images of two planes";
    case ProfileNeed::IfThere:
    case ProfileNeed::IfShared:
      break;
  }
  return element + " must be in the directory where the object has it";
}

std::string IconRule(const Profile& profile) {
  const std::string pixels = std::to_string(profile.iconPixels);
  return "Icon Image Sequence (0088,0200) must be in the directory, with " + pixels + "x" + pixels +
         " pixels";
}

}  // namespace quillon
