#include "institution.h"

#include <array>

#include "media_creation_key.h"

namespace quillon {

namespace {

struct InstitutionValue {
  const OLECHAR* name;
  Text Institution::*text;
};
// clang-format off
constexpr std::array kValues{
    InstitutionValue{kInstitutionNameValue,       &Institution::name},
    InstitutionValue{kInstitutionAddressValue,    &Institution::address},
    InstitutionValue{kInstitutionPhoneValue,      &Institution::phone},
    InstitutionValue{kInstitutionWebValue,        &Institution::web},
    InstitutionValue{kInstitutionDisclaimerValue, &Institution::disclaimer},
};
// clang-format on

}  // namespace

bool ReadInstitution(Institution& institution, CBaseItem& errors) {
  institution = Institution{};
  MediaCreationKey key;
  if (!key.Open()) {
    return key.IsMissing() ||
           errors.Fail(kMsgCannotOpenRegistryKey,
                       {kMediaCreationKeyPath, errors.LoadMessage(kMsgRegistryKeyMissing)});
  }
  for (const InstitutionValue& value : kValues) {
    if (!key.ReadText(value.name, institution.*value.text) && !key.IsMissing()) {
      return errors.Fail(
          kMsgCannotQueryRegistryValue,
          {kMediaCreationKeyPath, value.name, errors.LoadMessage(kMsgRegistryValueMissing)});
    }
  }
  return true;
}

}  // namespace quillon
