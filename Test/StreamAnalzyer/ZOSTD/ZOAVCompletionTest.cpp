// What becomes of a frame whose heads are read: picture facts, inheritance, deciphering, sums, sequence, watermark.
#include <gtest/gtest.h>

#include <numeric>

#include "ESParse/ESParserInfo.h"
#include "Support/BitWriter.h"
#include "Support/Sift.h"
#include "Support/ZoavParse.h"
#include "Tools/KXAes.h"
#include "Tools/KXVerify.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_wireH264 = 8;
constexpr uint8_t sc_wireJpeg = 5;
constexpr uint8_t sc_wireH265 = 12;

Bytes Head82(uint16_t nWidth, uint16_t nHeight)
{
    return {0x82,
            0,
            0,
            0,
            static_cast<uint8_t>(nWidth),
            static_cast<uint8_t>(nWidth >> 8),
            static_cast<uint8_t>(nHeight),
            static_cast<uint8_t>(nHeight >> 8)};
}

Bytes Head81(uint8_t nWireCodec, uint8_t nRate)
{
    return {0x81, 0, nWireCodec, nRate};
}

Bytes LittleEndian32(uint32_t nValue)
{
    return {static_cast<uint8_t>(nValue), static_cast<uint8_t>(nValue >> 8), static_cast<uint8_t>(nValue >> 16),
            static_cast<uint8_t>(nValue >> 24)};
}

Bytes Head88(uint8_t chType, uint32_t nValue)
{
    return Bytes{0x88} + LittleEndian32(nValue) + Bytes{0, 0, chType};
}

Bytes Head95(uint16_t nOffset, uint32_t nLen)
{
    return Bytes{0x95, 0, static_cast<uint8_t>(nOffset), static_cast<uint8_t>(nOffset >> 8)} + LittleEndian32(nLen);
}

// An IDR picture of 16-pixel blocks, with a slice of its own.
Bytes H264Picture(uint32_t nBlocksWide, uint32_t nBlocksHigh, bool bFields = false)
{
    CBitWriter sps;
    sps.Bits(8, 66).Bits(8, 0).Bits(8, 30).Ue(0).Ue(0).Ue(2).Ue(1).Flag(false).Ue(nBlocksWide - 1);
    sps.Ue((bFields ? nBlocksHigh / 2 : nBlocksHigh) - 1).Flag(!bFields);
    if (bFields)
        sps.Flag(false);
    sps.Flag(true).Flag(false).Flag(false);
    CBitWriter slice;
    slice.Ue(0).Ue(7).Ue(0).Bits(4, 0);
    if (bFields)
        slice.Flag(true).Flag(false); // a top field
    return NalUnit({0x67}, sps.Rbsp()) + NalUnit({0x65}, slice.Bits(64, 0x5555).Rbsp());
}

Bytes Jpeg(uint16_t nWidth, uint16_t nHeight)
{
    return Bytes{0xFF,
                 0xD8,
                 0xFF,
                 0xE0,
                 0,
                 4,
                 1,
                 2,
                 0xFF,
                 0xC0,
                 0,
                 11,
                 8,
                 static_cast<uint8_t>(nHeight >> 8),
                 static_cast<uint8_t>(nHeight),
                 static_cast<uint8_t>(nWidth >> 8),
                 static_cast<uint8_t>(nWidth)} +
           Bytes{1, 1, 0x11, 0, 0, 0, 0, 0};
}

Bytes Counting(size_t nSize)
{
    Bytes bytes(nSize);
    std::iota(bytes.begin(), bytes.end(), uint8_t{0});
    return bytes;
}

ZoavFrame VideoFrame(ZOAV_FRAME eType, uint32_t nSeq, uint8_t chSubType = 0)
{
    return ZoavFrame().Type(eType, chSubType).Seq(nSeq).Payload(Counting(32));
}

const Bytes sc_key = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

Bytes Enciphered(Bytes bytes, size_t nOffset, size_t nLen)
{
    CKXAes aes;
    EXPECT_TRUE(aes.SetKey(sc_key.data(), static_cast<uint32_t>(sc_key.size())));
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

} // namespace

