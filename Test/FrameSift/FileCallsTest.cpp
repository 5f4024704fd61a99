// File handles through the exported calls, on real files and real passes.
#include <sys/stat.h>

#include <atomic>
#include <functional>
#include <thread>

#include "Support/ParsedRecording.h"
#include "Support/RandomStream.h"

namespace Marvane::FrameSift {

namespace {

enum class EVENT
{
    Frame,
    Summary,
    End
};

// What one pass calls back. The test looks at it once the pass is over.
struct PASS
{
    std::function<void(EVENT)> onEvent = [](EVENT) {};
    std::vector<KX_FRAME_INFO> frames{};
    std::vector<Bytes> bytes{};
    std::vector<KX_INDEX_INFO> places{};
    KX_FILE_INFO info{};
    std::string order{}; // a letter for each callback
    void* analyzer = nullptr;
    std::atomic<bool> bEnd = false;

    void WaitForEnd() const
    {
        while (!bEnd)
            std::this_thread::yield();
    }
};

int TakeFrame(void* analyzer, KX_FRAME_INFO* frameInfo, KX_INDEX_INFO* indexInfo, int process, void* userData)
{
    PASS& pass = *static_cast<PASS*>(userData);
    EXPECT_TRUE(pass.analyzer == nullptr || pass.analyzer == analyzer);
    pass.analyzer = analyzer;
    if (frameInfo == nullptr) {
        EXPECT_TRUE(indexInfo == nullptr && process == 100);
        pass.order += 'e';
        pass.onEvent(EVENT::End);
        pass.bEnd = true;
        return 0;
    }
    pass.frames.push_back(*frameInfo);
    pass.bytes.push_back(CopyOf(frameInfo->framePointer, frameInfo->frameLen));
    pass.places.push_back(*indexInfo);
    pass.order += 'f';
    pass.onEvent(EVENT::Frame);
    return -1; // nobody looks
}

int TakeSummary(void*, KX_FILE_INFO* fileInfo, void* userData)
{
    PASS& pass = *static_cast<PASS*>(userData);
    pass.info = *fileInfo;
    pass.order += 's';
    pass.onEvent(EVENT::Summary);
    return -1;
}

// 40 frames: a key frame, then 3 P frames, and so on.
std::vector<Bytes> SoundFrames()
{
    std::vector<Bytes> frames;
    for (uint32_t nSeq = 1; nSeq <= 40; ++nSeq) {
        const auto eType = nSeq % 4 == 1 ? ZOAV_FRAME::I : ZOAV_FRAME::P;
        frames.push_back(ZoavFrame().Type(eType).Seq(nSeq).Payload(Bytes(nSeq * 300, 0xAB)));
    }
    return frames;
}

size_t Entries(const char* pDirectory)
{
    std::thread([] {}).join(); // a sanitizer's own thread comes with the first of ours
    const std::filesystem::directory_iterator entries(pDirectory);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

// A thread that deletes its own analyzer is gone a moment later.
void WaitForThreads(size_t nThreads)
{
    for (int n = 0; n < 5000 && Entries("/proc/self/task") > nThreads; ++n)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(Entries("/proc/self/task"), nThreads);
}

// A recording of the sound frames.
class Recording : public RecordingFile
{
public:
    Recording() : RecordingFile(Joined(SoundFrames())) {}
    void* Handle(int nType = 0) const { return KX_CreateFileHandle(nType, Path().c_str()); }
};

int ReadFrame(void* handle, KXint64& nOffset)
{
    KX_FRAME_INFO frame{};
    return KX_FileReadOneFrame(handle, &nOffset, &frame);
}

} // namespace

TEST(FileCalls, ThePassReportsEachFrameThenTheSummaryThenTheEnd)
{
    const auto frames = SoundFrames();
    const Recording recording;
    for (const int nType : {0, int{KX_STREAM_TYPE_ZOSTD}}) {
        PASS pass;
        void* handle = recording.Handle(nType);
        int nFound = 77;
        EXPECT_EQ(KX_GetFileStreamType(handle, &nFound), KX_SUCCESS);
        EXPECT_EQ(nFound, KX_STREAM_TYPE_ZOSTD);
        EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), KX_SUCCESS);
        pass.WaitForEnd();
        EXPECT_EQ(pass.order, std::string(frames.size(), 'f') + "se");
        KXint64 nOffset = 0;
        for (size_t n = 0; n < pass.frames.size(); ++n) {
            EXPECT_EQ((Fields{pass.places[n].index, pass.places[n].frameOffset, pass.places[n].streamOffset - nOffset,
                              int32_t{pass.frames[n].frameSeq}, int32_t{pass.frames[n].streamType}}),
                      (Fields{static_cast<int64_t>(n), nOffset, 24, static_cast<int64_t>(n) + 1, nFound}));
            EXPECT_EQ(pass.bytes[n], frames[n]);
            nOffset += static_cast<KXint64>(frames[n].size());
        }
        EXPECT_EQ((Fields{pass.info.framenum, pass.info.videonum, pass.info.keyframenum, pass.info.audionum,
                          pass.info.maxframesize, pass.info.filesize64, pass.info.fileStartTime}),
                  (Fields{40, 40, 10, 0, LengthOf(frames.back()), LengthOf(Joined(frames)), 0}));
        EXPECT_NE(pass.analyzer, handle);
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        EXPECT_EQ(pass.order.size(), frames.size() + 2);
    }
}

