#include "Tools/base64.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>

namespace Marvane::FrameSift {

namespace {

constexpr std::string_view sc_alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(sc_alphabet.size() == 64);

constexpr uint8_t sc_noDigit = 0xFF;
constexpr auto sc_digits = [] {
    std::array<uint8_t, 256> digits = {};
    digits.fill(sc_noDigit);
    for (size_t i = 0; i < sc_alphabet.size(); ++i)
        digits[static_cast<uint8_t>(sc_alphabet[i])] = static_cast<uint8_t>(i);
    return digits;
}();

// Appends the four characters of up to three bytes.
void EncodeGroup(std::string_view group, std::string& text)
{
    uint32_t nBits = 0;
    for (size_t i = 0; i < 3; ++i)
        nBits = nBits << 8 | (i < group.size() ? static_cast<uint8_t>(group[i]) : 0U);
    for (size_t i = 0; i < 4; ++i)
        text += i <= group.size() ? sc_alphabet[nBits >> (18 - 6 * i) & 0x3F] : '=';
}

std::string Encode(std::string_view bytes)
{
    try {
        std::string text;
        text.reserve(bytes.size() / 3 * 4 + 4);
        for (size_t nPos = 0; nPos < bytes.size(); nPos += 3)
            EncodeGroup(bytes.substr(nPos, 3), text);
        return text;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

std::string Decode(std::string_view text, bool bSkipSpace)
{
    try {
        std::string bytes;
        bytes.reserve(text.size() / 4 * 3 + 3);
        uint32_t nBits = 0;
        uint32_t nFilled = 0; // bits not yet delivered
        for (const char ch : text) {
            const auto nByte = static_cast<uint8_t>(ch);
            if (bSkipSpace && nByte <= ' ')
                continue;
            if (sc_digits[nByte] == sc_noDigit)
                break;
            nBits = (nBits << 6 | sc_digits[nByte]) & 0xFFFF; // at most 12 bits are held
            nFilled += 6;
            if (nFilled < 8)
                continue;
            nFilled -= 8;
            bytes += static_cast<char>(nBits >> nFilled & 0xFF);
        }
        return bytes;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

std::string_view View(const char* begin, const char* end)
{
    return begin != nullptr && begin < end ? std::string_view(begin, static_cast<size_t>(end - begin))
                                           : std::string_view();
}

} // namespace

std::string base64_encode(const unsigned char* bytes, unsigned int length)
{
    return bytes != nullptr ? Encode({reinterpret_cast<const char*>(bytes), length}) : std::string();
}

std::string base64_decode(const std::string& text)
{
    return Decode(text, false);
}

std::string sc_base64Encode(const char* bytes, int length)
{
    return bytes != nullptr && length > 0 ? _base64EncodeRaw(bytes, bytes + length) : std::string();
}

std::string sc_base64Decode(const char* text, int length)
{
    return text != nullptr && length > 0 ? _base64DecodeRaw(text, text + length) : std::string();
}

std::string _base64EncodeRaw(const char* begin, const char* end)
{
    return Encode(View(begin, end));
}

std::string _base64DecodeRaw(const char* begin, const char* end)
{
    return Decode(View(begin, end), true);
}

} // namespace Marvane::FrameSift
