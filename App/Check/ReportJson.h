// A report for a program.
#ifndef FRAMESIFT_APP_CHECK_REPORTJSON_H
#define FRAMESIFT_APP_CHECK_REPORTJSON_H

#include <string>

#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

// The object that holds the reports of all files comes in pieces, so that many files need no more memory than one:
// JsonTitle, then JsonEntry for each file, then JsonEnd.
std::string JsonTitle();
std::string JsonEntry(const CHECK_REPORT& report, bool bFirst);
std::string JsonEnd(EXIT_CODE eWorst);

} // namespace Marvane::FrameSift

#endif
