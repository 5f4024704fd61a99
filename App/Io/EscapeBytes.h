// File names are bytes; messages and JSON are UTF-8.
#ifndef FRAMESIFT_APP_IO_ESCAPEBYTES_H
#define FRAMESIFT_APP_IO_ESCAPEBYTES_H

#include <string>
#include <string_view>

namespace Marvane::FrameSift {

// Answers valid UTF-8 from which the bytes can be had back: a control character or a byte that is not valid UTF-8
// becomes \xNN (two lower-case hexadecimal digits), a backslash becomes \\ and all else stays.
std::string EscapeBytes(std::string_view bytes);

} // namespace Marvane::FrameSift

#endif