TEST(FileCalls, ReadsAndSeeksBehindThePass)
{
    const Recording recording;
    PASS pass;
    void* handle = recording.Handle();
    EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), KX_SUCCESS);
    pass.WaitForEnd();
    KXint64 nOffset = -1;
    for (const KX_INDEX_INFO& place : pass.places) {
        EXPECT_EQ(KX_FileSeekByOffset(handle, place.frameOffset, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
        EXPECT_EQ(ReadFrame(handle, nOffset), KX_SUCCESS);
        EXPECT_EQ(nOffset, place.frameOffset);
        const KXint64 nKeyFrame = pass.places[static_cast<size_t>(place.index) / 4 * 4].frameOffset;
        EXPECT_EQ(KX_FileSeekByOffset(handle, place.frameOffset + 200, KX_SEEK_I_FRAME), KX_SUCCESS);
        EXPECT_EQ(ReadFrame(handle, nOffset), KX_SUCCESS);
        EXPECT_EQ(nOffset, nKeyFrame);
    }
    for (size_t n = 37; n < 40; ++n)
        EXPECT_EQ(ReadFrame(handle, nOffset), KX_SUCCESS) << n;
    KX_FRAME_INFO frame{};
    frame.frameLen = frame.mediaFlag = 77;
    EXPECT_EQ(KX_FileReadOneFrame(handle, &nOffset, &frame), KX_ERROR_READ_FILE_END);
    EXPECT_EQ((Fields{frame.frameLen, frame.mediaFlag}), (Fields{0, 77})); // of the 18 fields; not of them
    EXPECT_EQ(KX_FileSeekByOffset(handle, -1, KX_SEEK_PRECISE_OFFSET), -1);
    EXPECT_EQ(KX_FileSeekByOffset(handle, pass.info.filesize64 + 1, KX_SEEK_PRECISE_OFFSET), -1);
    EXPECT_EQ((Fields{KX_FileSeekByTime(handle, 0), KX_FileSeekByTime(handle, 1000)}), (Fields{0, -1}));
    EXPECT_EQ(KX_GetLastError(handle), KX_SUCCESS);
    KX_Destroy(handle);
}

TEST(FileCalls, WhatCannotBeParsed)
{
    TempDirectory directory;
    const std::string fifo = directory.Path() + "/fifo", empty = directory.Path() + "/empty";
    const std::string unknown = directory.Path() + "/unknown", known = directory.Path() + "/known";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::ofstream{empty};
    std::ofstream(unknown) << std::string(3 << 20, 'x'); // more than one block of the detector
    std::ofstream(known) << "ZOAV";
    // path, type given, type answered, last error behind that, KX_FileParser
    const Rows<std::string, int, int, int, int> rows = {
        {"/no such", 0, 0, 0, 11}, {directory.Path(), 0, 0, 0, 11},
        {fifo, 0, 0, 0, 11},       {"tvf://host/file", 8, 8, 0, 11},
        {"", 0, 0, 0, 11},         {"/dev/zero", 0, 0, 0, 11},
        {empty, 0, 0, 15, 2},      {unknown, 0, 0, 15, 2},
        {known, 2, 2, 0, 2},       {known, 99, 99, 0, 2},
        {known, -5, -5, 0, 2},     {empty, 8, 8, 0, 0},
    };
    for (const auto& [path, nGiven, nAnswered, nStored, nResult] : rows) {
        SCOPED_TRACE(path);
        for (const bool bAskFirst : {true, false}) {
            PASS pass;
            void* handle = KX_CreateFileHandle(nGiven, path.c_str());
            int nType = 77;
            KXint64 nOffset = 0;
            EXPECT_EQ(bAskFirst ? KX_GetFileStreamType(handle, &nType) : 0, KX_SUCCESS);
            EXPECT_EQ(nType, bAskFirst ? nAnswered : 77);
            EXPECT_EQ(KX_GetLastError(handle), bAskFirst ? nStored : 0);
            EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), nResult);
            EXPECT_EQ(KX_GetLastError(handle), nResult);
            if (nResult == KX_SUCCESS)
                pass.WaitForEnd();
            EXPECT_EQ(ReadFrame(handle, nOffset), nResult == 0 ? int{KX_ERROR_READ_FILE_END} : int{KX_ERROR_PARAMETER});
            KX_Destroy(handle);
            EXPECT_EQ(pass.order, nResult == KX_SUCCESS ? "se" : "");
        }
    }
}

