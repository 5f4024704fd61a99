#include "ParserMethod/ParserCreator.h"

#include "Memory/LogicData.h"
#include "Support/LogOf.h"
#include "Support/Sift.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

// A detector with its window, fed as a stream handle feeds it.
struct DETECTOR
{
    uint32_t Feed(const Bytes& chunk)
    {
        bytes = chunk;
        window.JoinData(bytes.data(), static_cast<int>(bytes.size()));
        return creator.GetAnalyType(&window);
    }

    Bytes bytes;
    CLogicData window;
    CParserCreator creator;
};

uint32_t TypeOf(const Bytes& stream)
{
    return DETECTOR().Feed(stream);
}

Bytes Word(uint8_t nLow)
{
    return {0, 0, 1, nLow};
}

Bytes Lsb32(uint32_t nValue)
{
    return {static_cast<uint8_t>(nValue), static_cast<uint8_t>(nValue >> 8), static_cast<uint8_t>(nValue >> 16),
            static_cast<uint8_t>(nValue >> 24)};
}

// A legacy frame: the word, a head of nHeadLen bytes with the length in its word number nLengthWord, a payload that
// begins with a start code, and the word of the next frame.
Bytes LegacyFrame(uint8_t nWord, size_t nHeadLen, size_t nLengthWord, uint8_t nNext)
{
    Bytes head = Word(nWord) + Bytes(nHeadLen - 4, 0x33);
    const Bytes length = Lsb32(0xAA000000 + 20); // the upper byte is not length
    std::copy(length.begin(), length.end(), head.begin() + static_cast<ptrdiff_t>(nLengthWord * 4));
    const Bytes payload = Bytes{0, 0, 1, 0xB6} + Bytes(16, 0x44);
    return head + payload + Word(nNext);
}

constexpr uint32_t OLD = KX_STREAM_TYPE_OLD;

} // namespace

TEST(Detector, TheFamilyByItsMagic)
{
    const Bytes payload = Filler(40);
    EXPECT_EQ(TypeOf(ZoavFrame().Payload(payload)), 8U);
    EXPECT_EQ(TypeOf(ZoavFrame().Family(ZOAV_FAMILY::MYAV).Payload(payload)), 195U);
    EXPECT_EQ(TypeOf(ZoavFrame().Family(ZOAV_FAMILY::LXAV).Payload(payload)), 196U);
    EXPECT_EQ(TypeOf(ZoavFrame().Family(ZOAV_FAMILY::WMAV).Payload(payload)), 197U);
    EXPECT_EQ(TypeOf(Bytes{'Z', 'O', 'I', 'I'}), 8U);
    EXPECT_EQ(TypeOf(Bytes{'.', 'Z', 'O', 'I', 'I'} + Filler(100)), 0U);
    EXPECT_EQ(TypeOf(ZoavFrame().WrongSum().Payload(payload)), 0U);
    EXPECT_EQ(TypeOf(ZoavFrame().WrongSum() + ZoavFrame().Family(ZOAV_FAMILY::LXAV).Payload(payload)), 196U);
    EXPECT_EQ(TypeOf(Bytes{'R', 'I', 'F', 'F'} + Filler(100)), 0U);
    const Bytes frame = ZoavFrame();
    EXPECT_EQ(TypeOf(Bytes(frame.begin(), frame.begin() + 23)), 0U); // the head is not all there yet
    EXPECT_EQ(TypeOf(Bytes(frame.begin(), frame.begin() + 24)), 8U);
}

TEST(Detector, LegacyFramesByWhatFollowsThem)
{
    for (const auto& [nWord, nHeadLen, nLengthWord] : Rows<uint8_t, size_t, size_t>{{0xFD, 16, 3},
                                                                                    {0xFB, 16, 3},
                                                                                    {0xFC, 8, 1},
                                                                                    {0xFA, 8, 1},
                                                                                    {0xFD, 8, 1},
                                                                                    {0xFB, 8, 1},
                                                                                    {0xFC, 16, 3},
                                                                                    {0xFA, 16, 3},
                                                                                    {0xFD, 20, 3},
                                                                                    {0xFB, 20, 3},
                                                                                    {0xFC, 12, 1},
                                                                                    {0xFA, 12, 1}}) {
        const Bytes frame = LegacyFrame(nWord, nHeadLen, nLengthWord, 0xFA);
        EXPECT_EQ(TypeOf(Filler(3) + frame), OLD) << int{nWord} << " " << nHeadLen;
        EXPECT_EQ(TypeOf(Filler(3) + LegacyFrame(nWord, nHeadLen, nLengthWord, 0xF2)), 0U);
        EXPECT_EQ(TypeOf(Filler(3) + Bytes(frame.begin(), frame.end() - 1)), 0U);
    }
    // At the window's very first byte the word alone is enough.
    for (const uint8_t nWord : Bytes{0xF0, 0xFA, 0xFB, 0xFC, 0xFD})
        EXPECT_EQ(TypeOf(Word(nWord)), OLD);
    EXPECT_EQ(TypeOf(Word(0xF2)), 0U);
}

