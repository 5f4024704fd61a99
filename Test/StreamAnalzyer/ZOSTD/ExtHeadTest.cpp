#include "StreamAnalzyer/ZOSTD/ExtHead.h"

#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Support/LogOf.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

// One walk over heads that fill the run, with 100 bytes of the frame behind them.
struct WALK
{
    explicit WALK(const Bytes& heads) : WALK(heads + Bytes(100), heads.size()) {}
    WALK(const Bytes& frameBytes, size_t nExtFrameLen) : bytes(Part(frameBytes, 0))
    {
        frame.frameSeq = 1000;
        stream.ParseExtHead(bytes, static_cast<int>(nExtFrameLen), frame, ext);
    }
    const EXT_FRAME_HEAD& Heads() const { return stream.GetExtFrameHead(); }

    Bytes bytes;
    CZOAVStream stream;
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
};

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
    const FrameInfo& frame = walk.frame;
    EXPECT_EQ((Fields{frame.width, frame.height, frame.deinterlace, frame.frameRate, frame.rateValue,
                      frame.rateDenominator, frame.rotationAngle}),
              (Fields{352, 288, KX_DEINTERLACE_SINGLE, 25, 30000, 1001, 2}));
    EXPECT_EQ(int32_t{frame.frameEncodeType}, KX_ENCODE_VIDEO_ZO_H265); // the last head wins
    const ExtZOAVIFrameInfo& ext = walk.ext;
    const KX_FOG_THROUGH fog = ext.fogThrough;
    EXPECT_EQ((Fields{ext.fishEyeGain, ext.fishEyeDenoiseLevel, ext.fishInstallStyle, ext.fishEyeCorrectMode,
                      ext.fishEyeRadius, ext.ratioHeigth, ext.ratioEncodeHeight, fog.bIsExist, fog.nAirLightIntesion,
                      ext.mSliceSensor, ext.slicePosLength, ext.slicePosOffset}),
              (Fields{1, 2, 3, 4, 263, 9, 3, 1, 4, 2, 48, 52 + 28}));
    EXPECT_EQ(walk.Heads().pHead80, walk.bytes.data());
    EXPECT_EQ(walk.Heads().pHead82, nullptr);
}

TEST(ExtHead, InterlaceAndCodec)
{
    for (const auto& [nType, nCodec, nDeinterlace, nEncodeType] : Rows<uint8_t, uint8_t, int32_t, int32_t>{
             {1, 8, KX_DEINTERLACE_SINGLE, KX_ENCODE_VIDEO_ZO_H264},
             {2, 8, KX_DEINTERLACE_PAIR, KX_ENCODE_VIDEO_ZO_H264},
             {7, 8, KX_DEINTERLACE_NONE, KX_ENCODE_VIDEO_ZO_H264},
             {1, 3, KX_DEINTERLACE_NONE, KX_ENCODE_VIDEO_MPEG4}, // whatever the head says
             {7, 17, KX_DEINTERLACE_NONE, KX_ENCODE_VIDEO_UNKNOWN},
             {7, 16, KX_DEINTERLACE_NONE, KX_ENCODE_VIDEO_AVS3}}) {
        const FrameInfo frame = WALK({0x82, nType, 0, 0, 0, 5, 0xD0, 2, 0x81, 0, nCodec, 0}).frame;
        EXPECT_EQ((Fields{frame.deinterlace, frame.frameEncodeType}), (Fields{nDeinterlace, nEncodeType}))
            << int{nCodec};
    }
}

TEST(ExtHead, SliceTableOverflowsItsLength)
{
    const ExtZOAVIFrameInfo ext = WALK({0x99, 3, 2, 0x80, 7, 0x38, 4, 0}).ext;
    EXPECT_EQ((Fields{ext.n_slice, ext.srcPicWidth, ext.srcPicHeight, ext.sliceInfoOffset, ext.sliceInfoLength}),
              (Fields{3, 1920, 1080, 32, 96}));
    EXPECT_TRUE(StepsBy({0x99, 1, 2, 0, 0, 0, 0, 0}, 8 + 32));
    EXPECT_TRUE(StepsBy({0x99, 64, 65, 0, 0, 0, 0, 0}, 8 + 1024)); // 66560 in 16 bits
}

