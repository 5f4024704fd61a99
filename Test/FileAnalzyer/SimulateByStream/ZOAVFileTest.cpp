// What recordings of the ZOAV family add: calendar times, checked reads, deciphering by index.
#include "FrameWriter/ExtHeads.h"
#include "Support/LogOf.h"
#include "Support/ParsedRecording.h"
#include "Tools/KXAes.h"

namespace Marvane::FrameSift {

namespace {

Bytes g_key = Counting(16, 1);
const Bytes g_plain = Counting(50);

Bytes Enciphered(Bytes bytes, size_t nOffset, size_t nLen)
{
    CKXAes aes;
    EXPECT_TRUE(aes.SetKey(g_key.data(), LengthOf(g_key)));
    auto nOut = static_cast<uint32_t>(nLen);
    EXPECT_TRUE(aes.Encrypt(bytes.data() + nOffset, nOut, bytes.data() + nOffset, nOut));
    return bytes;
}

struct KEYED_RECORDING
{
    KEYED_RECORDING(const Bytes& bytes, bool bKey) : file(bytes)
    {
        EXPECT_EQ(parser.SetExtInfo(KX_ENCRYPT_AES, g_key.data(), bKey ? 16 : 15) == KX_SUCCESS, bKey);
        IFileManipPtr passFile = file.Open();
        EXPECT_EQ(parser.ParseFile(passFile, &collector), KX_SUCCESS);
        result = parser.GetOneIndex(0, &index, &frame, &ext);
    }
    Bytes Payload() const { return CopyOf(frame.streamPointer, frame.streamLen); }

    RecordingFile file;
    CZOAVFile parser;
    CIndexCollector collector;
    KX_INDEX_INFO index{};
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    int result = -1;
};

} // namespace

TEST(ZOAVFile, AnIndexedFrameIsDecipheredAndMarkedClear)
{
    for (const auto& [pName, head, cipher] :
         Rows<const char*, Bytes, Bytes>{{"whole", ExtHead89(0), Enciphered(g_plain, 0, 48)},
                                         {"a part", ExtHead95(0, 4, 32), Enciphered(g_plain, 4, 32)}}) {
        SCOPED_TRACE(pName);
        const Bytes stored = ZoavFrame().ExtHead(head).Payload(cipher);
        KEYED_RECORDING keyed(stored + Filler(64), true);
        ASSERT_EQ(keyed.result, KX_SUCCESS);
        EXPECT_EQ(keyed.Payload(), g_plain);
        EXPECT_EQ((Fields{keyed.frame.nEncryptType, keyed.frame.nEncryptLen, keyed.frame.framePointer[25]}),
                  (Fields{0, 0, 0xFF}));
        EXPECT_EQ(keyed.collector.frames.at(0).frame.payload, g_plain);
        // The index keeps what the file says, so the next look deciphers again.
        EXPECT_EQ(keyed.parser.GetOneIndex(0, &keyed.index, &keyed.frame, nullptr), KX_SUCCESS);
        EXPECT_EQ(keyed.Payload(), g_plain);

        KEYED_RECORDING other(stored + Filler(64), false);
        ASSERT_EQ(other.result, KX_SUCCESS);
        EXPECT_EQ(other.Payload(), cipher);
        EXPECT_EQ(int32_t{other.frame.nEncryptType}, KX_ENCRYPT_AES);
    }
}

TEST(ZOAVFile, ADataFrameUnderAKeyThatIsNotThereStartsBehindItsHeads)
{
    Bytes head = {0xB5, 76, 1, 0, 0, 0, 32, 0, 0};
    head.resize(76);
    for (const uint8_t chSubType : {uint8_t{5}, uint8_t{17}}) { // one of them has a sub-head, which the pass steps over
        const Bytes frame = ZoavFrame().Type(ZOAV_FRAME::Data, chSubType).ExtHead(head).Payload(Bytes(64, 20));
        KEYED_RECORDING keyed(frame + Filler(64), true);
        ASSERT_EQ(keyed.result, KX_SUCCESS);
        EXPECT_EQ(int32_t{keyed.frame.nEncryptType}, KX_ENCRYPT_AES256);
        EXPECT_EQ(keyed.frame.streamPointer - keyed.frame.framePointer, 24 + 76);
    }
}

TEST(ZOAVFile, AShortReadIsToldInTheLog)
{
    const std::string log = LogOf([] {
        ParsedRecording recording(ZoavFrame().Payload(Bytes(400, 1)).Build());
        recording.file.Truncate(100);
        KX_INDEX_INFO index{};
        FrameInfo frame{};
        EXPECT_EQ(recording.parser.GetFrameByIndex(&index, &frame, nullptr), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    });
    EXPECT_NE(log.find("read size  100s small than frame len 432"), std::string::npos) << log;
}

TEST(ZOAVFile, TimesAreThoseOfTheCalendar)
{
    CZOAVFile parser;
    KX_FILE_INFO info{};
    info.fileStartTime = int64_t{1700000000} * 1000;
    info.fileEndTime = info.fileStartTime + 7999;
    parser.CalcDuration(info);
    EXPECT_EQ(info.duration, 7u);
    FrameInfo frame{};
    frame.frameTime = {2031, 4, 9, 10, 31, 5, 700};
    frame.timeStamp = 12345;
    const int64_t nTime = parser.RecalcTimeStamp(&frame);
    frame.frameTime.nSecond += 2;
    EXPECT_EQ(parser.RecalcTimeStamp(&frame) - nTime, 2000);
    EXPECT_EQ(nTime % 1000, 0);
}

} // namespace Marvane::FrameSift
