#include "StreamAnalzyer/ZOSTD/ExtHead.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Support/ChildProcess.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

// One walk over heads that fill the run, with nBehind bytes of the frame behind them. The bytes lie in a heap block of
// just their size, so that a read outside the frame is found.
struct WALK
{
    explicit WALK(const Bytes& heads, int32_t nFrameSubType = 0, size_t nBehind = 100)
        : WALK(heads, heads.size(), nFrameSubType, nBehind)
    {}
    WALK(const Bytes& heads, size_t nExtFrameLen, int32_t nFrameSubType, size_t nBehind)
        : nSize(heads.size() + nBehind), pBytes(std::make_unique<uint8_t[]>(nSize))
    {
        std::copy(heads.begin(), heads.end(), pBytes.get());
        frame.frameSubType = nFrameSubType;
        frame.frameSeq = 1000;
        stream.ParseExtHead({pBytes.get(), nSize}, static_cast<int>(nExtFrameLen), frame, ext);
    }
    const EXT_FRAME_HEAD& Heads() const { return stream.GetExtFrameHead(); }

    size_t nSize;
    std::unique_ptr<uint8_t[]> pBytes;
    CZOAVStream stream;
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
};

Bytes Numbered(size_t nSize, uint8_t nFirst)
{
    Bytes bytes(nSize);
    for (size_t n = 0; n < nSize; ++n)
        bytes[n] = static_cast<uint8_t>(nFirst + n);
    return bytes;
}

// A marker behind the head under test: it is found only if the walk stepped as it should.
const Bytes sc_marker = {0x8B, 0x5A, 0, 0};

bool StepsBy(const Bytes& head, size_t nStep)
{
    Bytes run = head;
    run.resize(std::max(nStep, run.size()));
    run.insert(run.begin() + static_cast<ptrdiff_t>(nStep), sc_marker.begin(), sc_marker.end());
    run.resize(nStep + sc_marker.size());
    return WALK(run).frame.rotationAngle == 0x5A;
}

} // namespace

TEST(ExtHead, PictureFields)
{
    const WALK walk(Bytes{0x80, 1, 44, 36} + Bytes{0x81, 50, 8, 25} + Bytes{0x8A, 0, 12, 0, 0x30, 0x75, 0xE9, 3} +
                    Bytes{0x8B, 2, 0, 0} + Bytes{0x91, 1, 2, 3, 0, 0, 0, 0} + Bytes{0x9A, 4, 5, 0, 6, 0, 7, 1} +
                    Bytes{0x9B, 16, 9, 4, 3, 0, 0, 0} + Bytes{0x93, 1, 2, 3, 4, 0, 0, 0} + Bytes{0xB4, 6, 2, 3, 0, 0});
    EXPECT_EQ(int32_t{walk.frame.width}, 352);
    EXPECT_EQ(int32_t{walk.frame.height}, 288);
    EXPECT_EQ(int32_t{walk.frame.deinterlace}, KX_DEINTERLACE_SINGLE);
    EXPECT_EQ(int32_t{walk.frame.frameEncodeType}, KX_ENCODE_VIDEO_ZO_H265); // the last head wins
    EXPECT_EQ(int32_t{walk.frame.frameRate}, 25);
    EXPECT_EQ(uint16_t{walk.frame.rateValue}, 30000);
    EXPECT_EQ(uint16_t{walk.frame.rateDenominator}, 1001);
    EXPECT_EQ(walk.ext.fishEyeGain * 100 + walk.ext.fishEyeDenoiseLevel * 10 + walk.ext.fishInstallStyle, 123);
    EXPECT_EQ(uint8_t{walk.ext.fishEyeCorrectMode}, 4);
    EXPECT_EQ(uint16_t{walk.ext.fishEyeRadius}, 263);
    EXPECT_EQ(uint8_t{walk.ext.ratioHeigth}, 9);
    EXPECT_EQ(uint8_t{walk.ext.ratioEncodeHeight}, 3);
    const KX_FOG_THROUGH fog = walk.ext.fogThrough;
    EXPECT_EQ(fog.bIsExist, 1);
    EXPECT_EQ(fog.nAirLightIntesion, 4);
    EXPECT_EQ(uint8_t{walk.ext.mSliceSensor}, 2);
    EXPECT_EQ(uint16_t{walk.ext.slicePosLength}, 48);
    EXPECT_EQ(uint16_t{walk.ext.slicePosOffset}, 52 + 28);
    EXPECT_EQ(walk.Heads().pHead80, walk.pBytes.get());
    EXPECT_EQ(walk.Heads().pHead82, nullptr);
}

