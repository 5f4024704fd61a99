#include "Tools/AutoLock.h"
#include "Support/Testing.h"

#include <thread>

namespace Marvane::FrameSift {

TEST(AutoLockThreads, OneThreadMayTakeItTwiceAnotherWaits)
{
    CKXMutex mutex;
    int nValue = 0;
    std::thread other;
    {
        CKXAutoMutexLock outer(mutex);
        CKXAutoMutexLock inner(mutex);
        other = std::thread([&] {
            CKXAutoMutexLock lock(mutex);
            nValue *= 10;
        });
        inner.Unlock();
        nValue = 4; // the outer lock still holds
    }
    other.join();
    EXPECT_EQ(nValue, 40);
    CKXAutoMutexLock again(mutex); // all has been given back
}

} // namespace Marvane::FrameSift