TEST(ExtHead, AudioFields)
{
    for (const auto& [head, expected] : Rows<Bytes, Fields>{// channels, codec, bits, rate, bit rate
                                                            {{0x83, 2, 26, 9}, {2, 26, 16, 48000, 0}},
                                                            {{0x83, 1, 10, 0}, {1, KX_ENCODE_AUDIO_G711U, 16, 8000, 0}},
                                                            {{0x83, 1, 48, 13}, {1, 48, 8, 64000, 0}},
                                                            {{0x83, 1, 7, 14}, {1, 7, 8, 0, 0}}, // no such rate
                                                            {{0x83, 1, 29, 255}, {1, 29, 16, 0, 24000}},
                                                            {{0x83, 1, 36, 1}, {1, 36, 16, 4000, 48000}},
                                                            {{0x8C, 8, 2, 26, 8, 21, 0, 0}, {2, 26, 16, 44100, 384000}},
                                                            {{0x8C, 8, 2, 30, 8, 3, 0, 0}, {2, 30, 16, 44100, 5300}},
                                                            {{0x8C, 8, 2, 30, 8, 22, 0, 0}, {2, 30, 16, 44100, 0}}}) {
        const FrameInfo frame = WALK(head).frame;
        EXPECT_EQ((Fields{frame.channels, frame.frameEncodeType, frame.bitsPerSample, frame.samplesPerSec,
                          frame.audioBitrate}),
                  expected);
    }
}

TEST(ExtHead, StructureFields)
{
    const WALK walk(Bytes{0x84, 1, 2, 0} + Bytes{0x85, 1, 2, 3} + Bytes{0x88, 1, 2, 3, 4, 0, 0, 2} +
                    Bytes{0x92, 0, 1, 2, 3, 4, 0, 0} + Bytes{0x94, 3, 2, 0} + Bytes{0x96, 4, 1, 0} +
                    Bytes{0xA0, 0, 0xE7, 3} + Bytes{0xA1, 0xFF, 0, 0} + Bytes{0xB2, 4, 10, 0} +
                    Bytes{0xB8, 8, 0, 0, 1, 2, 3, 4} + Bytes{0xB9, 8, 7, 0, 0, 0, 0, 0} +
                    Bytes{0xBD, 12, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8});
    const FrameInfo& frame = walk.frame;
    const KX_DATA_CUSTOM_CHANGE change = walk.ext.customChangeInfo;
    EXPECT_EQ((Fields{change.chType, change.chLength, change.chValue, walk.Heads().head88.vfVal[3],
                      walk.Heads().head88.chType, frame.companyType, frame.tpStreamHeaderLen, frame.allLevels,
                      frame.levelOrder, frame.totalChannels, frame.curChannel}),
              (Fields{1, 2, 3, 4, 2, 0x0201, 0x0403, 3, 2, 4, 1}));
    EXPECT_NE(walk.Heads().pHead84, nullptr);
    EXPECT_EQ((Fields{frame.frameTime.nMilliSecond, frame.incompleteFrameFlag, walk.ext.refIFrameSeq,
                      frame.nYuvTimeStamp, frame.bPrivacyEnable, static_cast<int64_t>(frame.utcTime)}),
              (Fields{999, 0x80, 990, 0x04030201, 7, 0x0807060504030201}));
}

