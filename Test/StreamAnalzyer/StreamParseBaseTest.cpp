#include "StreamAnalzyer/StreamParseBase.h"

#include <string_view>

#include "Memory/LogicData.h"
#include "Support/Testing.h"
#include "Tools/FourCC.h"

namespace Marvane::FrameSift {

namespace {

// A toy format: "FRAM", one byte of length (head included, 0 to 255), one byte of error flags, then the body. "BORD" is
// a border.
class CToyStream : public CStreamParseBase
{
public:
    int GetType() override { return 1; }
    bool CheckFrameID(int scanID) override { return static_cast<uint32_t>(scanID) == FourCC("FRAM"); }
    bool BuildFrame(CLogicData* logicData, int pos, FrameInfo& frame, ExtZOAVIFrameInfo&) override
    {
        const uint8_t* pHead = logicData->GetData(pos, 6);
        if (pHead == nullptr || logicData->GetData(pos, pHead[4]) == nullptr)
            return false;
        frame.frameLen = pHead[4];
        frame.errorFlags = pHead[5];
        frame.framePointer = logicData->GetData(pos, pHead[4]);
        frame.streamPointer = frame.framePointer + 6;
        return true;
    }
    void FrameVerify(CLogicData*, int, FrameInfo& frame, ExtZOAVIFrameInfo&) override { frame.frameSubType = 77; }
    bool IsBorderID(int scanID) override { return static_cast<uint32_t>(scanID) == FourCC("BORD"); }
    bool GetFrameEndPos(CLogicData* logicData, int pos, int& nEnd) override
    {
        nEnd = pos + logicData->GetByte(pos + 4) - 1;
        return true;
    }
    void OnOneParseOver() override { ++nParseOver; }

    int nParseOver = 0;
};

class CCollector : public IFrameCallBack
{
public:
    explicit CCollector(CLogicData& data) : m_data(data) {}
    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo*, void* userData) override
    {
        int64_t nStreamPos = 0;
        int64_t nFramePos = 0;
        m_data.GetKeyPos(nStreamPos, nFramePos);
        lengths.push_back(int32_t{frame->frameLen});
        subTypes.push_back(int32_t{frame->frameSubType});
        framePos.push_back(nFramePos);
        streamPos.push_back(nStreamPos);
        pUserData = userData;
        return 0;
    }

    std::vector<int32_t> lengths, subTypes;
    std::vector<int64_t> framePos, streamPos;
    void* pUserData = nullptr;

private:
    CLogicData& m_data;
};

struct TOY
{
    int Parse(std::string_view chunk)
    {
        bytes.assign(chunk.begin(), chunk.end());
        data.JoinData(bytes.data(), static_cast<int>(bytes.size()));
        return stream.ParseData(&data, &collector);
    }

    std::vector<uint8_t> bytes;
    CLogicData data;
    CToyStream stream;
    CCollector collector{data};
};

// A literal with all its zeros.
template <size_t nSize>
std::string_view Text(const char (&text)[nSize])
{
    return {text, nSize - 1};
}

} // namespace

TEST(FrameScan, FindsFramesAndTellsWhereTheyLie)
{
    TOY toy;
    EXPECT_EQ(toy.Parse(Text("..FRAM\x08\0xyFRAM\x07\0z....FR")), KX_SUCCESS);
    EXPECT_EQ(toy.collector.lengths, (std::vector<int32_t>{8, 7}));
    EXPECT_EQ(toy.collector.subTypes, (std::vector<int32_t>{77, 77}));
    EXPECT_EQ(toy.collector.framePos, (std::vector<int64_t>{2, 10}));
    EXPECT_EQ(toy.Parse(Text("AM\x06\0")), KX_SUCCESS); // an ID split between chunks
    EXPECT_EQ(toy.collector.framePos, (std::vector<int64_t>{2, 10, 21}));
    EXPECT_EQ(toy.collector.streamPos.back(), 27);
    EXPECT_EQ(toy.stream.nParseOver, 2);
    EXPECT_EQ(toy.collector.pUserData, nullptr);
}

TEST(FrameScan, AFrameOfNoLengthDoesNotStopIt)
{
    TOY toy;
    EXPECT_EQ(toy.Parse(Text("FRAM\0\0FRAM\x06\0....")), KX_SUCCESS);
    EXPECT_EQ(toy.collector.lengths, (std::vector<int32_t>{0, 6}));
}

TEST(FrameScan, ABadLengthIsReplacedByTheWayToTheNextBorder)
{
    TOY toy;
    EXPECT_EQ(toy.Parse(Text("FRAM\x06\x02")), KX_SUCCESS); // no border yet: the frame waits
    EXPECT_TRUE(toy.collector.lengths.empty());
    EXPECT_EQ(toy.Parse(Text("12345BORDFRAM\x06\0")), KX_SUCCESS);
    EXPECT_EQ(toy.collector.lengths, (std::vector<int32_t>{11, 6}));
    EXPECT_EQ(toy.collector.streamPos.front(), 0); // such a frame counts as all payload
}

TEST(FrameScan, InEndTimeModeTheBodyIsWalkedThrough)
{
    TOY toy;
    toy.stream.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_END_TIME}));
    EXPECT_EQ(toy.Parse(Text("FRAM\x10\0FRAM\x0A\0....")), KX_SUCCESS);
    EXPECT_EQ(toy.collector.lengths, (std::vector<int32_t>{16, 10}));
    EXPECT_EQ(toy.collector.subTypes, (std::vector<int32_t>{0, 0})); // not verified
    EXPECT_NE(toy.collector.pUserData, nullptr);
}

TEST(FrameScan, RefusesNullAndATooShortWindow)
{
    TOY toy;
    EXPECT_EQ(toy.stream.ParseData(nullptr, &toy.collector), KX_ERROR_PARAMETER);
    EXPECT_EQ(toy.stream.ParseData(&toy.data, nullptr), KX_ERROR_PARAMETER);
    EXPECT_EQ(toy.Parse(Text("FRA")), KX_ERROR_PARAMETER); // these bytes are lost
    EXPECT_EQ(toy.Parse(Text("M\x06\0....")), KX_SUCCESS);
    EXPECT_TRUE(toy.collector.lengths.empty());
}

} // namespace Marvane::FrameSift