TEST(ExtHead, InterlaceAndCodec)
{
    const auto deinterlace = [](uint8_t nType, uint8_t nCodec) {
        return int32_t{WALK({0x82, nType, 0, 0, 0, 5, 0xD0, 2, 0x81, 0, nCodec, 0}).frame.deinterlace};
    };
    EXPECT_EQ(deinterlace(1, 8), KX_DEINTERLACE_SINGLE);
    EXPECT_EQ(deinterlace(2, 8), KX_DEINTERLACE_PAIR);
    EXPECT_EQ(deinterlace(7, 8), KX_DEINTERLACE_NONE);
    EXPECT_EQ(deinterlace(1, 3), KX_DEINTERLACE_NONE); // MPEG-4, whatever the head says
    EXPECT_EQ(int32_t{WALK(Bytes{}).frame.deinterlace}, 0);
    EXPECT_EQ(int32_t{WALK({0x81, 0, 17, 0}).frame.frameEncodeType}, KX_ENCODE_VIDEO_UNKNOWN);
    EXPECT_EQ(int32_t{WALK({0x81, 0, 16, 0}).frame.frameEncodeType}, KX_ENCODE_VIDEO_AVS3);
}

TEST(ExtHead, SliceTableOverflowsItsLength)
{
    const WALK walk({0x99, 3, 2, 0x80, 7, 0x38, 4, 0});
    EXPECT_EQ(uint16_t{walk.ext.n_slice}, 3);
    EXPECT_EQ(uint16_t{walk.ext.srcPicWidth}, 1920);
    EXPECT_EQ(uint16_t{walk.ext.srcPicHeight}, 1080);
    EXPECT_EQ(uint16_t{walk.ext.sliceInfoOffset}, 32);
    EXPECT_EQ(uint16_t{walk.ext.sliceInfoLength}, 96);
    EXPECT_TRUE(StepsBy({0x99, 1, 2, 0, 0, 0, 0, 0}, 8 + 32));
    EXPECT_TRUE(StepsBy({0x99, 64, 65, 0, 0, 0, 0, 0}, 8 + 1024)); // 66560 in 16 bits
}

TEST(ExtHead, AudioFields)
{
    const struct
    {
        Bytes head;
        int32_t nCodec, nBits, nRate, nBitRate;
    } rows[] = {
        {{0x83, 2, 26, 9}, 26, 16, 48000, 0},
        {{0x83, 1, 10, 0}, KX_ENCODE_AUDIO_G711U, 16, 8000, 0},
        {{0x83, 1, 48, 13}, 48, 8, 64000, 0},
        {{0x83, 1, 7, 14}, 7, 8, 0, 0}, // no such rate
        {{0x83, 1, 29, 255}, 29, 16, 0, 24000},
        {{0x83, 1, 36, 1}, 36, 16, 4000, 48000},
        {{0x8C, 8, 2, 26, 8, 21, 0, 0}, 26, 16, 44100, 384000},
        {{0x8C, 8, 2, 30, 8, 3, 0, 0}, 30, 16, 44100, 5300},
        {{0x8C, 8, 2, 30, 8, 22, 0, 0}, 30, 16, 44100, 0},
    };
    for (const auto& row : rows) {
        const WALK walk(row.head);
        EXPECT_EQ(int32_t{walk.frame.frameEncodeType}, row.nCodec);
        EXPECT_EQ(int32_t{walk.frame.bitsPerSample}, row.nBits);
        EXPECT_EQ(int32_t{walk.frame.samplesPerSec}, row.nRate);
        EXPECT_EQ(uint32_t{walk.frame.audioBitrate}, static_cast<uint32_t>(row.nBitRate));
        EXPECT_EQ(int32_t{walk.frame.channels}, row.head[0] == 0x83 ? row.head[1] : row.head[2]);
    }
}

