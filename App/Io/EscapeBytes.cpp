#include "Io/EscapeBytes.h"

#include <cstddef>
#include <cstdint>

namespace Marvane::FrameSift {

namespace {

uint8_t ByteAt(std::string_view bytes, size_t nPos)
{
    return static_cast<uint8_t>(bytes[nPos]);
}

size_t SequenceLength(uint8_t chLead)
{
    if (chLead < 0x80)
        return 1;
    if (chLead >= 0xC2 && chLead <= 0xDF)
        return 2;
    if (chLead >= 0xE0 && chLead <= 0xEF)
        return 3;
    return chLead >= 0xF0 && chLead <= 0xF4 ? 4 : 0;
}

// The second byte also keeps out over-long forms, surrogates and what lies above U+10FFFF.
bool IsSecondByte(uint8_t chLead, uint8_t chSecond)
{
    const uint8_t chLowest = chLead == 0xE0 ? 0xA0 : chLead == 0xF0 ? 0x90 : 0x80;
    const uint8_t chHighest = chLead == 0xED ? 0x9F : chLead == 0xF4 ? 0x8F : 0xBF;
    return chSecond >= chLowest && chSecond <= chHighest;
}

// Length of the valid UTF-8 sequence at the front, 0 if there is none.
size_t ValidSequence(std::string_view bytes)
{
    const size_t nLength = SequenceLength(ByteAt(bytes, 0));
    if (nLength == 0 || nLength > bytes.size())
        return 0;
    if (nLength > 1 && !IsSecondByte(ByteAt(bytes, 0), ByteAt(bytes, 1)))
        return 0;
    for (size_t n = 2; n < nLength; ++n) {
        if ((ByteAt(bytes, n) & 0xC0) != 0x80)
            return 0;
    }
    return nLength;
}

void AppendHex(std::string& text, uint8_t chByte)
{
    constexpr char sc_digits[] = "0123456789abcdef";
    text += "\\x";
    text += sc_digits[chByte >> 4];
    text += sc_digits[chByte & 15];
}

} // namespace

std::string EscapeBytes(std::string_view bytes)
{
    std::string text;
    while (!bytes.empty()) {
        const uint8_t chByte = ByteAt(bytes, 0);
        const size_t nLength = ValidSequence(bytes);
        if (nLength == 0 || chByte < 0x20 || chByte == 0x7F)
            AppendHex(text, chByte);
        else if (chByte == '\\')
            text += "\\\\";
        else
            text += bytes.substr(0, nLength);
        bytes.remove_prefix(nLength == 0 ? 1 : nLength);
    }
    return text;
}

} // namespace Marvane::FrameSift
