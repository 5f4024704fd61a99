// The records of a callback as arrays.
#ifndef FRAMESIFT_APP_IVS_IVSRECORDS_H
#define FRAMESIFT_APP_IVS_IVSRECORDS_H

#include <algorithm>
#include <cstddef>
#include <span>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

template <class T>
std::span<const T> RecordsOf(const void* pRecords, int nLen)
{
    if (pRecords == nullptr || nLen <= 0)
        return {};
    return {static_cast<const T*>(pRecords), static_cast<size_t>(nLen) / sizeof(T)};
}

// As many as counted, and no more than there are: the counts of some records are those of the wire.
template <class T, size_t COUNT>
std::span<const T> Front(const T (&array)[COUNT], size_t nCount)
{
    return std::span<const T>(array).first(std::min(nCount, COUNT));
}

// An array that a record leads to.
template <class T>
std::span<const T> Behind(const T* pArray, size_t nCount)
{
    return pArray == nullptr ? std::span<const T>() : std::span<const T>(pArray, nCount);
}

inline std::span<const KX_IVS_OBJ_A0_Ex> ObjectsOf(const KX_IVS_OBJ_ALL& all)
{
    if (all.type != 1)
        return {};
    return Behind(static_cast<const KX_IVS_OBJ_A0_Ex*>(all.ObjUnion.IVSObjA0Ex),
                  all.ObjUnionLen / sizeof(KX_IVS_OBJ_A0_Ex));
}

} // namespace Marvane::FrameSift

#endif