TEST(ExtHead, StructureFields)
{
    const WALK walk(Bytes{0x84, 1, 2, 0} + Bytes{0x85, 1, 2, 3} + Bytes{0x88, 1, 2, 3, 4, 0, 0, 2} +
                    Bytes{0x92, 0, 1, 2, 3, 4, 0, 0} + Bytes{0x94, 3, 2, 0} + Bytes{0x96, 4, 1, 0} +
                    Bytes{0xA0, 0, 0xE7, 3} + Bytes{0xA1, 0xFF, 0, 0} + Bytes{0xB2, 4, 10, 0} +
                    Bytes{0xB8, 8, 0, 0, 1, 2, 3, 4} + Bytes{0xB9, 8, 7, 0, 0, 0, 0, 0} +
                    Bytes{0xBD, 12, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8});
    const KX_DATA_CUSTOM_CHANGE change = walk.ext.customChangeInfo;
    EXPECT_EQ(change.chType * 100 + change.chLength * 10 + change.chValue, 123);
    EXPECT_EQ(walk.Heads().head88.vfVal[3], 4);
    EXPECT_EQ(walk.Heads().head88.chType, 2);
    EXPECT_NE(walk.Heads().pHead84, nullptr);
    EXPECT_EQ(uint16_t{walk.frame.companyType}, 0x0201);
    EXPECT_EQ(uint16_t{walk.frame.tpStreamHeaderLen}, 0x0403);
    EXPECT_EQ(walk.frame.allLevels * 10 + walk.frame.levelOrder, 32);
    EXPECT_EQ(walk.frame.totalChannels * 10 + walk.frame.curChannel, 41);
    const KX_TIME time = walk.frame.frameTime;
    EXPECT_EQ(time.nMilliSecond, 999);
    EXPECT_EQ(uint8_t{walk.frame.incompleteFrameFlag}, 0x80);
    EXPECT_EQ(uint32_t{walk.ext.refIFrameSeq}, 990U);
    EXPECT_EQ(uint32_t{walk.frame.nYuvTimeStamp}, 0x04030201U);
    EXPECT_EQ(uint8_t{walk.frame.bPrivacyEnable}, 7);
    EXPECT_EQ(uint64_t{walk.frame.utcTime}, 0x0807060504030201U);
}

