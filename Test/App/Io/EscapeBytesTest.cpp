#include "Io/EscapeBytes.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

TEST(EscapeBytes, ValidTextStaysAndBytesCanBeHadBack)
{
    for (const auto& [pBytes, pText] : Rows<const char*, const char*>{
             {"plain name.zoav", "plain name.zoav"},
             {"gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x8E\xA5", "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x8E\xA5"},
             {"a\\x41", "a\\\\x41"},                       // a backslash of the name is no escape of ours
             {"line\n\x7F", "line\\x0a\\x7f"},             // control characters
             {"\xFFz\xC3", "\\xffz\\xc3"},                 // never valid; cut off
             {"\xC0\xAF", "\\xc0\\xaf"},                   // over-long
             {"\xE0\x80\x80", "\\xe0\\x80\\x80"},          // over-long
             {"\xED\xA0\x80", "\\xed\\xa0\\x80"},          // surrogate
             {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"}, // above the last code point
         })
        EXPECT_EQ(EscapeBytes(pBytes), pText);
}

} // namespace Marvane::FrameSift
