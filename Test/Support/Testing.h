// What nearly every test needs.
#ifndef FRAMESIFT_TEST_SUPPORT_TESTING_H
#define FRAMESIFT_TEST_SUPPORT_TESTING_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Cases of one behaviour: for (const auto& [pName, nResult] : Rows<const char*, int>{{"sound", 0}, {"cut", -1}})
template <class... Columns>
using Rows = std::vector<std::tuple<Columns...>>;

// Fields of a record, to be compared together: EXPECT_EQ((Fields{frame.width, frame.height}), (Fields{352, 288}))
using Fields = std::vector<int64_t>;

inline uint32_t LengthOf(const Bytes& bytes)
{
    return static_cast<uint32_t>(bytes.size());
}

// Bytes are always handed on as a copy of just their size, so that AddressSanitizer finds a read past them.
inline Bytes Part(const Bytes& bytes, size_t nFrom, size_t nCount = SIZE_MAX)
{
    const std::span part = std::span(bytes).subspan(nFrom);
    const auto front = part.first(std::min(nCount, part.size()));
    return {front.begin(), front.end()};
}

inline Bytes Counting(size_t nSize, uint8_t nFirst = 0)
{
    Bytes bytes(nSize);
    std::iota(bytes.begin(), bytes.end(), nFirst);
    return bytes;
}

} // namespace Marvane::FrameSift

#endif