TEST(ExtHead, CipherKinds)
{
    const auto kind = [](const Bytes& head) { return int32_t{WALK(head).frame.nEncryptType}; };
    EXPECT_EQ(kind({0x89, 0, 0, 0}), KX_ENCRYPT_AES);
    EXPECT_EQ(kind({0x89, 2, 0, 0}), KX_ENCRYPT_3DES);
    EXPECT_EQ(kind({0x89, 3, 0, 0}), KX_ENCRYPT_UNKOWN);
    EXPECT_EQ(kind({0x89, 0xFF, 0, 0}), KX_ENCRYPT_UNKOWN);
    EXPECT_NE(WALK({0x89, 0xFF, 0, 0}).Heads().pHead89, nullptr); // it still counts as there
    EXPECT_EQ(kind({0x95, 6, 0, 0, 0, 0, 0, 0}), KX_ENCRYPT_ZBQL);
    EXPECT_EQ(kind({0x95, 7, 0, 0, 0, 0, 0, 0}), KX_ENCRYPT_UNKOWN);
    EXPECT_EQ(kind({0x95, 0xFF, 0, 0, 0, 0, 0, 0}), KX_ENCRYPT_UNKOWN);
    const int32_t kindsB5[] = {0, 8, 13, 12, 11, 10, 14, 0};
    for (uint8_t nType = 0; nType < 8; ++nType)
        EXPECT_EQ(kind({0xB5, 3, nType}), kindsB5[nType]) << int{nType};
    const int32_t kindsB6[] = {0, 10, 12, 11, 13, 0};
    for (uint8_t nType = 0; nType < 6; ++nType)
        EXPECT_EQ(kind({0xB6, 3, nType}), kindsB6[nType]) << int{nType};
    const WALK part({0x95, 0, 0x10, 0x20, 1, 2, 3, 0});
    EXPECT_EQ(uint16_t{part.frame.encryptOffset}, 0x2010);
    EXPECT_EQ(int32_t{part.frame.nEncryptLen}, 0x030201);
    const WALK sum({0xB3, 8, 1, 2, 3, 4, 5, 6});
    EXPECT_EQ(uint32_t{sum.ext.encryptCheckSum}, 0x06050201U);
    EXPECT_EQ(sum.ext.encryptNonse[1], 4);
}

TEST(ExtHead, KeyedCipherEndsWithItsOwnSize)
{
    Bytes head = Numbered(76, 0xB5);
    head[1] = 76;
    const WALK whole(head);
    EXPECT_EQ(uint16_t{whole.frame.encryptOffset}, head[3] | head[4] << 8); // 16 of 24 bits
    EXPECT_EQ(int32_t{whole.frame.nEncryptLen}, head[6] | head[7] << 8 | head[8] << 16);
    EXPECT_EQ(whole.frame.nB5HeadEncryptVKid[15], head[24]);
    EXPECT_EQ(uint32_t{whole.frame.nB5HeadEncryptCrc16}, static_cast<uint32_t>(head[25] | head[26] << 8));
    EXPECT_EQ(whole.frame.nB5HeadIV[0], head[27]);
    EXPECT_EQ(whole.frame.nB5Random[31], head[74]);
    EXPECT_NE(whole.Heads().pHeadB5, nullptr);

    head[1] = 30; // up to the sum, but not the whole vector
    const WALK cut(head);
    EXPECT_EQ(cut.frame.nB5HeadEncryptVKid[15], head[24]);
    EXPECT_NE(uint32_t{cut.frame.nB5HeadEncryptCrc16}, 0U);
    EXPECT_EQ(cut.frame.nB5HeadIV[0], 0);

    head[1] = 2; // ignored
    EXPECT_EQ(WALK(head).Heads().pHeadB5, nullptr);
    head[1] = 77; // not believed, but there
    const WALK refused(head);
    EXPECT_NE(refused.Heads().pHeadB5, nullptr);
    EXPECT_EQ(int32_t{refused.frame.nEncryptLen}, 0);
    EXPECT_TRUE(StepsBy({0xB5, 77}, 4));
    EXPECT_TRUE(StepsBy({0xB5, 2}, 4));
    EXPECT_TRUE(StepsBy({0xB5, 76}, 76));
}

TEST(ExtHead, WrappedKeyFields)
{
    Bytes head = Numbered(80, 0xB6);
    head[1] = 80;
    head[43] = 2;
    const WALK walk(head);
    EXPECT_EQ(walk.frame.nB6HeadGmIv[0], head[27]);
    EXPECT_EQ(uint32_t{walk.frame.nB6HeadVekEncryptType}, static_cast<uint32_t>(KX_ENCRYPT_SM4_ECB));
    EXPECT_EQ(walk.frame.nB6HeadVkekVersion[19], head[63]);
    EXPECT_EQ(walk.frame.nB6HeadVek[15], head[79]);
}

