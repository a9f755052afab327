// The XML that the pages of a medium are made of; docs/pages.md describes it for those who write
// stylesheets of their own. One document holds what one page tells: the page of the set all
// patients and studies, the page of a study that study with its series and objects.
#pragma once

#include "pages/medium_model.h"

namespace quillon {

[[nodiscard]] Text IndexPageXml(const MediumModel& medium);
[[nodiscard]] Text StudyPageXml(const MediumModel& medium, const PatientOnMedium& patient,
                                const StudyOnMedium& study);

}  // namespace quillon
