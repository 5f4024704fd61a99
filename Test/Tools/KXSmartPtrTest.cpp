#include "Tools/KXSmartPtr.h"

#include <thread>

#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

struct Counted
{
    explicit Counted(int& nAlive) : m_nAlive(nAlive) { ++m_nAlive; }
    virtual ~Counted() { --m_nAlive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    int& m_nAlive;
};

using CountedPtr = CKXSmartPtr<Counted>;

} // namespace

TEST(KXSmartPtr, TheLastReleaseDeletes)
{
    int nAlive = 0;
    CountedPtr kept;
    EXPECT_EQ(kept.get(), nullptr);
    {
        const CountedPtr first(new Counted(nAlive));
        const CountedPtr copy(first);
        kept = copy;
        const CountedPtr& self = kept;
        kept = self;
        EXPECT_EQ(&*kept, first.get());
        EXPECT_EQ(static_cast<void*>(kept), first.get());
    }
    EXPECT_EQ(nAlive, 1);
    kept = CountedPtr(new Counted(nAlive)); // lets go of the first
    EXPECT_EQ(nAlive, 1);
    kept = CountedPtr();
    EXPECT_EQ(nAlive, 0);
}

TEST(KXSmartPtr, WhatWasNeverCountedIsLeftAlone)
{
    int nAlive = 0;
    Counted onStack(nAlive);
    CRefCountHelper::releaseRef(&onStack);
    EXPECT_EQ(nAlive, 1);
    const CountedPtr null(nullptr);
    const CountedPtr another(nullptr); // null has a count like any other
    EXPECT_EQ(another.get(), nullptr);
}

TEST(KXSmartPtrThreads, ManyShareOneObject)
{
    int nAlive = 0; // plain: the lock orders its changes
    {
        const CountedPtr shared(new Counted(nAlive));
        std::vector<std::thread> threads;
        for (int nThread = 0; nThread < 4; ++nThread) {
            threads.emplace_back([shared] {
                for (int n = 0; n < 500; ++n) {
                    CountedPtr mine(shared);
                    mine = CountedPtr(mine);
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(nAlive, 1);
    }
    EXPECT_EQ(nAlive, 0);
}

} // namespace Marvane::FrameSift
