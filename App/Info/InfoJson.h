// What is known of a recording, for a program.
#ifndef FRAMESIFT_APP_INFO_INFOJSON_H
#define FRAMESIFT_APP_INFO_INFOJSON_H

#include <string>

#include "Info/InfoReport.h"

namespace Marvane::FrameSift {

// One line with one object.
std::string InfoJson(const INFO_REPORT& report);
// The same for a file that nothing is known of. name: escaped.
std::string FailureJson(const std::string& name, EXIT_CODE eCode, const std::string& error);

} // namespace Marvane::FrameSift

#endif
