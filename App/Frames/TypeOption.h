// A stream type that the user fixes, where nothing in the bytes tells it.
#ifndef FRAMESIFT_APP_FRAMES_TYPEOPTION_H
#define FRAMESIFT_APP_FRAMES_TYPEOPTION_H

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>

namespace Marvane::FrameSift {

// What the verbs' help says of it.
inline constexpr const char* gsk_typeHelp = "Take it for a stream of this type instead of finding it out: 1 elementary "
                                            "MPEG-4, which never shows itself, 194 the "
                                            "older formats, 8, 195, 196, 197 zoav, myav, lxav, wmav";

// True for a number, whatever it is.
bool IsTypeNumber(const std::string& text);
// A KX_STREAM_TYPE. Throws CLI::ValidationError for anything that the library has no parser for.
int32_t ParseStreamType(const std::string& text);

// Declares --type N, which lands in nType; 0 stays there if it is not given.
CLI::Option* AddTypeOption(CLI::App& verb, int32_t& nType);

} // namespace Marvane::FrameSift

#endif
