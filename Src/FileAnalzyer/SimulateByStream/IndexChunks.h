// An array that grows piece by piece.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXCHUNKS_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXCHUNKS_H

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "Memory/TryAlloc.h"

namespace Marvane::FrameSift {

// Elements never move, so growing never needs room for two copies; only the list of chunks is copied, a pointer for
// each. Not a std::deque: that one allocates when it is made, where no result can tell of a failure.
template <class T, size_t nPerChunk>
class CIndexChunks
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    static constexpr size_t sc_perChunk = nPerChunk;

    // Room for nCount elements in all. False without memory; nothing has changed then.
    [[nodiscard]] bool Reserve(size_t nCount)
    {
        while (m_chunks.size() * nPerChunk < nCount) {
            auto pChunk = TRY_ALLOC_ARRAY<T>(nPerChunk);
            if (pChunk == nullptr || !TryAlloc([&] { m_chunks.push_back(std::move(pChunk)); }))
                return false;
        }
        return true;
    }
    [[nodiscard]] bool ReserveNext() { return Reserve(m_nSize + 1); }

    // The room must have been reserved.
    void Append(const T& element) { (*this)[m_nSize++] = element; }
    size_t Size() const { return m_nSize; }
    // The room stays.
    void Clear() { m_nSize = 0; }

    // Any element that has room. Those of one chunk stand next to each other.
    T& operator[](size_t n) { return m_chunks[n / nPerChunk][n % nPerChunk]; }
    const T& operator[](size_t n) const { return m_chunks[n / nPerChunk][n % nPerChunk]; }

private:
    std::vector<std::unique_ptr<T[]>> m_chunks;
    size_t m_nSize = 0;
};

} // namespace Marvane::FrameSift

#endif
