#include "Tools/AutoLock.h"

#include <pthread.h>

#include <new>

namespace Marvane::FrameSift {

CKXMutex::CKXMutex()
{
    auto* pMutex = new (std::nothrow) pthread_mutex_t;
    if (pMutex == nullptr)
        return;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(pMutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    m_pData = pMutex;
}

CKXMutex::~CKXMutex()
{
    auto* pMutex = static_cast<pthread_mutex_t*>(m_pData);
    if (pMutex == nullptr)
        return;
    pthread_mutex_destroy(pMutex);
    delete pMutex;
}

void CKXMutex::Lock()
{
    if (m_pData != nullptr)
        pthread_mutex_lock(static_cast<pthread_mutex_t*>(m_pData));
}

void CKXMutex::Unlock()
{
    if (m_pData != nullptr)
        pthread_mutex_unlock(static_cast<pthread_mutex_t*>(m_pData));
}

CKXAutoMutexLock::CKXAutoMutexLock(CKXMutex& csMutex) : m_csMutex(csMutex), m_bLocked(true)
{
    m_csMutex.Lock();
}

CKXAutoMutexLock::~CKXAutoMutexLock()
{
    if (m_bLocked)
        m_csMutex.Unlock();
}

// Takes the mutex once more or again; the flag is not touched, so the scope gives back at most one lock.
void CKXAutoMutexLock::Lock()
{
    m_csMutex.Lock();
}

void CKXAutoMutexLock::Unlock()
{
    m_csMutex.Unlock();
    m_bLocked = false;
}

} // namespace Marvane::FrameSift