TEST(ExtHead, CipherKinds)
{
    const Bytes known = {0, 1, 2, 3, 4, 5, 6, 7, 0xFF};
    for (const auto& [nTag, expected] : Rows<uint8_t, Fields>{{0x89, {1, 2, 3, 0, 0, 0, 0, 0, 0}},
                                                              {0x95, {1, 2, 3, 4, 5, 6, 7, 0, 0}},
                                                              {0xB5, {0, 8, 13, 12, 11, 10, 14, 0, 0}},
                                                              {0xB6, {0, 10, 12, 11, 13, 0, 0, 0, 0}}}) {
        Fields kinds;
        for (const uint8_t nType : known) {
            const bool bSized = nTag >= 0xB5;
            kinds.push_back(
                WALK({nTag, bSized ? uint8_t{3} : nType, bSized ? nType : uint8_t{0}, 0}).frame.nEncryptType);
        }
        EXPECT_EQ(kinds, expected) << int{nTag};
    }
    EXPECT_NE(WALK({0x89, 0xFF, 0, 0}).Heads().pHead89, nullptr); // it still counts as there
    const WALK part({0x95, 0, 0x10, 0x20, 1, 2, 3, 0});
    EXPECT_EQ((Fields{part.frame.encryptOffset, part.frame.nEncryptLen}), (Fields{0x2010, 0x030201}));
    const WALK sum({0xB3, 8, 1, 2, 3, 4, 5, 6});
    EXPECT_EQ((Fields{sum.ext.encryptCheckSum, sum.ext.encryptNonse[1]}), (Fields{0x06050201, 4}));
}

TEST(ExtHead, KeyedCipherEndsWithItsOwnSize)
{
    Bytes head = Counting(76, 0xB5);
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
    Bytes head = Counting(80, 0xB6);
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
    const auto walk = [] {
        for (const Bytes& head :
             {Bytes{0x9C, 1, 0, 0, 5, 0, 0, 0, 1, 2, 3, 4}, Bytes{0xB0, 8, 0, 0, 0, 0, 0, 1}, Bytes{0xB1, 4, 1}})
            EXPECT_EQ(int32_t{WALK(Bytes{0x80, 1, 44, 36} + Bytes{0x81, 0, 1, 0} + Bytes(4) + head).frame.deinterlace},
                      KX_DEINTERLACE_SINGLE);
    };
    EXPECT_EQ(LogOf(walk, false), "warn frameInfoEx.digtalSignatureEncdeclen 5, nIndex 12, nExtFrameLen 24\n"
                                  "warn m_extFrameHead.headB0.header.encryptKeySize 1, nIndex 12, nExtFrameLen 20\n"
                                  "warn frameInfoEx.osdExtDataLen 2, nIndex 12, nExtFrameLen 15\n");
}

TEST(ExtHead, StepsOfEveryClass)
{
    for (const auto& [head, nStep] : Rows<Bytes, size_t>{{{0x84}, 4},
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
                                                         {{0xB1, 2}, 4}})
        EXPECT_TRUE(StepsBy(head, nStep)) << int{head[0]} << " by " << nStep;
    // A self-sized head of 2 leads into itself: its third byte is taken for the next tag.
    EXPECT_EQ(uint8_t{WALK({0xB9, 2, 0x8B, 0x5A, 0, 0}).frame.rotationAngle}, 0x5A);
}

// The frame bounds the fields, not the run; what lies outside the frame is absent.
TEST(ExtHead, FieldsOutsideTheFrameAreAbsent)
{
    const Bytes head = {0x82, 1, 0, 0, 0x80, 7, 0x38, 4};
    EXPECT_EQ(int32_t{WALK(head, 1).frame.width}, 1920); // a run of one byte, the rest of the head is payload
    for (size_t nSize = 1; nSize <= head.size(); ++nSize) {
        const FrameInfo cut = WALK(Part(head, 0, nSize), 255).frame;
        EXPECT_EQ((Fields{cut.width, cut.height}), (Fields{nSize >= 6 ? 1920 : 0, nSize >= 8 ? 1080 : 0})) << nSize;
    }
    for (int nTag = 0; nTag < 256; ++nTag) { // every tag, cut at every length
        for (size_t nSize = 1; nSize < 90; ++nSize)
            EXPECT_LE(uint8_t{WALK(Counting(nSize, static_cast<uint8_t>(nTag)), 255).ext.osdExtDataLen}, 253);
    }
}

} // namespace Marvane::FrameSift
