#include "ThreadControl/KXThread.h"
#include "Support/Testing.h"

#include <atomic>
#include <thread>

namespace Marvane::FrameSift {
namespace {

// Runs until it is closed, or returns at once.
class Worker : public CKXThread
{
public:
    explicit Worker(bool bReturnAtOnce = false) : m_bReturnAtOnce(bReturnAtOnce) {}
    ~Worker() override { CloseThread(); }

    int InsideThreadProc() override
    {
        m_nBegun = m_nBegun + 1; // plain: creation and join must order it
        m_bSeenRunning = IsRuning();
        m_bInside = true;
        while (!m_bReturnAtOnce && IsRuning())
            std::this_thread::yield();
        m_bInside = false;
        m_bDone = true;
        return -1;
    }

    std::atomic<bool> m_bInside = false;
    std::atomic<bool> m_bDone = false;
    bool m_bSeenRunning = false;
    int m_nBegun = 0;

private:
    bool m_bReturnAtOnce;
};

TEST(KXThreadThreads, RunsUntilClosed)
{
    Worker worker;
    EXPECT_FALSE(worker.IsRuning());
    EXPECT_EQ(worker.CloseThread(), 0U); // none yet
    for (int n = 1; n <= 20; ++n) {
        ASSERT_TRUE(worker.BeginThread());
        EXPECT_TRUE(worker.IsRuning());
        while (n % 2 == 0 && !worker.m_bInside)
            std::this_thread::yield();
        EXPECT_EQ(worker.CloseThread(), 0U);
        EXPECT_FALSE(worker.IsRuning());
        EXPECT_FALSE(worker.m_bInside);
        EXPECT_EQ(worker.m_nBegun, n);
    }
}

// However soon the procedure asks, it is not taken for closed; nor is it when it has returned of itself.
TEST(KXThreadThreads, RunningFromItsFirstLineUntilClosed)
{
    for (int n = 0; n < 200; ++n) {
        Worker worker(true);
        ASSERT_TRUE(worker.BeginThread());
        while (!worker.m_bDone)
            std::this_thread::yield();
        EXPECT_TRUE(worker.m_bSeenRunning);
        EXPECT_TRUE(worker.IsRuning());
    }
}

TEST(KXThreadThreads, SecondBeginClosesTheFirst)
{
    Worker worker;
    ASSERT_TRUE(worker.BeginThread());
    while (!worker.m_bInside)
        std::this_thread::yield();
    ASSERT_TRUE(worker.BeginThread());
    EXPECT_TRUE(worker.IsRuning());
    worker.CloseThread();
    EXPECT_EQ(worker.m_nBegun, 2);
}

} // namespace
} // namespace Marvane::FrameSift