TEST(FileCalls, ANullPointerLeavesAReferenceBehind)
{
    KX_FRAME_INFO frame;
    KXint64 nOffset = 0;
    void* handle = KX_CreateFileHandle(0, "/no such");
    EXPECT_EQ(KX_GetFileStreamType(handle, nullptr), KX_ERROR_PARAMETER); // this one does not
    EXPECT_EQ((Fields{KX_FileSeekByTime(handle, 0), KX_FileSeekByOffset(handle, 0, 0), ReadFrame(handle, nOffset)}),
              (Fields{6, 6, 6}));
    EXPECT_EQ(KX_FileReadOneFrame(handle, nullptr, &frame), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_FileReadOneFrame(handle, &nOffset, nullptr), KX_ERROR_PARAMETER);
    for (const int nLeft : {2, 1, 0}) {
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        EXPECT_EQ(KX_GetLastError(handle), nLeft > 0 ? int{KX_SUCCESS} : int{KX_ERROR_INVALID_HANDLE});
    }
}

TEST(FileCallsThreads, DestroyedFromACallBackItWasTheLastOne)
{
    const Recording recording;
    const size_t nThreads = Entries("/proc/self/task"), nFiles = Entries("/proc/self/fd");
    for (const auto& [eWhen, nNth, order] :
         Rows<EVENT, int, std::string>{{EVENT::Frame, 1, "f"},
                                       {EVENT::Frame, 3, "fff"},
                                       {EVENT::Summary, 1, std::string(40, 'f') + "s"},
                                       {EVENT::End, 1, std::string(40, 'f') + "se"}}) {
        PASS pass;
        void* handle = recording.Handle();
        KXint64 nOffset = 0;
        int nLeft = nNth;
        pass.onEvent = [&, eLast = eWhen](EVENT eEvent) { // Clang 14 takes no binding by reference
            if (eEvent != eLast || --nLeft != 0)
                return;
            EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), KX_ERROR_THREAD_CREATE_FAILED);
            EXPECT_EQ(KX_GetLastError(handle), KX_ERROR_THREAD_CREATE_FAILED);
            EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
            pass.bEnd = true;
        };
        EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), KX_SUCCESS);
        pass.WaitForEnd();
        WaitForThreads(nThreads);
        EXPECT_EQ(pass.order, order);
        EXPECT_EQ(ReadFrame(handle, nOffset), KX_ERROR_INVALID_HANDLE);
    }
    EXPECT_EQ(Entries("/proc/self/fd"), nFiles);
}

