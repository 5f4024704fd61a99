// Reads from a window at a place that was reckoned with a length from the wire.
#ifndef FRAMESIFT_SRC_MEMORY_WINDOWREAD_H
#define FRAMESIFT_SRC_MEMORY_WINDOWREAD_H

#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <type_traits>

#include "Memory/LogicData.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

// nLen bytes at nPos, or null. The sum of an index and a wire length fits 64 bits, and is judged before it is narrowed.
inline uint8_t* GetDataAt(CLogicData& logicData, int64_t nPos, int64_t nLen)
{
    constexpr int64_t nMax = std::numeric_limits<int32_t>::max();
    if (nPos < 0 || nPos > nMax || nLen < 0 || nLen > nMax)
        return nullptr;
    return logicData.GetData(static_cast<int>(nPos), static_cast<int>(nLen));
}

// The big-endian word at nPos, as a scan would see it.
inline std::optional<uint32_t> ReadWordAt(CLogicData& logicData, int64_t nPos)
{
    const uint8_t* pBytes = GetDataAt(logicData, nPos, sizeof(uint32_t));
    return pBytes != nullptr ? std::optional(LoadUint32Msb(pBytes)) : std::nullopt;
}

// A copy of the wire record at nPos, or nothing if the window does not hold all of it.
template <class Record>
std::optional<Record> ReadRecordAt(CLogicData& logicData, int64_t nPos)
{
    static_assert(std::is_trivially_copyable_v<Record> && alignof(Record) == 1);
    const uint8_t* pBytes = GetDataAt(logicData, nPos, sizeof(Record));
    if (pBytes == nullptr)
        return std::nullopt;
    Record record;
    std::memcpy(&record, pBytes, sizeof record);
    return record;
}

} // namespace Marvane::FrameSift

#endif