TEST(ExtHead, VariablePartsAreCopied)
{
    const Bytes signature = Bytes{0x9C, 1, 2, 3, 4, 0, 0, 1} + Bytes{7, 8, 9, 10};
    const WALK walk(signature + Bytes{0xB0, 11, 5, 0, 0, 0, 0, 3, 11, 12, 13} + Bytes{0xB1, 3, 42});
    EXPECT_EQ(uint32_t{walk.ext.digtalSignatureSamplenlen}, 0x030201U);
    ASSERT_TRUE(walk.ext.digtalSignatureEncdecDataPtr != nullptr);
    EXPECT_EQ(Bytes(walk.ext.digtalSignatureEncdecDataPtr, walk.ext.digtalSignatureEncdecDataPtr + 4),
              (Bytes{7, 8, 9, 10}));
    EXPECT_EQ(uint8_t{walk.ext.digtalSignatureDigestType}, KX_DIGEST_ALGORITHM_SHA1);
    EXPECT_EQ(uint8_t{walk.ext.digtalSignatureEncryptType}, KX_DIGTAL_SIGNATURE_ENCRYPT_UNKOWN);
    ASSERT_TRUE(walk.ext.svacEncryptKeyData != nullptr);
    EXPECT_EQ(walk.ext.svacEncryptKeyData[2], 13);
    EXPECT_EQ(uint16_t{walk.ext.svacEncryptDataLen}, 5);
    EXPECT_EQ(uint8_t{walk.ext.svacEncryptKeyLen}, 3);
    ASSERT_TRUE(walk.ext.osdExtDataPtr != nullptr);
    EXPECT_EQ(walk.ext.osdExtDataPtr[0], 42);
    EXPECT_EQ(uint8_t{walk.ext.osdExtDataLen}, 1);
    // One that exactly fills the run, as the last head.
    EXPECT_TRUE(WALK(signature).ext.digtalSignatureEncdecDataPtr != nullptr);
    const WALK empty({0xB0, 8, 5, 0, 0, 0, 0, 0});
    EXPECT_TRUE(empty.ext.svacEncryptKeyData == nullptr);
    EXPECT_EQ(uint16_t{empty.ext.svacEncryptDataLen}, 0);
}

// A later head's length never stands beside an earlier head's bytes.
TEST(ExtHead, ARepeatedHeadReplacesPointerAndLengthTogether)
{
    const WALK signature(Bytes{0x9C, 0, 0, 0, 1, 0, 0, 0, 7} + Bytes{0x9C, 0, 0, 0, 0xFF, 0xFF, 0, 0});
    EXPECT_TRUE(signature.ext.digtalSignatureEncdecDataPtr == nullptr);
    EXPECT_EQ(uint8_t{signature.ext.digtalSignatureDigestType}, KX_DIGEST_ALGORITHM_UNKOWN);
    const WALK osd(Bytes{0xB1, 3, 42} + Bytes{0xB1, 0xFF, 1});
    EXPECT_TRUE(osd.ext.osdExtDataPtr == nullptr);
    const WALK key(Bytes{0xB0, 9, 5, 0, 0, 0, 0, 1, 7} + Bytes{0xB0, 8, 0, 0, 0, 0, 0, 0});
    ASSERT_TRUE(key.ext.svacEncryptKeyData != nullptr);
    EXPECT_EQ(key.ext.svacEncryptKeyData[0], 7);
    EXPECT_EQ(uint8_t{key.ext.svacEncryptKeyLen}, 1);
}

