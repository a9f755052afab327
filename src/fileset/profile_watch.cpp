#include "profile_watch.h"

#include <algorithm>
#include <utility>

#include "kept_elements.h"
#include "profiles/profile_check.h"

namespace quillon {

namespace {

constexpr std::string_view kRequiredKeysRule =
    "every key that a DICOMDIR requires must have a value";

DcTagSet ElementsFor(const std::vector<const Profile*>& profiles) {
  std::vector<DcTag> tags = KeptTags();
  for (const Profile* profile : profiles) {
    const std::vector<DcTag> more = ElementsOf(*profile);
    tags.insert(tags.end(), more.begin(), more.end());
  }
  return DcTagSet(std::move(tags));
}

Text Wide(std::string_view text) { return WidenText(text, CP_ACP); }

void AddOfSet(ProfileReport& report, bool isKept, std::string_view rule, Text found) {
  ++report.count;
  if (isKept && report.violations.size() < kMaxViolationsOfRule) {
    report.violations.push_back({SharedText(), Wide(rule), std::move(found)});
  }
}

}  // namespace

ProfileWatch::ProfileWatch(const std::vector<const Profile*>& profiles)
    : elements_(ElementsFor(profiles)), ruleCounts_(profiles.size()) {
  for (const Profile* profile : profiles) {
    reports_.push_back({profile, 0, {}});
    AddKeys(*profile);
  }
}

void ProfileWatch::AddKeys(const Profile& profile) {
  for (const ProfileKey& key : profile.keys) {
    const RecordRow& usual = RecordRowOf(key.type);
    ExtendedRow& extended = rows_[key.type];
    if (extended.keys.empty()) extended.keys.assign(usual.keys.begin(), usual.keys.end());
    const KeyNeed need = key.need == ProfileNeed::Place ? KeyNeed::Place : KeyNeed::IfThere;
    const auto known = std::ranges::find(extended.keys, key.element.tag, &RecordKey::tag);
    if (known == extended.keys.end()) {
      extended.keys.push_back({key.element.tag, need});
    } else if (known->need == KeyNeed::IfThere) {
      known->need = need;
    }
    extended.row = {usual.type, extended.keys, usual.sopClasses};
  }
}

const RecordRow& ProfileWatch::RowOf(const RecordRow& row) const {
  const auto found = rows_.find(row.type);
  return found == rows_.end() ? row : found->second.row;
}

void ProfileWatch::Note(std::size_t profile, const SharedText& source, const std::string& rule,
                        const std::string& found) {
  ProfileReport& report = reports_[profile];
  ++report.count;
  if (reports_.size() > 1 || ++ruleCounts_[profile][rule] > kMaxViolationsOfRule) return;
  report.violations.push_back({source, Wide(rule), Wide(found)});
}

void ProfileWatch::Look(const SharedText& source, const DcFileMetaInfo& metaInfo,
                        const DcElemList& dataSet) {
  const DcDirRecType type = RecordRowOf(metaInfo.sopClassUid).type;
  const ProfileObject object{metaInfo.sopClassUid, metaInfo.transferSyntaxUid,
                             type != DcDirRecType::Private, dataSet};
  for (std::size_t i = 0; i < reports_.size(); ++i) {
    const Profile& profile = *reports_[i].profile;
    for (const ProfileBreach& breach : CheckObject(profile, object)) {
      Note(i, source, breach.rule, breach.found);
    }
    for (const ProfileKey& key : profile.keys) {
      const bool isMissing = Concerns(key, type, metaInfo.sopClassUid) &&
                             WantsValue(key, dataSet) && !HasValueFor(key, dataSet);
      if (isMissing) Note(i, source, KeyRule(key), "none");
    }
    // Pixels are not read, so no icons are made.
    if (profile.iconPixels != 0 && type == DcDirRecType::Image) {
      Note(i, source, IconRule(profile), "none");
    }
  }
}

void ProfileWatch::Conclude(const PlannedFileSet& planned) {
  concluded_ = reports_;
  const bool isKept = reports_.size() == 1;
  for (ProfileReport& report : concluded_) {
    for (const RepeatedPatient& patient : planned.repeatedPatients) {
      if (!report.profile->hasUniquePatientIds || !patient.isSameId) continue;
      AddOfSet(report, isKept, kPatientIdRule, patient.same);
    }
    for (const MissingKey& key : planned.incomplete) {
      if (key.isMadeUp) continue;
      ++report.count;
      if (!isKept || report.violations.size() >= kMaxViolationsOfRule) continue;
      SharedText source;
      source.Set(key.source);
      report.violations.push_back(
          {source, Wide(kRequiredKeysRule), Wide("no" + ElementText({key.tag, {}}))});
    }
  }
}

}  // namespace quillon
