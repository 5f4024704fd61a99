// What becomes of a frame whose heads are read: picture facts, inheritance, deciphering, sums, sequence, watermark.

#include "ESParse/H264Units.h"
#include "FrameWriter/ExtHeads.h"
#include "Support/Sift.h"
#include "Support/Testing.h"
#include "Support/ZoavParse.h"
#include "Tools/KXAes.h"
#include "Tools/KXVerify.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_wireH264 = 8;
constexpr uint8_t sc_wireJpeg = 5;
constexpr uint8_t sc_wireH265 = 12;

Bytes LittleEndian32(uint32_t nValue)
{
    return Part(ExtHead88(0, nValue), 1, 4);
}

// An IDR picture of 16-pixel blocks, with a slice of its own.
Bytes H264Picture(uint32_t nBlocksWide, uint32_t nBlocksHigh, bool bFields = false)
{
    const H264Units::SPS set{.nBlocksWide = nBlocksWide, .nBlocksHigh = nBlocksHigh, .bFrameMbsOnly = !bFields};
    return set.Nal() + H264Units::SLICE{.field = bFields ? std::optional(true) : std::nullopt}.Nal();
}

Bytes Jpeg(uint16_t nWidth, uint16_t nHeight)
{
    CBitWriter bits;
    bits.Bits(64, 0xFFD8'FFE0'0004'0102).Bits(40, 0xFFC0'000B'08).Bits(16, nHeight).Bits(16, nWidth);
    return bits.Bits(24, 0x010111).Bits(40, 0).Raw();
}

ZoavFrame VideoFrame(ZOAV_FRAME eType, uint32_t nSeq, uint8_t chSubType = 0)
{
    return ZoavFrame().Type(eType, chSubType).Seq(nSeq).Payload(Counting(32));
}

const Bytes sc_key = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

Bytes Enciphered(Bytes bytes, size_t nOffset, size_t nLen)
{
    CKXAes aes;
    EXPECT_TRUE(aes.SetKey(sc_key.data(), LengthOf(sc_key)));
    auto nOut = static_cast<uint32_t>(nLen);
    EXPECT_TRUE(aes.Encrypt(bytes.data() + nOffset, nOut, bytes.data() + nOffset, nOut));
    return bytes;
}

Bytes PayloadOf(const PARSED_FRAME& parsed)
{
    return {parsed.frame.streamPointer, parsed.frame.streamPointer + parsed.frame.streamLen};
}

std::pair<int32_t, int32_t> SizeOf(const PARSED_FRAME& parsed)
{
    return {int32_t{parsed.frame.width}, int32_t{parsed.frame.height}};
}

using SIZE = std::pair<int32_t, int32_t>;

ZoavFrame Key(uint8_t nWireCodec)
{
    return ZoavFrame().ExtHead(ExtHead81(nWireCodec, 25)).ExtHead(ExtHead82(1920, 1080));
}

} // namespace

TEST(ZoavPictureFacts, AValidSizeFromThePayloadWins)
{
    for (const auto& [pName, eType, chSubType, nWireCodec, payload, size] :
         Rows<const char*, ZOAV_FRAME, uint8_t, uint8_t, Bytes, SIZE>{
             {"smart I", ZOAV_FRAME::I, 1, sc_wireH264, H264Picture(80, 45), {1280, 720}},
             {"smart I not rendered", ZOAV_FRAME::I, 2, sc_wireH264, H264Picture(80, 45), {1280, 720}},
             {"another H.264 code", ZOAV_FRAME::I, 0, 2, H264Picture(80, 45), {1280, 720}},
             {"no parameter set", ZOAV_FRAME::I, 0, sc_wireH264, Counting(64), {1920, 1080}},
             {"too wide", ZOAV_FRAME::I, 0, sc_wireH264, H264Picture(938, 45), {1920, 1080}},
             {"JPEG too high", ZOAV_FRAME::Jpeg, 0, sc_wireJpeg, Jpeg(640, 15000), {1920, 1080}},
             {"JPEG of size 0", ZOAV_FRAME::Jpeg, 0, sc_wireJpeg, Jpeg(0, 480), {1920, 1080}},
             {"JPEG in an I frame", ZOAV_FRAME::I, 0, sc_wireJpeg, Jpeg(640, 480), {640, 480}},
             {"a codec that is not looked into", ZOAV_FRAME::I, 0, 14, H264Picture(80, 45), {1920, 1080}}}) {
        SCOPED_TRACE(pName);
        const auto frames = CZoavParse().Feed(Key(nWireCodec).Type(eType, chSubType).Payload(payload));
        EXPECT_EQ(SizeOf(frames.at(0)), size);
    }
}

