// Which of the older formats a stream with video is: the one whose lengths lead from frame to frame.
#include <array>

#include "Memory/TryAlloc.h"
#include "Memory/WindowRead.h"
#include "StreamAnalzyer/OldStream/HBStream.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/OldStream/NewStream.h"
#include "StreamAnalzyer/OldStream/ZOOldStream.h"
#include "StreamAnalzyer/OldStream/ZOPTStream.h"
#include "StreamAnalzyer/WordSlider.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_fewHBs = 5; // a sixth ID decides

struct NEW_HEAD_LENGTH
{
    int nHeadLen;
    int nStreamType;
};

// The payload of a New frame begins with a start code: where one stands, there the head ends. In this order.
constexpr std::array<NEW_HEAD_LENGTH, 3> sc_behindFDandFB = {{
    {16, KX_STREAM_TYPE_NEW},
    {8, KX_STREAM_TYPE_NEW_EX},
    {20, KX_STREAM_TYPE_NEW_EX1},
}};
constexpr std::array<NEW_HEAD_LENGTH, 3> sc_behindFCandFA = {{
    {8, KX_STREAM_TYPE_NEW},
    {16, KX_STREAM_TYPE_NEW_EX},
    {12, KX_STREAM_TYPE_NEW_EX1},
}};

int JudgeNew(CLogicData& logicData, int nPos, const std::array<NEW_HEAD_LENGTH, 3>& rows)
{
    for (const NEW_HEAD_LENGTH& row : rows) {
        const auto nWord = ReadWordAt(logicData, int64_t{nPos} + row.nHeadLen);
        if (!nWord.has_value())
            return KX_STREAM_TYPE_UNKNOWN;
        if (*nWord <= 1 || *nWord >> 8 == 1)
            return row.nStreamType;
    }
    return KX_STREAM_TYPE_UNKNOWN;
}

int JudgeZOPT(CLogicData& logicData, int nPos)
{
    const auto head = ReadRecordAt<ZOPT_HEADER>(logicData, nPos);
    if (!head.has_value())
        return KX_STREAM_TYPE_UNKNOWN;
    const auto nNext = ReadWordAt(logicData, int64_t{nPos} + int64_t{sizeof(ZOPT_HEADER)} + head->nFrameBodyLen);
    return nNext == sc_wordZOPT ? KX_STREAM_TYPE_ZOPT : KX_STREAM_TYPE_UNKNOWN;
}

std::unique_ptr<IStreamAnalzyer> CreateAnalyzer(int nType)
{
    switch (nType) {
    case KX_STREAM_TYPE_ZOPT:
        return TryMake<CZOPTStream>();
    case KX_STREAM_TYPE_NEW:
    case KX_STREAM_TYPE_NEW_EX:
    case KX_STREAM_TYPE_NEW_EX1:
        return TryMake<CNewStream>(nType);
    case KX_STREAM_TYPE_HB:
        return TryMake<CHBStream>();
    default:
        return nullptr;
    }
}

} // namespace

// The type, or why there is no parser for it; 0 if the window does not tell. It is asked at every video ID of a pass, and
// answers alike for the same window, so one look is enough.
int CZOOldStream::InitRealSubjectToParse(CLogicData& logicData)
{
    m_lsAudio.clear();
    if (m_bJudged)
        return KX_STREAM_TYPE_UNKNOWN;
    m_bJudged = true;
    int nType = KX_STREAM_TYPE_UNKNOWN;
    CWordSlider slider(logicData, logicData.Size());
    slider.SlideTo([&](int nWord) {
        nType = JudgeType(logicData, static_cast<uint32_t>(nWord), slider.WordPos());
        return nType != KX_STREAM_TYPE_UNKNOWN;
    });
    if (nType == KX_STREAM_TYPE_UNKNOWN)
        return KX_STREAM_TYPE_UNKNOWN;
    auto pParser = CreateAnalyzer(nType);
    if (pParser == nullptr)
        return KX_ERROR_UNGET_STREAM_TYPE;
    if (pParser->Init() != 0)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_pOldStream = std::move(pParser);
    return nType;
}

int CZOOldStream::JudgeType(CLogicData& logicData, uint32_t nWord, int nPos)
{
    switch (nWord) {
    case sc_wordFD:
    case sc_wordFB:
        return JudgeNew(logicData, nPos, sc_behindFDandFB);
    case sc_wordFC:
    case sc_wordFA:
        return JudgeNew(logicData, nPos, sc_behindFCandFA);
    case sc_wordHB:
        // One that an earlier pass has seen counts no second time.
        if (nPos + 4 > logicData.GetSearchedLen() && ++m_nhbCount > sc_fewHBs)
            return KX_STREAM_TYPE_HB;
        return KX_STREAM_TYPE_UNKNOWN;
    case sc_wordZOPT:
        return JudgeZOPT(logicData, nPos);
    default:
        return KX_STREAM_TYPE_UNKNOWN;
    }
}

} // namespace Marvane::FrameSift