// Whichever comes first: once both calls have returned, nothing is called back.
TEST(FileCallsThreads, ADestroyBesideTheStartLeavesNoPassBehind)
{
    const Recording recording;
    const size_t nThreads = Entries("/proc/self/task");
    for (int nRound = 0; nRound < 60; ++nRound) {
        PASS pass;
        std::atomic<bool> bOver = false;
        pass.onEvent = [&bOver](EVENT) { EXPECT_FALSE(bOver); };
        void* handle = recording.Handle();
        std::thread starter([&] {
            const int nResult = KX_FileParser(handle, TakeFrame, TakeSummary, &pass);
            EXPECT_TRUE(nResult == KX_SUCCESS || nResult == KX_ERROR_INVALID_HANDLE) << nResult;
        });
        for (int n = 0; n < nRound; ++n)
            std::this_thread::yield();
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        starter.join();
        bOver = true;
        WaitForThreads(nThreads);
    }
}

// One thread destroys while the other is in a callback that asks for the handle: neither waits for the other for ever,
// and behind KX_Destroy nothing is called back, however the two met.
TEST(FileCallsThreads, ACallBackMayUseItsHandleWhileAnotherThreadDestroysIt)
{
    const Recording recording;
    for (int nRound = 0; nRound < 20; ++nRound) {
        PASS pass;
        std::atomic<bool> bInside = false, bDestroyed = false;
        void* handle = recording.Handle();
        pass.onEvent = [&](EVENT eEvent) {
            EXPECT_FALSE(bDestroyed);
            bInside = true;
            KXint64 nOffset = 0;
            const bool bLinger = eEvent == EVENT::Frame && pass.frames.size() == 2;
            int nResult = -1;
            do {
                nResult = ReadFrame(handle, nOffset);
                KX_GetLastError(handle);
                EXPECT_FALSE(bDestroyed);
            } while (bLinger && nResult == -1); // until the destroy has come
            EXPECT_TRUE(eEvent != EVENT::Frame || nResult == -1 || nResult == KX_ERROR_INVALID_HANDLE);
        };
        EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), KX_SUCCESS);
        while (!bInside)
            std::this_thread::yield();
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        bDestroyed = true;
        EXPECT_TRUE(pass.bEnd); // summary and end mark come while the destroy waits
        EXPECT_EQ(KX_GetLastError(handle), KX_ERROR_INVALID_HANDLE);
    }
}

TEST(FileCallsThreads, ASecondPassWaitsForTheFirst)
{
    const Recording recording;
    PASS first;
    PASS second;
    void* handle = recording.Handle();
    EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &first), KX_SUCCESS);
    EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &second), KX_SUCCESS);
    EXPECT_TRUE(first.bEnd);
    second.WaitForEnd();
    EXPECT_EQ(second.order, std::string(40, 'f') + "se");
    KX_Destroy(handle);
}

TEST(FileCallsThreads, AThousandHandlesLeaveNoThreadAndNoFile)
{
    const Recording recording;
    const size_t nThreads = Entries("/proc/self/task"), nFiles = Entries("/proc/self/fd");
    for (int n = 0; n < 1000; ++n) {
        PASS pass;
        void* handle = recording.Handle(n % 2 == 0 ? 0 : 8);
        EXPECT_EQ(KX_FileParser(handle, TakeFrame, TakeSummary, &pass), KX_SUCCESS);
        if (n % 4 == 0)
            pass.WaitForEnd();
        else
            std::this_thread::sleep_for(std::chrono::microseconds(n % 7 * 50)); // somewhere in the pass
        EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
        EXPECT_TRUE(pass.bEnd);
    }
    WaitForThreads(nThreads);
    EXPECT_EQ(Entries("/proc/self/fd"), nFiles);
}

} // namespace Marvane::FrameSift
