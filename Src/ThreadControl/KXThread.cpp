#include "ThreadControl/KXThread.h"

namespace Marvane::FrameSift {

namespace {

// Not by the thread's number, which the system gives to another one as soon as this one is gone.
thread_local const CKXThread* t_pCurrent = nullptr;
std::atomic<int32_t> s_nDeleting = 0;

} // namespace

CKXThread::~CKXThread()
{
    CloseThread();
}

bool CKXThread::BeginThread()
{
    CloseThread(); // else nobody could join the thread before

    // Set ahead: the thread may look at IsRuning before pthread_create is back here, and must not think itself closed.
    m_threadInfo.bCreated.store(true, std::memory_order_relaxed);
    m_threadInfo.bRun.store(true, std::memory_order_relaxed);
    pthread_t hThread = 0;
    const bool bCreated = pthread_create(&hThread, nullptr, &CKXThread::OutSideThreadProc, this) == 0;
    if (!bCreated)
        hThread = 0;
    m_threadInfo.hThread.store(hThread, std::memory_order_relaxed);
    m_threadInfo.bCreated.store(bCreated, std::memory_order_relaxed);
    m_threadInfo.bRun.store(bCreated, std::memory_order_relaxed);
    return bCreated;
}

uint32_t CKXThread::CloseThread()
{
    if (!m_threadInfo.bCreated.load(std::memory_order_relaxed))
        return 0;
    m_threadInfo.bRun.store(false, std::memory_order_relaxed);
    if (IsOwnThread())
        pthread_detach(pthread_self());
    else
        pthread_join(m_threadInfo.hThread.load(std::memory_order_relaxed), nullptr);
    m_threadInfo.hThread.store(0, std::memory_order_relaxed);
    m_threadInfo.bCreated.store(false, std::memory_order_relaxed);
    return 0;
}

bool CKXThread::IsRuning() const
{
    return m_threadInfo.hThread.load(std::memory_order_relaxed) != 0 &&
           m_threadInfo.bCreated.load(std::memory_order_relaxed) && m_threadInfo.bRun.load(std::memory_order_relaxed);
}

bool CKXThread::IsOwnThread() const
{
    return t_pCurrent == this;
}

void CKXThread::DeleteWhenDone()
{
    m_bDeleteWhenDone = true;
    ++s_nDeleting;
}

int32_t CKXThread::CountDeleting()
{
    return s_nDeleting;
}

void* CKXThread::OutSideThreadProc(void* pThread)
{
    auto* pSelf = static_cast<CKXThread*>(pThread);
    t_pCurrent = pSelf;
    pSelf->m_threadInfo.hThread.store(pthread_self(), std::memory_order_relaxed); // the creator's store may come later
    pSelf->InsideThreadProc();
    if (pSelf->m_bDeleteWhenDone) {
        delete pSelf;
        --s_nDeleting;
    }
    return nullptr;
}

} // namespace Marvane::FrameSift
