// Small help with keys, for the files of CKXDecrypt.
#ifndef FRAMESIFT_SRC_TOOLS_KXDECRYPTBYTES_H
#define FRAMESIFT_SRC_TOOLS_KXDECRYPTBYTES_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace Marvane::FrameSift {

inline bool IsAllZero(std::span<const uint8_t> bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](uint8_t nByte) { return nByte == 0; });
}

template <class T>
void Wipe(T& keys)
{
    static_assert(std::is_trivially_copyable_v<T>);
    // Volatile: a compiler may leave out plain stores to memory that is about to be given up.
    auto* pBytes = reinterpret_cast<volatile uint8_t*>(&keys);
    for (size_t n = 0; n < sizeof keys; ++n)
        pBytes[n] = 0;
}

} // namespace Marvane::FrameSift

#endif
