// Base of a class that runs one procedure on a thread of its own.
#ifndef FRAMESIFT_SRC_THREADCONTROL_KXTHREAD_H
#define FRAMESIFT_SRC_THREADCONTROL_KXTHREAD_H

#include <pthread.h>

#include <atomic>
#include <cstdint>

namespace Marvane::FrameSift {

// Read by the thread while its owner writes it; the creation and the join order all else.
struct KX_THREAD_INFO
{
    std::atomic<bool> bCreated = false;
    std::atomic<bool> bRun = false;
    std::atomic<pthread_t> hThread = 0;
};

// BeginThread and CloseThread belong to the owner's thread. A derived class calls CloseThread in its own destructor:
// by the time this one runs, the procedure and what it works on are gone.
class CKXThread
{
public:
    CKXThread() = default;
    virtual ~CKXThread();
    CKXThread(const CKXThread&) = delete;
    CKXThread& operator=(const CKXThread&) = delete;

    // Work of the thread. It throws nothing, looks at IsRuning now and then and returns when that is false.
    virtual int InsideThreadProc() = 0;

    // False if the system gives no thread. A thread that was begun before is closed first.
    bool BeginThread();

    // Asks the thread to end and waits for it, for ever if the procedure does not look at IsRuning. Always 0. Called on
    // the thread itself, which cannot wait for its own end, it lets it run out alone: the object must outlive it, as it
    // does behind DeleteWhenDone.
    uint32_t CloseThread();

    // True from BeginThread to CloseThread, also after the procedure has returned of itself.
    bool IsRuning() const;

    // Whether the caller is the thread that BeginThread began.
    bool IsOwnThread() const;

    // On the own thread only: as its last act it deletes the object, which must have come from new.
    void DeleteWhenDone();
    // Threads that will do so, and have not yet.
    static int32_t CountDeleting();

protected:
    KX_THREAD_INFO m_threadInfo;

private:
    static void* OutSideThreadProc(void* pThread);

    bool m_bDeleteWhenDone = false; // the own thread's alone
};

} // namespace Marvane::FrameSift

#endif
