// Allocation that answers null instead of throwing.
#ifndef FRAMESIFT_SRC_MEMORY_TRYALLOC_H
#define FRAMESIFT_SRC_MEMORY_TRYALLOC_H

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace Marvane::FrameSift {

// nCount elements without initial values; null if there is no memory.
template <class T>
std::unique_ptr<T[]> TRY_ALLOC_ARRAY(size_t nCount)
{
    return std::unique_ptr<T[]>(new (std::nothrow) T[nCount]);
}

// Runs an operation of a standard container. False if it ran out of memory; the container is then as it was.
template <class Operation>
[[nodiscard]] bool TryAlloc(Operation&& operation)
{
    try {
        std::forward<Operation>(operation)();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// An object; null if there is no memory for it or for what its members allocate.
template <class T, class... Arguments>
std::unique_ptr<T> TryMake(Arguments... arguments)
{
    std::unique_ptr<T> pObject;
    (void)TryAlloc([&] { pObject = std::make_unique<T>(arguments...); });
    return pObject;
}

} // namespace Marvane::FrameSift

#endif
