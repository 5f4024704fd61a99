// The records that a parser hands to a callback.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSRECORDS_H
#define FRAMESIFT_SRC_IVSPARSER_IVSRECORDS_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>

#include "Memory/TryAlloc.h"
#include "framesift/ivs.h"
#include "framesift/result.h"

namespace Marvane::FrameSift {

// nCount records of zeros, the bytes between their members included: a callback may copy them as they stand. Null if
// there is no memory.
template <class RECORD>
std::unique_ptr<RECORD[]> TryAllocRecords(size_t nCount)
{
    static_assert(std::is_trivial_v<RECORD>);
    auto records = TRY_ALLOC_ARRAY<RECORD>(nCount);
    if (records != nullptr)
        std::memset(records.get(), 0, nCount * sizeof(RECORD));
    return records;
}

// Answers what a parser answers that has handed out its records.
template <class RECORD>
int HandOut(IVSCallBack pCallBack, void* pUserData, KX_IVS_PARSE_TYPE eType, RECORD* pRecords, size_t nCount)
{
    pCallBack(eType, pRecords, static_cast<int>(nCount * sizeof(RECORD)), pUserData);
    return KX_SUCCESS;
}

inline int HandOutNothing(IVSCallBack pCallBack, void* pUserData, KX_IVS_PARSE_TYPE eType)
{
    pCallBack(eType, nullptr, 0, pUserData);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift

#endif