TEST(Detector, WeakSignsCountUp)
{
    DETECTOR hb;
    EXPECT_EQ(hb.Feed(Filler(2000) + Word(0xF2)), 0U);
    for (int n = 2; n <= 5; ++n)
        EXPECT_EQ(hb.Feed({0x11}), 0U) << n; // the one word counts again at each call
    EXPECT_EQ(hb.Feed({0x11}), OLD);

    // Twelve audio frames decide, eleven do not.
    const Bytes audioHead = Word(0xF0) + Bytes{14, 0, 8, 0};
    Bytes eleven = Filler(1);
    for (int n = 0; n < 11; ++n)
        eleven = eleven + audioHead + Filler(8);
    const Bytes last = Word(0xF0) + Filler(4);
    EXPECT_EQ(TypeOf(eleven + last), 0U);
    EXPECT_EQ(TypeOf(eleven + audioHead + Filler(8) + last), OLD);

    const Bytes zopt = {'Z', 'O', 'P', 'T', 0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(TypeOf(Filler(1) + zopt + zopt + Filler(50)), 0U);
    EXPECT_EQ(TypeOf(Filler(1) + zopt + zopt + zopt), OLD);
    EXPECT_EQ(TypeOf(Filler(1) + Bytes{'Z', 'O', 'P', 'T'} + Lsb32(4) + Filler(4) + Bytes{'Z', 'O', 'P', 'T'}), OLD);
}

TEST(Detector, KeepsWhatItMayNeedAndNoMore)
{
    DETECTOR detector;
    EXPECT_EQ(detector.Feed(Filler(32767)), 0U);
    EXPECT_EQ(detector.Feed(Filler(1)), 0U);
    EXPECT_EQ(detector.window.Size(), 32768U);
    EXPECT_EQ(detector.Feed(Filler(1)), 0U); // from here on 3 bytes are kept
    EXPECT_EQ(detector.window.Size(), 4U);
    EXPECT_EQ(detector.Feed(Filler(50) + Bytes{'Z', 'O'}), 0U);
    const Bytes frame = ZoavFrame().Payload(Filler(40));
    EXPECT_EQ(detector.Feed(Bytes(frame.begin() + 2, frame.end())), 8U); // a magic across the cut
}

TEST(Detector, MakesParsersForStreamsAndFiles)
{
    for (const auto& [nType, nParserType] : Rows<uint32_t, int>{
             {1, KX_STREAM_TYPE_RAW_MPEG4}, {194, 0}, {8, KX_STREAM_TYPE_ZOSTD}, {195, 8}, {196, 8}, {197, 8}}) {
        const auto pParser = CParserCreator::CreateStreamAnalyzer(nType);
        const auto pFile = CParserCreator::CreateFileAnalyzer(nType);
        ASSERT_TRUE(pParser != nullptr && pFile != nullptr) << nType;
        EXPECT_EQ((Fields{pParser->GetType(), pFile->GetInnerType()}), (Fields{nParserType, nParserType}));
    }
    for (const uint32_t nType : {0U, 2U, 4U, 7U, 192U, 256U})
        EXPECT_TRUE(CParserCreator::CreateStreamAnalyzer(nType) == nullptr &&
                    CParserCreator::CreateFileAnalyzer(nType) == nullptr)
            << nType;
}

TEST(Detector, ChecksOutsideTheChain)
{
    CParserCreator creator;
    Bytes bytes =
        Bytes{0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9, 0xCF, 0x11, 0x8E, 0xE4, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65} +
        Bytes{'-', 'H', 'B', 'G', 'K', 'I', 'P', 'C', 'B', '-', 'X'};
    CLogicData window;
    window.JoinData(bytes.data(), static_cast<int>(bytes.size()));
    EXPECT_TRUE(creator.checkASF(&window, 0, 0) && creator.checkRMID(&window, 0x2E524D46, 0));
    EXPECT_TRUE(creator.checkMDVRX(&window, 0, 22) && creator.checkHBV30(&window, 0, 25));
    EXPECT_FALSE(creator.checkASF(&window, 0, 1) || creator.checkASF(&window, 0, 12));
    EXPECT_FALSE(creator.checkIFV(&window, 0, 0) || creator.checkRMID(&window, 0x2E524D47, 0));
    EXPECT_FALSE(creator.checkMDVRX(&window, 0, 23) || creator.checkHBV30(&window, 0, 24));
    EXPECT_FALSE(creator.checkHBV30(&window, 0, -1));

    Bytes packets(188 * 11, 0x11);
    for (size_t nPos = 0; nPos < packets.size(); nPos += 188)
        packets[nPos] = 0x47;
    CLogicData ts;
    ts.JoinData(packets.data(), static_cast<int>(packets.size()));
    EXPECT_FALSE(creator.checkTS(&ts, 0, 188 * 5)); // five sync bytes are counted
    EXPECT_TRUE(creator.checkTS(&ts, 0, 0));        // the next five end it
}

TEST(Detector, WritesItsResultTwice)
{
    EXPECT_EQ(LogOf([] { EXPECT_EQ(TypeOf(ZoavFrame().Payload(Filler(40))), 8U); }),
              "trace JudeType StreamType:8\ntrace GetAnalyType StreamType:8\n");
}

} // namespace Marvane::FrameSift
