#include "HandleMgr/HandleMgr.h"

#include <atomic>
#include <thread>

#include "ParserMethod/StreamAnalyzer.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

void* ToHandle(uintptr_t nSlot)
{
    return reinterpret_cast<void*>(nSlot);
}

class CCounted : public IGetError
{
public:
    explicit CCounted(int& nAlive) : m_nAlive(nAlive) { ++m_nAlive; }
    ~CCounted() override { --m_nAlive; }
    int32_t GetLastError() override { return 42; }

private:
    int& m_nAlive;
};

} // namespace

TEST(HandleTable, NumbersOutsideItAreBad)
{
    KX_FRAME_INFO frame{};
    uint8_t byte = 0;
    for (const uintptr_t nSlot : {uintptr_t{0}, uintptr_t{1}, uintptr_t{4095}, uintptr_t{4096}, ~uintptr_t{0}}) {
        void* handle = ToHandle(nSlot);
        int32_t nType = 77;
        for (const int nResult :
             {KX_ParseData(handle, &byte, 1), KX_GetOneFrame(handle, &frame), KX_GetStreamType(handle, &nType),
              KX_StreamEncryptKey(handle, 1, &byte, 1), KX_SetInfoProcCallback(handle, nullptr, nullptr),
              KX_GetLastError(handle), KX_Destroy(handle)})
            EXPECT_EQ(nResult, KX_ERROR_INVALID_HANDLE);
        EXPECT_EQ(nType, 0);
    }
}

TEST(HandleTable, HandsOutTheLowestNumberAndEndsAt4095)
{
    std::vector<void*> handles;
    for (uintptr_t nSlot = 1; nSlot <= 4095; ++nSlot) {
        handles.push_back(KX_CreateFrameSift(0));
        ASSERT_EQ(handles.back(), ToHandle(nSlot));
    }
    EXPECT_EQ(KX_CreateFrameSift(0), nullptr);
    // A freed number comes back at once, and a stale client reaches the new analyzer.
    EXPECT_EQ(KX_Destroy(ToHandle(100)), KX_SUCCESS);
    EXPECT_EQ(KX_Destroy(ToHandle(100)), KX_ERROR_INVALID_HANDLE);
    EXPECT_EQ(KX_Destroy(ToHandle(4095)), KX_SUCCESS);
    EXPECT_EQ(KX_CreateFrameSift(0), ToHandle(100));
    EXPECT_EQ(GoodSeqs(FeedInChunks(ToHandle(100), ZoavFrame().Seq(5).Payload(Filler(40)), WholeChunk())),
              std::vector<int32_t>{5});
    EXPECT_EQ(KX_CreateFrameSift(0), ToHandle(4095));
    for (void* handle : handles)
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
}

TEST(HandleTable, AnotherKindIsABadStreamHandle)
{
    void* stream = KX_CreateFrameSift(0);
    void* file = KX_CreateFileHandle(0, "nothing");
    uint8_t byte = 0;
    KX_FRAME_INFO frame;
    KXint64 nOffset = 0;
    int nType = 77;
    for (const int nResult :
         {KX_ParseData(file, &byte, 1), KX_GetOneFrame(file, &frame), KX_FileParser(stream, nullptr, nullptr, nullptr),
          KX_GetFileStreamType(stream, &nType), KX_FileReadOneFrame(stream, &nOffset, &frame),
          KX_FileReadOneFrame(stream, nullptr, nullptr), KX_FileSeekByTime(stream, 0),
          KX_FileSeekByOffset(stream, 0, 0)})
        EXPECT_EQ(nResult, KX_ERROR_INVALID_HANDLE);
    EXPECT_EQ(nType, 0);
    for (void* handle : {stream, file}) {
        EXPECT_EQ(KX_GetLastError(handle), KX_SUCCESS); // a question that both kinds answer
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        EXPECT_EQ(KX_GetLastError(handle), KX_ERROR_INVALID_HANDLE);
    }
}