TEST(ZoavPictureFacts, AValidSizeFromThePayloadWins)
{
    const struct
    {
        const char* pName;
        ZOAV_FRAME eType;
        uint8_t chSubType;
        uint8_t nWireCodec;
        Bytes payload;
        SIZE size;
    } rows[] = {
        {"I", ZOAV_FRAME::I, 0, sc_wireH264, H264Picture(80, 45), {1280, 720}},
        {"smart I", ZOAV_FRAME::I, 1, sc_wireH264, H264Picture(80, 45), {1280, 720}},
        {"smart I not rendered", ZOAV_FRAME::I, 2, sc_wireH264, H264Picture(80, 45), {1280, 720}},
        {"another H.264 code", ZOAV_FRAME::I, 0, 2, H264Picture(80, 45), {1280, 720}},
        {"no parameter set", ZOAV_FRAME::I, 0, sc_wireH264, Counting(64), {1920, 1080}},
        {"too wide", ZOAV_FRAME::I, 0, sc_wireH264, H264Picture(938, 45), {1920, 1080}},
        {"JPEG", ZOAV_FRAME::Jpeg, 0, sc_wireJpeg, Jpeg(640, 480), {640, 480}},
        {"JPEG too high", ZOAV_FRAME::Jpeg, 0, sc_wireJpeg, Jpeg(640, 15000), {1920, 1080}},
        {"JPEG of size 0", ZOAV_FRAME::Jpeg, 0, sc_wireJpeg, Jpeg(0, 480), {1920, 1080}},
        {"JPEG in an I frame", ZOAV_FRAME::I, 0, sc_wireJpeg, Jpeg(640, 480), {640, 480}},
        {"a codec that is not looked into", ZOAV_FRAME::I, 0, 14, H264Picture(80, 45), {1920, 1080}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        CZoavParse parse;
        const auto frames = parse.Feed(ZoavFrame()
                                           .Type(row.eType, row.chSubType)
                                           .ExtHead(Head81(row.nWireCodec, 25))
                                           .ExtHead(Head82(1920, 1080))
                                           .Payload(row.payload));
        ASSERT_EQ(frames.size(), 1U);
        EXPECT_EQ(SizeOf(frames[0]), row.size);
    }
}

TEST(ZoavPictureFacts, NotIfTheTrueSizeIsToldOrThePayloadEnciphered)
{
    const Bytes head99 = {0x99, 0, 0, 64, 0, 48, 0, 0}; // a source size, no slices
    const Bytes headed[] = {head99, {0x89, 0, 0, 0}, Head95(0, 16)};
    for (const Bytes& head : headed) {
        CZoavParse parse;
        const auto frames = parse.Feed(ZoavFrame()
                                           .ExtHead(head)
                                           .ExtHead(Head81(sc_wireH264, 25))
                                           .ExtHead(Head82(1920, 1080))
                                           .Payload(H264Picture(80, 45)));
        ASSERT_EQ(frames.size(), 1U);
        EXPECT_EQ(SizeOf(frames[0]), (SIZE{1920, 1080})) << int{head[0]};
    }
}

TEST(ZoavPictureFacts, AFieldIsPaired)
{
    CZoavParse parse;
    // The head says progressive.
    const auto frame = [] { return ZoavFrame().ExtHead(Head81(sc_wireH264, 25)).ExtHead(Head82(704, 576)); };
    const auto fields = parse.Feed(frame().Payload(H264Picture(44, 36, true)));
    const auto whole = parse.Feed(frame().Payload(H264Picture(44, 36)));
    ASSERT_EQ(fields.size() + whole.size(), 2U);
    EXPECT_EQ(int32_t{fields[0].frame.deinterlace}, KX_DEINTERLACE_PAIR);
    EXPECT_EQ(int32_t{whole[0].frame.deinterlace}, KX_DEINTERLACE_NONE);
    EXPECT_EQ(SizeOf(fields[0]), (SIZE{704, 576}));
}

TEST(ZoavPictureFacts, H265WithoutASizeTakesThatOfTheLastKeyFrame)
{
    CZoavParse parse;
    const auto bare = [] { return ZoavFrame().ExtHead(Head81(sc_wireH265, 25)).Payload(Counting(64)); };
    const auto first = parse.Feed(bare());
    parse.Feed(bare().ExtHead(Head82(2560, 1440)));
    const auto third = parse.Feed(bare());
    ASSERT_EQ(first.size() + third.size(), 2U);
    EXPECT_EQ(SizeOf(first[0]), (SIZE{0, 0}));
    EXPECT_EQ(SizeOf(third[0]), (SIZE{2560, 1440}));
}

TEST(ZoavInheritance, TheKeyFramesValuesWin)
{
    CZoavParse parse;
    const auto frames =
        parse.Feed(VideoFrame(ZOAV_FRAME::P, 1).ExtHead(Head81(sc_wireH265, 30)).ExtHead(Head82(64, 64)).Build() +
                   VideoFrame(ZOAV_FRAME::I, 2).ExtHead(Head81(sc_wireH264, 25)).ExtHead(Head82(1920, 1080)).Build() +
                   VideoFrame(ZOAV_FRAME::B, 3).ExtHead(Head82(64, 64)).Build() +
                   VideoFrame(ZOAV_FRAME::P, 4).ExtHead(Head81(sc_wireH265, 12)).Build() +
                   VideoFrame(ZOAV_FRAME::P, 5).Build() + VideoFrame(ZOAV_FRAME::Jpeg, 6).Build());
    ASSERT_EQ(frames.size(), 6U);
    const struct
    {
        int32_t nCodec, nRate, nWidth;
    } expected[] = {
        {0, 30, 0}, // nothing to inherit yet; its own rate is the one exception
        {KX_ENCODE_VIDEO_ZO_H264, 25, 1920},
        {KX_ENCODE_VIDEO_ZO_H264, 25, 1920},
        {KX_ENCODE_VIDEO_ZO_H264, 12, 1920},
        {KX_ENCODE_VIDEO_ZO_H264, 25, 1920},
        {0, 0, 0}, // JPEG stands alone
    };
    for (size_t n = 0; n < frames.size(); ++n) {
        SCOPED_TRACE(n);
        EXPECT_EQ(int32_t{frames[n].frame.frameEncodeType}, expected[n].nCodec);
        EXPECT_EQ(int32_t{frames[n].frame.frameRate}, expected[n].nRate);
        EXPECT_EQ(int32_t{frames[n].frame.width}, expected[n].nWidth);
    }
}

TEST(ZoavInheritance, EachLevelHasItsOwnKeyFrame)
{
    CZoavParse parse;
    const auto frame = [](ZOAV_FRAME eType, uint8_t nLevel, uint16_t nWidth) {
        ZoavFrame built = VideoFrame(eType, 1).ExtHead({0x94, 3, nLevel, 0});
        return (nWidth == 0 ? built : built.ExtHead(Head82(nWidth, 64))).Build();
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
    EXPECT_EQ(int32_t{frames[1].ext.frameSeq}, 2);
    EXPECT_EQ(uint32_t{frames[1].ext.refIFrameSeq}, 1U);
    EXPECT_EQ(int32_t{frames[1].ext.frameSubType}, KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME);
    EXPECT_EQ(frames[2].ext.ratioWidth, 0);
}

TEST(ZoavDecipher, WholeBlocksInPlace)
{
    const Bytes plain = Counting(50);
    const struct
    {
        const char* pName;
        Bytes head;
        Bytes cipher;
        int32_t nEncryptLen;
    } rows[] = {
        {"whole payload", {0x89, 0, 0, 0}, Enciphered(plain, 0, 48), 50},
        {"a part", Head95(4, 32), Enciphered(plain, 4, 32), 32},
        {"a part of odd length", Head95(0, 20), Enciphered(plain, 0, 16), 20},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        CZoavParse parse;
        ASSERT_EQ(parse.stream.SetExtInfo(KX_ENCRYPT_AES, sc_key.data(), 16), KX_SUCCESS);
        // A sum that does not match: of what was deciphered it cannot be checked any more.
        const Bytes frame = ZoavFrame().ExtHead(Head88(0, 1)).ExtHead(row.head).Payload(row.cipher);
        const auto frames = parse.Feed(frame);
        ASSERT_EQ(frames.size(), 1U);
        const FrameInfo& info = frames[0].frame;
        EXPECT_EQ(PayloadOf(frames[0]), plain);
        EXPECT_EQ(int32_t{info.errorFlags}, KX_ERROR_FLAGS_NOERROR);
        EXPECT_EQ(int32_t{info.nEncryptType}, KX_ENCRYPT_AES);
        EXPECT_EQ(int32_t{info.nEncryptLen}, row.nEncryptLen);
        EXPECT_EQ(info.bHasDecrypt, 1);
        EXPECT_EQ(uint32_t{info.nCommonEncryptHeadoffset}, 32U);
        // The same bytes again, as a client may feed them: they count as clear, and nothing is deciphered twice. The sum
        // is then that of clear text.
        const auto again = parse.Feed(Bytes(info.framePointer, info.framePointer + info.frameLen));
        ASSERT_EQ(again.size(), 1U);
        EXPECT_EQ(PayloadOf(again[0]), plain);
        EXPECT_EQ(int32_t{again[0].frame.nEncryptType}, KX_ENCRYPT_UNKOWN);
        EXPECT_EQ(int32_t{again[0].frame.errorFlags}, KX_ERROR_FLAGS_DATA_VERIFY);
    }
}

TEST(ZoavDecipher, WhatIsLeftAlone)
{
    const Bytes cipher = Enciphered(Counting(48), 0, 48);
    const uint32_t nSum = CKXVerify::GetSum32(cipher.data(), 48);
    const struct
    {
        const char* pName;
        bool bKey;
        Bytes head;
        int32_t nError;
        int32_t nEncryptType;
    } rows[] = {
        {"no key", false, {0x89, 0, 0, 0}, KX_ERROR_FLAGS_NOERROR, KX_ENCRYPT_AES},
        {"another cipher", true, {0x89, 1, 0, 0}, KX_ERROR_FLAGS_NOERROR, 2},
        {"no bytes", true, Head95(0, 0), KX_ERROR_FLAGS_NOERROR, KX_ENCRYPT_AES},
        {"behind the payload", true, Head95(33, 16), KX_ERROR_FLAGS_DECRYPTION_FAILURE, KX_ENCRYPT_AES},
        {"longer than any frame", true, Head95(0, 0xFFFFFFF0), KX_ERROR_FLAGS_DECRYPTION_FAILURE, KX_ENCRYPT_AES},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        CZoavParse parse;
        if (row.bKey) {
            ASSERT_EQ(parse.stream.SetExtInfo(KX_ENCRYPT_AES, sc_key.data(), 16), KX_SUCCESS);
        }
        const auto frames = parse.Feed(ZoavFrame().ExtHead(Head88(0, nSum)).ExtHead(row.head).Payload(cipher));
        ASSERT_EQ(frames.size(), 1U);
        EXPECT_EQ(PayloadOf(frames[0]), cipher);
        EXPECT_EQ(int32_t{frames[0].frame.errorFlags}, row.nError);
        EXPECT_EQ(int32_t{frames[0].frame.nEncryptType}, row.nEncryptType);
        EXPECT_EQ(frames[0].frame.bHasDecrypt, 0);
    }
}

TEST(ZoavDecipher, KeysThatAreTaken)
{
    CZOAVStream stream;
    EXPECT_EQ(stream.SetExtInfo(KX_ENCRYPT_AES, sc_key.data(), 16), KX_SUCCESS);
    EXPECT_EQ(stream.SetExtInfo(KX_ENCRYPT_AES, sc_key.data(), 15), KX_ERROR_PARAMETER);
    EXPECT_EQ(stream.SetExtInfo(KX_ENCRYPT_AES, nullptr, 16), KX_ERROR_PARAMETER);
    EXPECT_EQ(stream.SetExtInfo(KX_ENCRYPT_AES256, sc_key.data(), 16), KX_ERROR_PARAMETER);
}

TEST(ZoavDataSum, EachKindFindsAFlippedBit)
{
    const Bytes payload = Counting(61);
    const uint32_t sums[] = {CKXVerify::GetSum32(payload.data(), 61), CKXVerify::GetXor32(payload.data(), 61),
                             CKXVerify::GetCRC32(payload.data(), 61), 0};
    for (uint8_t chType = 0; chType < 4; ++chType) {
        SCOPED_TRACE(int{chType});
        Bytes flipped = payload;
        flipped[60] ^= 4;
        const auto frame = [&](const Bytes& bytes) {
            return ZoavFrame().ExtHead(Head88(chType, sums[chType])).Payload(bytes).Build();
        };
        const auto frames = Sift(frame(payload) + frame(flipped) + frame({}) + frame(payload));
        ASSERT_EQ(frames.size(), 4U);
        EXPECT_EQ(frames[0].errorFlags, KX_ERROR_FLAGS_NOERROR);
        // An unknown kind has the value 0, whatever the bytes.
        EXPECT_EQ(frames[1].errorFlags, chType < 3 ? KX_ERROR_FLAGS_DATA_VERIFY : KX_ERROR_FLAGS_NOERROR);
        EXPECT_EQ(frames[1].payload, flipped);
        EXPECT_EQ(frames[2].errorFlags, KX_ERROR_FLAGS_DATA_VERIFY); // there is nothing to sum
        EXPECT_EQ(frames[3].errorFlags, KX_ERROR_FLAGS_NOERROR);
    }
}

TEST(ZoavLostFrames, AGapGivesARecordInFront)
{
    const struct
    {
        std::vector<uint32_t> seqs;
        std::vector<int32_t> lost;
    } rows[] = {
        {{5, 6, 6, 7}, {}},
        {{5, 7}, {6}},
        {{7, 5}, {4}},
        {{1, 100, 101, 50}, {99, 49}},
        {{0xFFFFFFFE, 0xFFFFFFFF, 40, 41}, {}}, // all ones: what follows counts as the first
        {{0, 0x80000000}, {0x7FFFFFFF}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.seqs.back());
        CZoavParse parse;
        Bytes stream;
        for (const uint32_t nSeq : row.seqs)
            stream = stream + VideoFrame(ZOAV_FRAME::P, nSeq).TimeStamp(77).Build() +
                     ZoavFrame().Type(ZOAV_FRAME::Audio).Seq(900).Payload(Counting(32)).Build();
        std::vector<int32_t> lost;
        for (const PARSED_FRAME& parsed : parse.Feed(stream)) {
            if (parsed.frame.errorFlags != KX_ERROR_FLAGS_LOSTFRAME)
                continue;
            lost.push_back(int32_t{parsed.frame.frameSeq});
            EXPECT_FALSE(parsed.bHasExt);
            EXPECT_EQ(int32_t{parsed.frame.frameType}, KX_FRAME_TYPE_VIDEO);
            EXPECT_EQ(int32_t{parsed.frame.timeStamp}, 77);
            EXPECT_EQ(int32_t{parsed.frame.frameTime.nYear}, 2020);
            EXPECT_EQ(int32_t{parsed.frame.frameLen} + parsed.frame.streamLen, 0);
            EXPECT_TRUE(parsed.frame.framePointer == nullptr && parsed.frame.streamPointer == nullptr);
        }
        EXPECT_EQ(lost, row.lost);
    }
}

TEST(ZoavLostFrames, NotJudged)
{
    CZoavParse recording;
    recording.stream.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_INDEX}));
    EXPECT_EQ(recording.Feed(VideoFrame(ZOAV_FRAME::P, 1).Build() + VideoFrame(ZOAV_FRAME::P, 9).Build()).size(), 2U);
    CZoavParse channels;
    const Bytes head96 = {0x96, 2, 1, 0};
    EXPECT_EQ(channels
                  .Feed(VideoFrame(ZOAV_FRAME::P, 1).ExtHead(head96).Build() +
                        VideoFrame(ZOAV_FRAME::P, 9).ExtHead(head96).Build())
                  .size(),
              2U);
}

