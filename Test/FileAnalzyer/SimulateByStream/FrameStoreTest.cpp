#include "FileAnalzyer/SimulateByStream/FrameStore.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

FrameInfo Video(int32_t nSubType, int32_t nSeq, int32_t nStreamType = KX_STREAM_TYPE_ZOSTD)
{
    FrameInfo frame{};
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    frame.frameSubType = nSubType;
    frame.frameSeq = nSeq;
    frame.streamType = nStreamType;
    return frame;
}

ExtZOAVIFrameInfo Ext(int32_t nSeq, int32_t nSubType, uint16_t nSrcPicWidth)
{
    ExtZOAVIFrameInfo ext{};
    ext.frameSeq = nSeq;
    ext.frameSubType = nSubType;
    ext.srcPicWidth = nSrcPicWidth;
    ext.refIFrameSeq = 99;
    return ext;
}

void Put(CFrameStore& store, FrameInfo frame, ExtZOAVIFrameInfo ext)
{
    ASSERT_EQ(store.InputFrame(&frame, &ext), KX_SUCCESS);
}

ExtZOAVIFrameInfo Take(CFrameStore& store)
{
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    EXPECT_EQ(store.GetFrame(&frame, &ext), KX_SUCCESS);
    return ext;
}

constexpr int32_t I = KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
constexpr int32_t P = KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
constexpr int32_t SmartP = KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME;

} // namespace

TEST(FrameStore, AnEmptyQueueTouchesNothing)
{
    CFrameStore store;
    FrameInfo frame = Video(P, 42);
    ExtZOAVIFrameInfo ext{};
    int64_t nOffset = 7;
    EXPECT_EQ(store.GetFrame(&frame, &ext), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(store.GetFileFrame(&nOffset, &frame, &ext), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(store.GetFileEndFrame(&frame), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(int32_t{frame.frameSeq}, 42);
    EXPECT_EQ(nOffset, 7);
}

TEST(FrameStore, APFrameTakesTheNearestEarlierKeyFrame)
{
    CFrameStore store;
    for (const auto& [nSubType, nSeq, nWidth] : Rows<int32_t, int32_t, uint16_t>{
             {P, 5, 1}, {I, 10, 100}, {P, 11, 2}, {I, 20, 200}, {P, 25, 3}, {SmartP, 30, 300}, {P, 31, 4}})
        Put(store, Video(nSubType, nSeq), Ext(nSeq, nSubType, nWidth));
    // The first came before any key frame; of a smart P frame its own reference is not passed on.
    for (const auto& [nWidth, nRef] :
         Rows<uint16_t, uint32_t>{{0, 0}, {100, 99}, {100, 99}, {200, 99}, {200, 99}, {300, 99}, {300, 0}}) {
        const ExtZOAVIFrameInfo taken = Take(store);
        EXPECT_EQ((Fields{taken.srcPicWidth, taken.refIFrameSeq}), (Fields{nWidth, nRef}));
    }
}

TEST(FrameStore, TheKeyFrameOfAnEarlierCycleServesWithoutItsPointers)
{
    CFrameStore store;
    uint8_t byte = 0;
    ExtZOAVIFrameInfo ext = Ext(10, I, 100);
    ext.osdExtDataPtr = ext.svacEncryptKeyData = ext.digtalSignatureEncdecDataPtr = &byte;
    ext.osdExtDataLen = ext.svacEncryptKeyLen = 1;
    ext.svacEncryptDataLen = 1;
    ext.digtalSignatureSamplenlen = 1;
    ext.digtalSignatureEncdeclen = 5;
    Put(store, Video(I, 10), ext);
    store.Clear();
    Put(store, Video(P, 11), Ext(11, P, 1));
    const ExtZOAVIFrameInfo taken = Take(store);
    EXPECT_TRUE(taken.osdExtDataPtr == nullptr && taken.svacEncryptKeyData == nullptr);
    EXPECT_TRUE(taken.digtalSignatureEncdecDataPtr == nullptr);
    EXPECT_EQ((Fields{taken.srcPicWidth, taken.osdExtDataLen, taken.svacEncryptKeyLen, taken.svacEncryptDataLen,
                      taken.digtalSignatureSamplenlen, taken.digtalSignatureEncdeclen}),
              (Fields{100, 0, 0, 0, 0, 5}));
}

TEST(FrameStore, OnlyTheFamilyHasExtensionData)
{
    for (const int32_t nStreamType : {KX_STREAM_TYPE_STD_MY, KX_STREAM_TYPE_SVC, KX_STREAM_TYPE_HBStreamV30}) {
        CFrameStore store;
        Put(store, Video(I, 1, nStreamType), Ext(1, I, 100));
        EXPECT_EQ(uint16_t{Take(store).srcPicWidth}, 100) << nStreamType;
    }
    CFrameStore store;
    Put(store, Video(I, 1, KX_STREAM_TYPE_NEW), Ext(1, I, 100));
    EXPECT_EQ(uint16_t{Take(store).srcPicWidth}, 0);
}

TEST(FrameStore, ADecipheredFrameReadsAsClear)
{
    for (const auto& [nEncryptType, bHasDecrypt, nExpected] :
         Rows<int32_t, uint8_t, int32_t>{{KX_ENCRYPT_AES, 1, 0},
                                         {KX_ENCRYPT_AES, 0, 1},
                                         {KX_ENCRYPT_AES256, 1, 0},
                                         {KX_ENCRYPT_AES256_GDPR2, 1, 0},
                                         {KX_ENCRYPT_SM4_ECB, 1, 12}}) {
        CFrameStore store;
        FrameInfo frame = Video(P, 1);
        frame.nEncryptType = nEncryptType;
        frame.nEncryptLen = 16;
        frame.bHasDecrypt = bHasDecrypt;
        Put(store, frame, {});
        ExtZOAVIFrameInfo ext{};
        ASSERT_EQ(store.GetFrame(&frame, &ext), KX_SUCCESS);
        EXPECT_EQ(int32_t{frame.nEncryptType}, nExpected);
        EXPECT_EQ(int32_t{frame.nEncryptLen}, nExpected == 0 ? 0 : 16);
    }
}

TEST(FrameStore, OffsetsOfARecordingKeepStep)
{
    CFrameStore store;
    FrameInfo frame = Video(I, 1);
    ExtZOAVIFrameInfo ext{};
    ASSERT_EQ(store.InputFileFrame(nullptr, &frame, &ext), KX_SUCCESS);
    int64_t nOffset = 0;
    EXPECT_EQ(store.GetFileFrame(&nOffset, &frame, &ext), KX_ERROR_LIST_EMPTY); // a frame is queued, but no offset
    KX_INDEX_INFO index{};
    index.frameOffset = 1000;
    frame.frameSeq = 2;
    ASSERT_EQ(store.InputFileFrame(&index, &frame, &ext), KX_SUCCESS);
    FrameInfo last{};
    EXPECT_EQ(store.GetFileEndFrame(&last), KX_SUCCESS);
    EXPECT_EQ(int32_t{last.frameSeq}, 2);
    EXPECT_EQ(store.GetFileFrame(&nOffset, &frame, &ext), KX_SUCCESS);
    EXPECT_EQ(nOffset, 1000);
    EXPECT_EQ(int32_t{frame.frameSeq}, 1);
}

} // namespace Marvane::FrameSift