TEST(ZoavPictureFacts, NotIfTheTrueSizeIsToldOrThePayloadEnciphered)
{
    const Bytes head99 = {0x99, 0, 0, 64, 0, 48, 0, 0}; // a source size, no slices
    for (const Bytes& head : {head99, ExtHead89(0), ExtHead95(0, 0, 16)}) {
        const auto frames = CZoavParse().Feed(Key(sc_wireH264).ExtHead(head).Payload(H264Picture(80, 45)));
        EXPECT_EQ(SizeOf(frames.at(0)), (SIZE{1920, 1080})) << int{head[0]};
    }
}

TEST(ZoavPictureFacts, AFieldIsPaired)
{
    for (const bool bFields : {true, false}) { // the head says progressive
        const auto frames = CZoavParse().Feed(Key(sc_wireH264).Payload(H264Picture(44, 36, bFields)));
        EXPECT_EQ(int32_t{frames.at(0).frame.deinterlace}, bFields ? KX_DEINTERLACE_PAIR : KX_DEINTERLACE_NONE);
        EXPECT_EQ(SizeOf(frames[0]), (SIZE{704, 576}));
    }
}

TEST(ZoavPictureFacts, H265WithoutASizeTakesThatOfTheLastKeyFrame)
{
    CZoavParse parse;
    const Bytes bare = ZoavFrame().ExtHead(ExtHead81(sc_wireH265, 25)).Payload(Counting(64));
    EXPECT_EQ(SizeOf(parse.Feed(bare).at(0)), (SIZE{0, 0}));
    parse.Feed(Key(sc_wireH265).Payload(Counting(64)));
    EXPECT_EQ(SizeOf(parse.Feed(bare).at(0)), (SIZE{1920, 1080}));
    FrameInfo shorter{}; // than its heads
    shorter.frameType = KX_FRAME_TYPE_VIDEO;
    shorter.frameEncodeType = KX_ENCODE_VIDEO_ZO_H265;
    shorter.streamLen = -30;
    parse.stream.FrameVideoInfoVerify(shorter, {});
    EXPECT_EQ(int32_t{shorter.width}, 1920);
}

TEST(ZoavInheritance, TheKeyFramesValuesWin)
{
    CZoavParse parse;
    const auto frames = parse.Feed(
        VideoFrame(ZOAV_FRAME::P, 1).ExtHead(ExtHead81(sc_wireH265, 30)).ExtHead(ExtHead82(64, 64)).Build() +
        VideoFrame(ZOAV_FRAME::I, 2).ExtHead(ExtHead81(sc_wireH264, 25)).ExtHead(ExtHead82(1920, 1080)).Build() +
        VideoFrame(ZOAV_FRAME::B, 3).ExtHead(ExtHead82(64, 64)).Build() +
        VideoFrame(ZOAV_FRAME::P, 4).ExtHead(ExtHead81(sc_wireH265, 12)).Build() +
        VideoFrame(ZOAV_FRAME::P, 5).Build() + VideoFrame(ZOAV_FRAME::Jpeg, 6).Build());
    ASSERT_EQ(frames.size(), 6U);
    std::string told;
    for (const auto& [frame, ext, bHasExt] : frames)
        told += std::to_string(frame.frameEncodeType) + " " + std::to_string(frame.frameRate) + " " +
                std::to_string(frame.width) + "\n";
    EXPECT_EQ(told, "0 30 0\n" // nothing to inherit yet; its own rate is the one exception
                    "4 25 1920\n4 25 1920\n4 12 1920\n4 25 1920\n"
                    "0 0 0\n"); // JPEG stands alone
}

