// The exported stream calls, as a client meets them.

#include <filesystem>

#include "Support/LogOf.h"
#include "Support/Matches.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

// The name of a capture holds addresses that only its writer knows.
std::string FileNamed(const std::string& directory, const std::string& start)
{
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        if (entry.path().filename().string().starts_with(start))
            return entry.path().string();
    }
    return {};
}

class StreamCalls : public testing::Test
{
protected:
    void TearDown() override { KX_Destroy(handle); }
    int Feed(Bytes chunk)
    {
        bytes = std::move(chunk);
        return KX_ParseData(handle, bytes.data(), static_cast<int32_t>(bytes.size()));
    }

    void* handle = KX_CreateFrameSift(0);
    Bytes bytes;
};

} // namespace

TEST(LibraryCalls, NeedNoHandle)
{
    EXPECT_STREQ(KX_GetVersion(), "1.3.44.55751");
    KX_INIT_INFO info{};
    EXPECT_EQ(KX_LoadLibrary(&info), KX_SUCCESS);
    EXPECT_EQ(KX_LoadLibrary(nullptr), KX_SUCCESS);
    EXPECT_EQ(KX_ReleaseLibrary(), KX_SUCCESS);
    EXPECT_EQ(KX_GetParseType(8, nullptr), KX_ERROR_PARAMETER);
    for (const auto& [nType, nExpected] : Rows<int32_t, int32_t>{
             {136, 0}, {148, 0}, {0, 0}, {194, 1}, {8, 3}, {9, 2}, {20, 1}, {197, 3}, {158, 1}, {-1, 0}}) {
        int32_t nKind = -1;
        EXPECT_EQ(KX_GetParseType(nType, &nKind), KX_SUCCESS);
        EXPECT_EQ(nKind, nExpected) << nType;
    }
}

TEST_F(StreamCalls, BadArgumentsComeBeforeBadHandles)
{
    uint8_t byte = 0;
    EXPECT_EQ(KX_ParseData(nullptr, nullptr, 10), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_ParseData(nullptr, &byte, 0), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_GetStreamType(handle, nullptr), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_GetLastError(handle), KX_SUCCESS); // nothing reached the handle
}

TEST_F(StreamCalls, ANegativeLengthIsStoredAndTheHandleGoesOn)
{
    const Bytes frame = ZoavFrame().Seq(5).Payload(Filler(40));
    EXPECT_EQ(Feed(Bytes(frame.begin(), frame.begin() + 50)), KX_SUCCESS);
    uint8_t byte = 0;
    EXPECT_EQ(KX_ParseData(handle, &byte, -1), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_ParseData(handle, &byte, INT32_MIN), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_GetLastError(handle), KX_ERROR_PARAMETER);
    EXPECT_EQ(Feed(Bytes(frame.begin() + 50, frame.end())), KX_SUCCESS);
    EXPECT_EQ(GoodSeqs(TakeFrames(handle)), std::vector<int32_t>{5});
}

TEST_F(StreamCalls, TheTypeIsUnknownUntilItShows)
{
    int32_t nType = -1;
    EXPECT_EQ(KX_GetStreamType(handle, &nType), KX_SUCCESS);
    EXPECT_EQ(nType, 0);
    EXPECT_EQ(Feed(Filler(100)), KX_ERROR_UNGET_STREAM_TYPE);
    EXPECT_EQ(Feed(ZoavFrame().Family(ZOAV_FAMILY::WMAV).Payload(Filler(40))), KX_SUCCESS);
    EXPECT_EQ(KX_GetStreamType(handle, &nType), KX_SUCCESS);
    EXPECT_EQ(nType, KX_STREAM_TYPE_STD_WM);
    EXPECT_EQ(TakeFrames(handle).size(), 1U);
    EXPECT_EQ(KX_GetLastError(handle), KX_ERROR_UNGET_STREAM_TYPE); // a later success does not clear it
}

TEST_F(StreamCalls, FramesNotFetchedAreGone)
{
    EXPECT_EQ(Feed(ZoavFrame().Seq(1).Payload(Filler(40)) + ZoavFrame().Seq(2).Payload(Filler(40))), KX_SUCCESS);
    EXPECT_EQ(Feed(ZoavFrame().Seq(3).Payload(Filler(40))), KX_SUCCESS);
    EXPECT_EQ(GoodSeqs(TakeFrames(handle)), std::vector<int32_t>{3});
}