TEST(ZoavWaterMark, KindsAndDoubts)
{
    const Bytes data = Counting(40);
    const uint32_t nCrc = CKXVerify::GetCRC32(data.data(), 40);
    const auto record = [&](const char* pKind, uint32_t nSum, uint32_t nLen) {
        return Bytes(pKind, pKind + 4) + LittleEndian32(nSum) + LittleEndian32(nLen);
    };
    const struct
    {
        const char* pName;
        Bytes payload;
        int32_t nSubType, nStreamLen, nError;
    } rows[] = {
        {"JPEG", record("JPEG", nCrc, 40) + data, KX_FRAME_SUB_TYPE_WATERMARK_JPEG, 40, 0},
        {"TEXT", record("TEXT", nCrc, 40) + data, KX_FRAME_SUB_TYPE_WATERMARK_TEXT, 40, 0},
        {"BMP", record("BMP ", nCrc, 40) + data, KX_FRAME_SUB_TYPE_WATERMARK_BMP, 40, 0},
        {"another kind", record("MONA", nCrc, 40) + data, 0, 40, 0},
        {"wrong sum", record("TEXT", nCrc + 1, 40) + data, 4, 40, KX_ERROR_FLAGS_WATERMARK},
        // What the record claims, however long: nothing behind the frame is read for it.
        {"wrong length", record("TEXT", nCrc, 4000) + data, 4, 4000, KX_ERROR_FLAGS_WATERMARK},
        {"cut", Counting(11), 0, 11, KX_ERROR_FLAGS_WATERMARK},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        CZoavParse parse;
        const Bytes next = ZoavFrame().Payload(data);
        const auto frames = parse.Feed(ZoavFrame().Type(ZOAV_FRAME::Data, 6).Payload(row.payload) + next);
        ASSERT_EQ(frames.size(), 2U);
        const FrameInfo& info = frames[0].frame;
        EXPECT_EQ(int32_t{info.frameSubType}, row.nSubType);
        EXPECT_EQ(int32_t{info.streamLen}, row.nStreamLen);
        EXPECT_EQ(int32_t{info.errorFlags}, row.nError);
        if (row.nError == 0) {
            EXPECT_EQ(PayloadOf(frames[0]), data);
        }
    }
}

} // namespace Marvane::FrameSift
