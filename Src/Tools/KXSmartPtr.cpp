#include "Tools/KXSmartPtr.h"

#include <new>

#include "ThreadControl/KXThread.h"
#include "Tools/NeverDestroyed.h"

namespace Marvane::FrameSift {

// The thread first: one that deletes itself may have just taken out the last entry, and still hold the lock.
bool CRefCountHelper::REF_COUNTS::IsIdle() const
{
    return CKXThread::CountDeleting() == 0 && s_refMap.empty();
}

CRefCountHelper::REF_COUNTS& CRefCountHelper::Counts()
{
    static CNeverDestroyed<REF_COUNTS> s_counts;
    return s_counts.Get();
}

bool CRefCountHelper::addRef(void* ptr) noexcept
{
    REF_COUNTS& counts = Counts();
    CKXAutoMutexLock lock(counts.s_lock);
    try {
        ++counts.s_refMap[ptr];
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void CRefCountHelper::Release(void* ptr, void (*pfnDelete)(void*)) noexcept
{
    REF_COUNTS& counts = Counts();
    CKXAutoMutexLock lock(counts.s_lock);
    const auto entry = counts.s_refMap.find(ptr);
    if (entry == counts.s_refMap.end() || --entry->second > 0)
        return;
    counts.s_refMap.erase(entry);
    pfnDelete(ptr);
}

} // namespace Marvane::FrameSift
