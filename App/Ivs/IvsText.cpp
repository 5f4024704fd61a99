#include "Ivs/IvsText.h"

#include <fmt/format.h>

#include <string_view>

#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

namespace {

// Bytes of the sequence at nPos that must not stay, 0 if it may. The text is valid UTF-8.
size_t UnwantedSequence(std::string_view text, size_t nPos)
{
    const auto byteAt = [=](size_t n) { return nPos + n < text.size() ? static_cast<uint8_t>(text[nPos + n]) : 0; };
    if (byteAt(0) == 0xC2 && byteAt(1) < 0xA0) // U+0080 to U+009F: CSI and its kin
        return 2;
    if (byteAt(0) == 0xE2 && byteAt(1) == 0x80 && byteAt(2) >= 0xAA && byteAt(2) <= 0xAE) // turn the writing round
        return 3;
    if (byteAt(0) == 0xE2 && byteAt(1) == 0x81 && byteAt(2) >= 0xA6 && byteAt(2) <= 0xA9) // the same
        return 3;
    const bool bNoCharacter = byteAt(0) == 0xEF && byteAt(1) == 0xBF && byteAt(2) >= 0xBE; // U+FFFE, U+FFFF
    return bNoCharacter ? 3 : 0;
}

} // namespace

std::string CameraText(std::span<const uint8_t> bytes)
{
    const std::string escaped = EscapeBytes({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    std::string text;
    for (size_t nPos = 0; nPos < escaped.size();) {
        const size_t nUnwanted = UnwantedSequence(escaped, nPos);
        for (size_t n = 0; n < nUnwanted; ++n)
            text += fmt::format("\\x{:02x}", static_cast<uint8_t>(escaped[nPos + n]));
        if (nUnwanted == 0)
            text += escaped[nPos];
        nPos += nUnwanted == 0 ? 1 : nUnwanted;
    }
    return text;
}

} // namespace Marvane::FrameSift