TEST(ZoavInheritance, EachLevelHasItsOwnKeyFrame)
{
    CZoavParse parse;
    const auto frame = [](ZOAV_FRAME eType, uint8_t nLevel, uint16_t nWidth) {
        ZoavFrame built = VideoFrame(eType, 1).ExtHead({0x94, 3, nLevel, 0});
        return (nWidth == 0 ? built : built.ExtHead(ExtHead82(nWidth, 64))).Build();
    };
    const auto frames =
        parse.Feed(frame(ZOAV_FRAME::I, 0, 320) + frame(ZOAV_FRAME::I, 1, 640) + frame(ZOAV_FRAME::P, 0, 0) +
                   frame(ZOAV_FRAME::P, 1, 0) + frame(ZOAV_FRAME::P, 2, 0) + frame(ZOAV_FRAME::P, 0, 0) +
                   frame(ZOAV_FRAME::P, 2, 0));
    std::vector<int32_t> widths;
    for (const PARSED_FRAME& parsed : frames)
        widths.push_back(int32_t{parsed.frame.width});
    // Level 2 has none: it takes from the one that was used last.
    EXPECT_EQ(widths, (std::vector<int32_t>{320, 640, 320, 640, 640, 320, 320}));
}

TEST(ZoavInheritance, ASmartPFrameTakesTheExtensionDataToo)
{
    CZoavParse parse;
    const Bytes ratio = {0x9B, 16, 9, 4, 3, 0, 0, 0};
    const auto frames = parse.Feed(VideoFrame(ZOAV_FRAME::I, 1).ExtHead(ratio).Build() +
                                   VideoFrame(ZOAV_FRAME::P, 2, 1).ExtHead({0xB2, 4, 1, 0}).Build() +
                                   VideoFrame(ZOAV_FRAME::P, 3).Build());
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ(frames[1].ext.ratioWidth, frames[0].ext.ratioWidth);
    EXPECT_EQ((Fields{frames[1].ext.frameSeq, frames[1].ext.refIFrameSeq, frames[1].ext.frameSubType}),
              (Fields{2, 1, KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME}));
    EXPECT_EQ(frames[2].ext.ratioWidth, 0);
}

// What a key frame's extension data lead to is handed on as long as it is there: to the end of the cycle.
TEST(ZoavInheritance, PointersOfAKeyFrameEndWithItsCycle)
{
    CZoavParse parse;
    const Bytes smartP = VideoFrame(ZOAV_FRAME::P, 2, 1);
    const auto frames = parse.Feed(VideoFrame(ZOAV_FRAME::I, 1).ExtHead({0xB1, 6, 1, 2, 3, 4}).Build() + smartP);
    const ExtZOAVIFrameInfo& ext = frames.at(1).ext;
    EXPECT_EQ(Bytes(ext.osdExtDataPtr, ext.osdExtDataPtr + ext.osdExtDataLen), (Bytes{1, 2, 3, 4}));
    const auto later = parse.Feed(smartP);
    EXPECT_TRUE(later.at(0).ext.osdExtDataPtr == nullptr);
    EXPECT_EQ(later[0].ext.osdExtDataLen, 0);
}

TEST(ZoavDecipher, WholeBlocksInPlace)
{
    const Bytes plain = Counting(50);
    for (const auto& [pName, head, cipher, nEncryptLen] : Rows<const char*, Bytes, Bytes, int32_t>{
             {"whole payload", ExtHead89(0), Enciphered(plain, 0, 48), 50},
             {"a part", ExtHead95(0, 4, 32), Enciphered(plain, 4, 32), 32},
             {"a part of odd length", ExtHead95(0, 0, 20), Enciphered(plain, 0, 16), 20},
             {"blocks to the end, then no more", ExtHead95(0, 2, 52), Enciphered(plain, 2, 48), 52},
             {"less than a block, anywhere", ExtHead95(0, 900, 15), plain, 15}}) {
        SCOPED_TRACE(pName);
        CZoavParse parse;
        ASSERT_EQ(parse.stream.SetExtInfo(KX_ENCRYPT_AES, sc_key.data(), 16), KX_SUCCESS);
        // A sum that does not match: of what was deciphered it cannot be checked any more.
        const auto frames = parse.Feed(ZoavFrame().ExtHead(ExtHead88(0, 1)).ExtHead(head).Payload(cipher));
        const FrameInfo& info = frames.at(0).frame;
        EXPECT_EQ(PayloadOf(frames[0]), plain);
        EXPECT_EQ((Fields{info.errorFlags, info.nEncryptType, info.nEncryptLen, info.bHasDecrypt,
                          info.nCommonEncryptHeadoffset}),
                  (Fields{KX_ERROR_FLAGS_NOERROR, KX_ENCRYPT_AES, nEncryptLen, 1, 32}));
        // The same bytes again, as a client may feed them: they count as clear, and nothing is deciphered twice. The sum
        // is then that of clear text.
        const auto again = parse.Feed(Bytes(info.framePointer, info.framePointer + info.frameLen));
        EXPECT_EQ(PayloadOf(again.at(0)), plain);
        EXPECT_EQ((Fields{again[0].frame.nEncryptType, again[0].frame.errorFlags}),
                  (Fields{KX_ENCRYPT_UNKOWN, KX_ERROR_FLAGS_DATA_VERIFY}));
    }
}

