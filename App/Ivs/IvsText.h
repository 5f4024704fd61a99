// Texts that a camera sends: bytes of any kind.
#ifndef FRAMESIFT_APP_IVS_IVSTEXT_H
#define FRAMESIFT_APP_IVS_IVSTEXT_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace Marvane::FrameSift {

// As EscapeBytes, and what else a terminal may obey or XML cannot hold stands as \xNN too.
std::string CameraText(std::span<const uint8_t> bytes);

// Of a field that ends with a zero if the text is shorter.
template <class BYTE, size_t COUNT>
std::string CameraText(const BYTE (&field)[COUNT])
{
    static_assert(sizeof(BYTE) == 1);
    size_t nLength = 0;
    while (nLength < COUNT && field[nLength] != 0)
        ++nLength;
    return CameraText({reinterpret_cast<const uint8_t*>(field), nLength});
}

} // namespace Marvane::FrameSift

#endif
