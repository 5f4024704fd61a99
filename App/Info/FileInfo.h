// Finds out about one recording, in a single pass; if it has no index, as a stream.
#ifndef FRAMESIFT_APP_INFO_FILEINFO_H
#define FRAMESIFT_APP_INFO_FILEINFO_H

#include <cstdint>
#include <span>
#include <string>

#include "Info/InfoReport.h"

namespace Marvane::FrameSift {

// key: AES; may be empty. nType: a KX_STREAM_TYPE; 0: to be found out. Throws CAppError for what cannot be read to its end or is no recording, and at Ctrl-C.
INFO_REPORT InfoOf(const std::string& path, std::span<const uint8_t> key, int32_t nType);

} // namespace Marvane::FrameSift

#endif