TEST(ZoavDecipher, WhatIsLeftAlone)
{
    const Bytes cipher = Enciphered(Counting(48), 0, 48);
    const uint32_t nSum = CKXVerify::GetSum32(cipher.data(), 48);
    constexpr int32_t nBad = KX_ERROR_FLAGS_DECRYPTION_FAILURE;
    for (const auto& [pName, nKeyLen, head, nError, nEncryptType] : Rows<const char*, int, Bytes, int32_t, int32_t>{
             {"no key", 15, ExtHead89(0), 0, KX_ENCRYPT_AES}, // one of 15 bytes is refused
             {"another cipher", 16, ExtHead89(1), 0, 2},
             {"no bytes", 16, ExtHead95(0, 0, 0), 0, KX_ENCRYPT_AES},
             {"behind the payload", 16, ExtHead95(0, 33, 16), nBad, KX_ENCRYPT_AES},
             {"longer than any frame", 16, ExtHead95(0, 0, 0xFFFFFFF0), nBad, KX_ENCRYPT_AES}}) {
        SCOPED_TRACE(pName);
        CZoavParse parse;
        EXPECT_EQ(parse.stream.SetExtInfo(KX_ENCRYPT_AES, sc_key.data(), nKeyLen) == KX_SUCCESS, nKeyLen == 16);
        const auto frames = parse.Feed(ZoavFrame().ExtHead(ExtHead88(0, nSum)).ExtHead(head).Payload(cipher));
        const FrameInfo& info = frames.at(0).frame;
        EXPECT_EQ(PayloadOf(frames[0]), cipher);
        EXPECT_EQ((Fields{info.errorFlags, info.nEncryptType, info.bHasDecrypt}), (Fields{nError, nEncryptType, 0}));
    }
    CZOAVStream stream;
    EXPECT_EQ(stream.SetExtInfo(KX_ENCRYPT_AES, nullptr, 16), KX_ERROR_PARAMETER);
    EXPECT_EQ(stream.SetExtInfo(KX_ENCRYPT_AES256, sc_key.data(), 16), KX_ERROR_PARAMETER);
}

TEST(ZoavDataSum, EachKindFindsAFlippedBit)
{
    const Bytes payload = Counting(61);
    const uint32_t sums[] = {CKXVerify::GetSum32(payload.data(), 61), CKXVerify::GetXor32(payload.data(), 61),
                             CKXVerify::GetCRC32(payload.data(), 61), 0};
    for (uint8_t chType = 0; chType < 4; ++chType) {
        const ZoavFrame frame = ZoavFrame().ExtHead(ExtHead88(chType, sums[chType])).Payload(payload);
        std::vector<int32_t> errors;
        for (const SIFTED_FRAME& sifted :
             Sift(frame.Build() + ZoavFrame(frame).DamagedPayload(60) + ZoavFrame(frame).Payload({}) + frame.Build()))
            errors.push_back(sifted.errorFlags);
        constexpr int32_t nBad = KX_ERROR_FLAGS_DATA_VERIFY;
        // An unknown kind has the value 0, whatever the bytes; and without bytes there is nothing to sum.
        EXPECT_EQ(errors, (std::vector<int32_t>{0, chType < 3 ? nBad : 0, nBad, 0})) << int{chType};
    }
}

