// What is known of a recording, for a person.
#ifndef FRAMESIFT_APP_INFO_INFOTEXT_H
#define FRAMESIFT_APP_INFO_INFOTEXT_H

#include <string>

#include "Info/InfoReport.h"

namespace Marvane::FrameSift {

// Whole lines, about a dozen.
std::string InfoText(const INFO_REPORT& report);

} // namespace Marvane::FrameSift

#endif
