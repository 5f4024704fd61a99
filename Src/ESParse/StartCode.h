// The start code 00 00 01 of the MPEG family.
#ifndef FRAMESIFT_SRC_ESPARSE_STARTCODE_H
#define FRAMESIFT_SRC_ESPARSE_STARTCODE_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace Marvane::FrameSift {

inline constexpr uint32_t gsk_startCodeLen = 3;

// The caller sees to it that nPos + 2 lies within bytes.
inline bool IsStartCodeAt(std::span<const uint8_t> bytes, size_t nPos)
{
    return bytes[nPos] == 0 && bytes[nPos + 1] == 0 && bytes[nPos + 2] == 1;
}

// The first start code at nFrom or later with at least nBehind bytes behind it; bytes.size() if there is none.
inline size_t FindStartCode(std::span<const uint8_t> bytes, size_t nFrom, size_t nBehind)
{
    // By the last byte of the code: ones are rarer than zeros.
    size_t nOne = nFrom + gsk_startCodeLen - 1;
    while (nOne + nBehind < bytes.size()) {
        const void* pFound = std::memchr(bytes.data() + nOne, 1, bytes.size() - nBehind - nOne);
        if (pFound == nullptr)
            break;
        nOne = static_cast<size_t>(static_cast<const uint8_t*>(pFound) - bytes.data());
        if (IsStartCodeAt(bytes, nOne - 2))
            return nOne - 2;
        ++nOne;
    }
    return bytes.size();
}

} // namespace Marvane::FrameSift

#endif
