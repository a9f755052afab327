// Where the settings of media creation stand in the registry.
#pragma once

#include "foundation/text.h"

namespace quillon {

// Below HKEY_LOCAL_MACHINE.
inline constexpr const OLECHAR* kMediaCreationKeyPath =
    OLESTR("SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation");

inline constexpr const OLECHAR* kCurrentPracticeValue = OLESTR("CurrentPractice");
inline constexpr const OLECHAR* kPortableDataValue = OLESTR("PortableData");
inline constexpr const OLECHAR* kOtherContentValue = OLESTR("OtherContentSourceDir");
inline constexpr const OLECHAR* kToolkitLogValue = OLESTR("ToolkitLogFile");
inline constexpr const OLECHAR* kInstitutionNameValue = OLESTR("InstitutionName");
inline constexpr const OLECHAR* kInstitutionAddressValue = OLESTR("InstitutionAddress");
inline constexpr const OLECHAR* kInstitutionPhoneValue = OLESTR("InstitutionPhone");
inline constexpr const OLECHAR* kInstitutionWebValue = OLESTR("InstitutionWeb");
inline constexpr const OLECHAR* kInstitutionDisclaimerValue = OLESTR("InstitutionDisclaimer");

}  // namespace quillon
