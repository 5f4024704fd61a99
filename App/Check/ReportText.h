// A report for a person.
#ifndef FRAMESIFT_APP_CHECK_REPORTTEXT_H
#define FRAMESIFT_APP_CHECK_REPORTTEXT_H

#include <string>

#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

// One line with the verdict, the totals, then a line for each finding in the order of the file.
std::string ReportText(const CHECK_REPORT& report);

} // namespace Marvane::FrameSift

#endif