// One byte more than the run has: a line in the log, and nothing behind it is looked at, nor the codec rule applied.
TEST(ExtHead, AVariablePartPastTheRunEndsTheWalk)
{
    const struct
    {
        Bytes head;
        const char* pLine;
    } rows[] = {
        {{0x9C, 1, 0, 0, 5, 0, 0, 0, 1, 2, 3, 4}, "frameInfoEx.digtalSignatureEncdeclen 5, nIndex 12, nExtFrameLen 24"},
        {{0xB0, 8, 0, 0, 0, 0, 0, 1}, "m_extFrameHead.headB0.header.encryptKeySize 1, nIndex 12, nExtFrameLen 20"},
        {{0xB1, 4, 1}, "frameInfoEx.osdExtDataLen 2, nIndex 12, nExtFrameLen 15"},
    };
    for (const auto& row : rows) {
        const auto child = RunInChild([&row] {
            CKXLog::CreateLog("", 0, nullptr, KX_LOG_LevelWarn);
            const WALK walk(Bytes{0x80, 1, 44, 36} + Bytes{0x81, 0, 1, 0} + Bytes{0, 0, 0, 0} + row.head);
            if (walk.frame.deinterlace != KX_DEINTERLACE_SINGLE)
                std::printf("the codec rule was applied\n");
            return 0;
        });
        EXPECT_NE(child.output.find(std::string(row.pLine) + "\n"), std::string::npos) << child.output;
        EXPECT_EQ(child.output.find("the codec rule"), std::string::npos);
    }
}

TEST(ExtHead, StepsOfEveryClass)
{
    const struct
    {
        Bytes head;
        size_t nStep;
    } rows[] = {
        {{0x84}, 4},
        {{0x85}, 4},
        {{0x94}, 4},
        {{0x82}, 8},
        {{0x91}, 8},
        {{0xB2, 6}, 6},
        {{0xB2, 0}, 4},
        {{0xB8, 12}, 12},
        {{0xBD, 0}, 4},
        {{0xB0, 2}, 4},
        {{0xB3, 1}, 4},
        {{0xB4, 9}, 9},
        {{0xB7, 0}, 4},
        {{0xB7, 9}, 9},
        {{0xFF, 5}, 5},
        {{0x7F, 9}, 4},
        {{0x00, 9}, 4},
        {{0x9D, 9}, 4},
        {{0xB6, 90, 0, 0}, 90},
        {{0xB1, 2}, 4},
    };
    for (const auto& row : rows)
        EXPECT_TRUE(StepsBy(row.head, row.nStep)) << int{row.head[0]} << " by " << row.nStep;
    // A self-sized head of 2 leads into itself: its third byte is taken for the next tag.
    EXPECT_EQ(uint8_t{WALK({0xB9, 2, 0x8B, 0x5A, 0, 0}).frame.rotationAngle}, 0x5A);
}

// The frame bounds the fields, not the run; what lies outside the frame is absent.
TEST(ExtHead, FieldsOutsideTheFrameAreAbsent)
{
    const Bytes head = {0x82, 1, 0, 0, 0x80, 7, 0x38, 4};
    const WALK intoPayload(head, 1, 0, 0); // a run of one byte, the rest of the head is payload
    EXPECT_EQ(int32_t{intoPayload.frame.width}, 1920);
    for (size_t nSize = 1; nSize <= head.size(); ++nSize) {
        const WALK cut(Bytes(head.begin(), head.begin() + static_cast<ptrdiff_t>(nSize)), 255, 0, 0);
        EXPECT_EQ(int32_t{cut.frame.width}, nSize >= 6 ? 1920 : 0) << nSize;
        EXPECT_EQ(int32_t{cut.frame.height}, nSize >= 8 ? 1080 : 0) << nSize;
    }
    // Every tag, cut at every length.
    for (int nTag = 0; nTag < 256; ++nTag) {
        for (size_t nSize = 1; nSize < 90; ++nSize) {
            Bytes bytes = Numbered(nSize, static_cast<uint8_t>(nTag));
            const WALK walk(bytes, 255, 1, 0);
            EXPECT_LE(uint8_t{walk.ext.osdExtDataLen}, 253);
        }
    }
}

} // namespace Marvane::FrameSift
