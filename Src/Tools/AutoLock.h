// The library's mutex and its scoped lock.
#ifndef FRAMESIFT_SRC_TOOLS_AUTOLOCK_H
#define FRAMESIFT_SRC_TOOLS_AUTOLOCK_H

namespace Marvane::FrameSift {

// A recursive mutex: a thread may take it again while it holds it. If there is no memory for the mutex, the program
// runs on unguarded; the constructor cannot report, and a library that is loaded into a recorder must not end it.
class CKXMutex
{
public:
    CKXMutex();
    virtual ~CKXMutex();
    CKXMutex(const CKXMutex&) = delete;
    CKXMutex& operator=(const CKXMutex&) = delete;

    void Lock();
    void Unlock();

private:
    void* m_pData = nullptr; // pthread_mutex_t
};

// Holds the mutex to the end of the scope, or to Unlock.
class CKXAutoMutexLock
{
public:
    explicit CKXAutoMutexLock(CKXMutex& csMutex);
    virtual ~CKXAutoMutexLock();
    CKXAutoMutexLock(const CKXAutoMutexLock&) = delete;
    CKXAutoMutexLock& operator=(const CKXAutoMutexLock&) = delete;

    void Lock();
    void Unlock();

private:
    CKXMutex& m_csMutex;
    bool m_bLocked;
};

} // namespace Marvane::FrameSift

#endif