TEST_F(StreamCalls, AnEmptyQueueZeroesEighteenFieldsAndNoOther)
{
    KX_FRAME_INFO info;
    std::memset(&info, 0x5A, sizeof info);
    EXPECT_EQ(KX_GetOneFrame(handle, &info), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(KX_GetLastError(handle), KX_SUCCESS);
    EXPECT_EQ(info.frameType | info.streamLen | info.frameLen | info.timeStamp | info.width | info.errorFlags, 0);
    EXPECT_EQ(info.frameTime.nYear | info.frameTime.nMilliSecond, 0);
    EXPECT_EQ(info.deinterlace, 0x5A5A5A5A);
    EXPECT_EQ(info.mediaFlag, 0x5A5A5A5A);
    EXPECT_EQ(info.nEncryptType, 0x5A5A5A5A);
    // 13 fields of 4 bytes, two pointers, the time and three of audio: all else keeps what the caller left.
    const auto* pBytes = reinterpret_cast<const uint8_t*>(&info);
    EXPECT_EQ(std::count(pBytes, pBytes + sizeof info, uint8_t{0}), 15 * 4 + 2 * 8 + 28);
}

TEST_F(StreamCalls, KeysAreTakenAtAnyTime)
{
    const Bytes key(16, 1);
    EXPECT_EQ(KX_StreamEncryptKey(handle, KX_ENCRYPT_AES, key.data(), 16), KX_SUCCESS);
    EXPECT_EQ(KX_StreamEncryptKey(handle, KX_ENCRYPT_DES, key.data(), 16), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_GetLastError(handle), KX_SUCCESS);
}

TEST_F(StreamCalls, SmartSubTypesBecomePlain)
{
    for (const auto& [eType, nWire, nSubType] :
         Rows<ZOAV_FRAME, uint8_t, int32_t>{{ZOAV_FRAME::I, 1, KX_FRAME_SUB_TYPE_VIDEO_I_FRAME},
                                            {ZOAV_FRAME::I, 2, KX_FRAME_SUB_TYPE_VIDEO_I_FRAME},
                                            {ZOAV_FRAME::P, 1, KX_FRAME_SUB_TYPE_VIDEO_P_FRAME}}) {
        ASSERT_EQ(Feed(ZoavFrame().Type(eType, nWire).Payload(Filler(40))), KX_SUCCESS);
        EXPECT_EQ(TakeFrames(handle).at(0).frameSubType, nSubType);
    }
}

TEST_F(StreamCalls, AStreamBehindMuchRubbishLosesNothing)
{
    EXPECT_EQ(Feed(Filler(3 << 20)), KX_ERROR_UNGET_STREAM_TYPE);
    EXPECT_EQ(Feed(ZoavFrame().Seq(1).Payload(Filler(40)) + ZoavFrame().Seq(2).Payload(Filler(40))), KX_SUCCESS);
    EXPECT_EQ(GoodSeqs(TakeFrames(handle)), (std::vector<int32_t>{1, 2}));
}

TEST(LogAndCapture, LinesOfTheCalls)
{
    const std::string log = LogOf([] {
        KX_CreatePrintLog("", 0, nullptr, KX_LOG_LevelHidden, nullptr);
        void* handle = KX_CreateFrameSift(4096);
        uint8_t byte = 0;
        KX_ParseData(handle, &byte, 0);
        KX_Destroy(handle);
    });
    EXPECT_TRUE(Matches(log, "trace KX_CreateFrameSift KX_CreateFrameSift nBufferSize 4096\\.\n"
                             "hidden KX_ParseData KX_ParseData handle 1, stream 0x[0-9a-f]+, length 0\\.\n"
                             "warn KX_ParseData KX_ParseData Error Input Param, stream 0x[0-9a-f]+, length 0\\.\n"
                             "trace KX_Destroy KX_Destroy handle 1\\.\n"))
        << log;
}

TEST(LogAndCapture, ACapturedHandleLivesOnAndItsFilesHoldWhatPassed)
{
    const TempDirectory directory;
    const Bytes payload(50, 0xAB);
    const Bytes stream = ZoavFrame().Seq(1).Payload(payload) + ZoavFrame().Seq(2).Payload(payload);
    const auto child = RunInChild([&] {
        void* handle = KX_CreateFrameSift(0);
        std::string path = directory.Path();
        KX_WRITE_FILE_INFO info{};
        info.pWritePath = path.data();
        info.handle = handle;
        info.nWriteType = 2;
        info.nWriteSize = 1 << 20;
        if (KX_CreatePrintLog(path.c_str(), 0, nullptr, KX_LOG_LevelFatal, &info) != KX_SUCCESS)
            return 1;
        FeedInChunks(handle, stream, FixedChunks(30));
        if (KX_Destroy(handle) != KX_SUCCESS)
            return 2;
        int32_t nType = 0;
        KX_GetStreamType(handle, &nType);
        return nType == KX_STREAM_TYPE_ZOSTD ? 0 : 3;
    });
    EXPECT_EQ(child.nExitCode, 0);
    EXPECT_EQ(ReadText(FileNamed(directory.Path(), "CDbgStreamSave_0_")), std::string(stream.begin(), stream.end()));
    const Bytes payloads = payload + payload;
    EXPECT_EQ(ReadText(FileNamed(directory.Path(), "CDbgStreamSave_1_")),
              std::string(payloads.begin(), payloads.end()));
}

} // namespace Marvane::FrameSift
