#include "ThreadControl/KXThread.h"

namespace Marvane::FrameSift {

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

void* CKXThread::OutSideThreadProc(void* pThread)
{
    auto* pSelf = static_cast<CKXThread*>(pThread);
    pSelf->m_threadInfo.hThread.store(pthread_self(), std::memory_order_relaxed); // the creator's store may come later
    pSelf->InsideThreadProc();
    return nullptr;
}

} // namespace Marvane::FrameSift
