// Checks one recording, in a single pass.
#ifndef FRAMESIFT_APP_CHECK_FILECHECK_H
#define FRAMESIFT_APP_CHECK_FILECHECK_H

#include <string>

#include "Check/CheckOptions.h"
#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

// path: "-" is standard input. Whatever keeps the file from being read or recognised stands in the report. Holds one chunk,
// one unfinished frame and one deciphered one, whatever the file's size.
CHECK_REPORT CheckFile(const std::string& path, const CHECK_OPTIONS& options);

} // namespace Marvane::FrameSift

#endif
