// base64 with the standard alphabet of RFC 4648. A text that cannot be allocated comes out empty.
#ifndef FRAMESIFT_SRC_TOOLS_BASE64_H
#define FRAMESIFT_SRC_TOOLS_BASE64_H

#include <string>

namespace Marvane::FrameSift {

// Two families of the same service, for two kinds of callers. The encoders agree, padded with "="; the decoders differ
// in what they take for the end. In both, a last group of n characters that is cut short gives n - 1 bytes.

std::string base64_encode(const unsigned char* bytes, unsigned int length);
// Ends at the first character outside the alphabet, white space too.
std::string base64_decode(const std::string& text);

// Empty for null, or for a length below 1.
std::string sc_base64Encode(const char* bytes, int length);
// Skips bytes up to 32, as line ends; ends at any other byte outside the alphabet.
std::string sc_base64Decode(const char* text, int length);

// The same for the bytes from begin up to, and without, end.
std::string _base64EncodeRaw(const char* begin, const char* end);
std::string _base64DecodeRaw(const char* begin, const char* end);

} // namespace Marvane::FrameSift

#endif
