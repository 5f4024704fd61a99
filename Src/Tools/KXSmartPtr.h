// A shared pointer whose counts live in one map of the process, not in the objects.
#ifndef FRAMESIFT_SRC_TOOLS_KXSMARTPTR_H
#define FRAMESIFT_SRC_TOOLS_KXSMARTPTR_H

#include <cstdint>
#include <map>

#include "Tools/AutoLock.h"

namespace Marvane::FrameSift {

// Any thread may copy and release pointers.
class CRefCountHelper
{
public:
    // Null is counted like any other. False without memory for a new entry.
    static bool addRef(void* ptr) noexcept;

    // The last release deletes the object, still under the lock: closing a slow file holds up every other pointer of the
    // library meanwhile. A pointer that is not counted is left alone.
    template <class T>
    static void releaseRef(T* ptr) noexcept
    {
        Release(ptr, [](void* pObject) { delete static_cast<T*>(pObject); });
    }

private:
    struct REF_COUNTS
    {
        std::map<void*, int32_t> s_refMap;
        CKXMutex s_lock;
        bool IsIdle() const;
    };

    // They outlive the process as long as a pointer does: a parse thread may still be running then.
    static REF_COUNTS& Counts();

    static void Release(void* ptr, void (*pfnDelete)(void*)) noexcept;
};

template <class T>
class CKXSmartPtr
{
public:
    CKXSmartPtr() = default;

    // Takes the object over. Without memory for its count it is deleted at once, and the pointer is empty.
    explicit CKXSmartPtr(T* ptr) : m_ptr(ptr)
    {
        if (!CRefCountHelper::addRef(ptr)) {
            delete ptr;
            m_ptr = nullptr;
        }
    }
    CKXSmartPtr(const CKXSmartPtr& other) : m_ptr(other.m_ptr) { CRefCountHelper::addRef(m_ptr); }
    virtual ~CKXSmartPtr() { CRefCountHelper::releaseRef(m_ptr); }

    CKXSmartPtr& operator=(const CKXSmartPtr& rhs)
    {
        if (this == &rhs)
            return *this;
        CRefCountHelper::releaseRef(m_ptr);
        CRefCountHelper::addRef(rhs.m_ptr);
        m_ptr = rhs.m_ptr;
        return *this;
    }

    T* operator->() const { return m_ptr; }
    T& operator*() const { return *m_ptr; }
    T* get() const { return m_ptr; }
    explicit operator void*() const { return m_ptr; }
    explicit operator int64_t() const { return reinterpret_cast<int64_t>(m_ptr); }

private:
    T* m_ptr = nullptr;
};

} // namespace Marvane::FrameSift

#endif