TEST(HandleTable, AFileThatCannotBeBegunLeavesNoHandle)
{
    EXPECT_EQ(KX_CreateFileHandle(0, nullptr), nullptr);
    EXPECT_EQ(g_handleMgr.CreateFileAnalyzer(0, "/no such", nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(g_handleMgr.CreateSliceAnalyzer(0, nullptr, nullptr, nullptr, 0, 1), nullptr);
    EXPECT_EQ(KX_GetLastError(ToHandle(1)), KX_ERROR_INVALID_HANDLE);
}

// The object's last act is to look at its own handle from another thread, which must neither wait nor get at it.
TEST(HandleTableThreads, AHandleThatIsBeingDestroyedIsABadHandle)
{
    class CLooksBack : public IGetError
    {
    public:
        ~CLooksBack() override
        {
            std::thread looker([] {
                EXPECT_EQ(KX_GetLastError(ToHandle(1)), KX_ERROR_INVALID_HANDLE);
                EXPECT_EQ(KX_Destroy(ToHandle(1)), KX_ERROR_INVALID_HANDLE);
                EXPECT_EQ(g_handleMgr.GetStreamAnalzyer(ToHandle(1)), nullptr);
                void* next = KX_CreateFrameSift(0);
                EXPECT_EQ(next, ToHandle(2)); // the number is not free yet
                KX_Destroy(next);
            });
            looker.join();
        }
        int32_t GetLastError() override { return 42; }
    };
    ASSERT_EQ(g_handleMgr.InsertParser(new CLooksBack, CHandleMgr::PARSER_TYPE_STREAM), 1);
    EXPECT_EQ(KX_GetLastError(ToHandle(1)), 42);
    EXPECT_EQ(KX_Destroy(ToHandle(1)), KX_SUCCESS);
    EXPECT_EQ(KX_GetLastError(ToHandle(1)), KX_ERROR_INVALID_HANDLE);
}

TEST(HandleTable, AReferenceOutlivesTheDestroy)
{
    void* handle = KX_CreateFrameSift(0);
    CStreamAnalyzer* pAnalyzer = g_handleMgr.GetStreamAnalzyer(handle); // as a call in progress holds it
    EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
    EXPECT_EQ(pAnalyzer->GetStreamType(), 0);
    EXPECT_EQ(g_handleMgr.GetStreamAnalzyer(handle), pAnalyzer); // further calls can still enter
    EXPECT_TRUE(g_handleMgr.ReleaseRefCount(handle));
    EXPECT_TRUE(g_handleMgr.ReleaseRefCount(handle));
    EXPECT_FALSE(g_handleMgr.ReleaseRefCount(handle));
}

TEST(HandleTable, UninitDeletesWhatIsOpen)
{
    auto pTable = std::make_unique<CHandleMgr>();
    int nAlive = 0;
    EXPECT_EQ(pTable->InsertParser(new CCounted(nAlive), CHandleMgr::PARSER_TYPE_STREAM), 1);
    EXPECT_EQ(pTable->InsertParser(new CCounted(nAlive), CHandleMgr::PARSER_TYPE_STREAM), 2);
    pTable->Uninit();
    EXPECT_EQ(nAlive, 0);
}

TEST(HandleTableThreads, DifferentHandlesDoNotDisturbEachOther)
{
    std::vector<std::thread> threads;
    std::atomic<int> nWrong{0};
    for (uint32_t nThread = 0; nThread < 4; ++nThread) {
        threads.emplace_back([nThread, &nWrong] {
            for (uint32_t nRound = 0; nRound < 10; ++nRound) {
                const auto frames = RandomFrames(nThread * 100 + nRound, 20, 500);
                if (GoodSeqs(Sift(Joined(frames) + Filler(50), RandomChunks(nRound, 300))).size() != frames.size())
                    ++nWrong;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nWrong, 0);
}

TEST(HandleTableThreads, AHandleCanBeAskedKeyedAndDestroyedWhileItParses)
{
    const Bytes stream = Joined(RandomFrames(7, 200, 500));
    for (int nRound = 0; nRound < 5; ++nRound) {
        void* handle = KX_CreateFrameSift(0);
        // Takes the records only: their pointers end with the handle, at any moment.
        std::thread parser([&] {
            Bytes bytes = stream;
            KX_FRAME_INFO frame;
            for (size_t nPos = 0; nPos + 100 <= bytes.size(); nPos += 100) {
                KX_ParseData(handle, bytes.data() + nPos, 100);
                while (KX_GetOneFrame(handle, &frame) == KX_SUCCESS) {
                }
            }
        });
        std::thread asker([&] {
            const Bytes key(49, 1);
            for (int n = 0; n < 200; ++n) {
                int32_t nType = 0;
                KX_GetStreamType(handle, &nType);
                KX_GetLastError(handle);
                KX_StreamEncryptKey(handle, static_cast<uint32_t>(n % 2 == 0 ? KX_ENCRYPT_AES : KX_ENCRYPT_AES256),
                                    key.data(), static_cast<int32_t>(key.size()));
            }
        });
        asker.join();
        if (nRound % 2 == 0)
            parser.join();
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        if (parser.joinable())
            parser.join();
    }
}

} // namespace Marvane::FrameSift