TEST(ZoavLostFrames, AGapGivesARecordInFront)
{
    for (const auto& [seqs, expected] : Rows<std::vector<uint32_t>, std::vector<int32_t>>{
             {{5, 6, 6, 7}, {}},
             {{5, 7}, {6}},
             {{7, 5}, {4}},
             {{1, 100, 101, 50}, {99, 49}},
             {{0xFFFFFFFE, 0xFFFFFFFF, 40, 41}, {}}, // all ones: what follows counts as the first
             {{0, 0x80000000}, {0x7FFFFFFF}}}) {
        CZoavParse parse;
        Bytes stream;
        for (const uint32_t nSeq : seqs)
            stream = stream + VideoFrame(ZOAV_FRAME::P, nSeq).TimeStamp(77).Build() +
                     ZoavFrame().Type(ZOAV_FRAME::Audio).Seq(900).Payload(Counting(32)).Build();
        std::vector<int32_t> lost;
        for (const auto& [frame, ext, bHasExt] : parse.Feed(stream)) {
            if (frame.errorFlags != KX_ERROR_FLAGS_LOSTFRAME)
                continue;
            lost.push_back(int32_t{frame.frameSeq});
            EXPECT_FALSE(bHasExt);
            EXPECT_EQ(
                (Fields{frame.frameType, frame.timeStamp, frame.frameTime.nYear, frame.frameLen, frame.streamLen}),
                (Fields{KX_FRAME_TYPE_VIDEO, 77, 2020, 0, 0}));
            EXPECT_TRUE(frame.framePointer == nullptr && frame.streamPointer == nullptr);
        }
        EXPECT_EQ(lost, expected);
    }
    // Not judged: a recording's index, and frames of several channels.
    CZoavParse recording;
    recording.stream.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_INDEX}));
    EXPECT_EQ(recording.Feed(VideoFrame(ZOAV_FRAME::P, 1) + VideoFrame(ZOAV_FRAME::P, 9)).size(), 2U);
    const auto inChannel = [](uint32_t nSeq) {
        return VideoFrame(ZOAV_FRAME::P, nSeq).ExtHead({0x96, 2, 1, 0}).Build();
    };
    EXPECT_EQ(CZoavParse().Feed(inChannel(1) + inChannel(9)).size(), 2U);
}

TEST(ZoavWaterMark, KindsAndDoubts)
{
    const Bytes data = Counting(40);
    const uint32_t nCrc = CKXVerify::GetCRC32(data.data(), 40);
    const auto record = [&](const char* pKind, uint32_t nSum, uint32_t nLen) {
        return Bytes(pKind, pKind + 4) + LittleEndian32(nSum) + LittleEndian32(nLen);
    };
    for (const auto& [pName, payload, nSubType, nStreamLen, nError] :
         Rows<const char*, Bytes, int32_t, int32_t, int32_t>{
             {"JPEG", record("JPEG", nCrc, 40) + data, KX_FRAME_SUB_TYPE_WATERMARK_JPEG, 40, 0},
             {"TEXT", record("TEXT", nCrc, 40) + data, KX_FRAME_SUB_TYPE_WATERMARK_TEXT, 40, 0},
             {"BMP", record("BMP ", nCrc, 40) + data, KX_FRAME_SUB_TYPE_WATERMARK_BMP, 40, 0},
             {"another kind", record("MONA", nCrc, 40) + data, 0, 40, 0},
             {"wrong sum", record("TEXT", nCrc + 1, 40) + data, 4, 40, KX_ERROR_FLAGS_WATERMARK},
             // What the record claims, however long: nothing behind the frame is read for it.
             {"wrong length", record("TEXT", nCrc, 4000) + data, 4, 4000, KX_ERROR_FLAGS_WATERMARK},
             {"cut", Counting(11), 0, 11, KX_ERROR_FLAGS_WATERMARK}}) {
        SCOPED_TRACE(pName);
        CZoavParse parse;
        const Bytes next = ZoavFrame().Payload(data);
        const auto frames = parse.Feed(ZoavFrame().Type(ZOAV_FRAME::Data, 6).Payload(payload) + next);
        ASSERT_EQ(frames.size(), 2U);
        const FrameInfo& info = frames[0].frame;
        EXPECT_EQ((Fields{info.frameSubType, info.streamLen, info.errorFlags}), (Fields{nSubType, nStreamLen, nError}));
        if (nError == 0) {
            EXPECT_EQ(PayloadOf(frames[0]), data);
        }
    }
}

} // namespace Marvane::FrameSift
