// The detector's checks for the legacy streams: does the next frame begin where this one's length says?
#include "Memory/WindowRead.h"
#include "ParserMethod/ParserCreator.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

bool IsLegacyStartAt(CLogicData& logicData, int64_t nPos)
{
    const auto nWord = ReadWordAt(logicData, nPos);
    return nWord.has_value() && IsLegacyStart(*nWord);
}

struct NEW_HEAD
{
    int nHeadLen;
    int nLengthOffset; // of a little-endian word whose lower 24 bits are the payload's length
};

struct NEW_VARIANT
{
    NEW_HEAD full;  // behind 0x1FD and 0x1FB
    NEW_HEAD brief; // behind 0x1FC and 0x1FA
};

constexpr NEW_VARIANT sc_new = {{16, 12}, {8, 4}};
constexpr NEW_VARIANT sc_newEx = {{8, 4}, {16, 12}};
constexpr NEW_VARIANT sc_newEx1 = {{20, 12}, {12, 4}};

bool CheckNewVariant(CLogicData& logicData, uint32_t nScanID, int32_t nIndex, const NEW_VARIANT& variant)
{
    // For a word that starts no frame both places stay at the window's first word. So a window that begins with a
    // legacy frame start is recognised at once, whatever word is being looked at and without a second frame. Kept.
    int64_t nPayloadPos = 0;
    int64_t nNextPos = 0;
    if (nScanID >= sc_wordFA && nScanID <= sc_wordFD) {
        const bool bFull = nScanID == sc_wordFD || nScanID == sc_wordFB;
        const NEW_HEAD& head = bFull ? variant.full : variant.brief;
        const uint8_t* pHead = logicData.GetData(nIndex, head.nHeadLen);
        if (pHead == nullptr)
            return false;
        nPayloadPos = int64_t{nIndex} + head.nHeadLen;
        nNextPos = nPayloadPos + (LoadUint32Lsb(pHead + head.nLengthOffset) & 0xFFFFFF);
    }
    const auto nStartCode = ReadWordAt(logicData, nPayloadPos);
    const bool bStartCode = nStartCode.has_value() && (*nStartCode <= 1 || *nStartCode >> 8 == 1);
    return bStartCode && IsLegacyStartAt(logicData, nNextPos);
}

} // namespace

bool CParserCreator::checkNew(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex)
{
    return CheckNewVariant(*plogicData, nScanID, nIndex, sc_new);
}

bool CParserCreator::checkNewEx(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex)
{
    return CheckNewVariant(*plogicData, nScanID, nIndex, sc_newEx);
}

bool CParserCreator::checkNewEx1(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex)
{
    return CheckNewVariant(*plogicData, nScanID, nIndex, sc_newEx1);
}

bool CParserCreator::checkZOPT(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex)
{
    if (nScanID != sc_wordZOPT)
        return false;
    if (++zoptCount > 2)
        return true;
    constexpr int nHeadLen = 8;
    const uint8_t* pHead = plogicData->GetData(nIndex, nHeadLen);
    if (pHead == nullptr)
        return false;
    return ReadWordAt(*plogicData, int64_t{nIndex} + nHeadLen + LoadUint32Lsb(pHead + 4)) == sc_wordZOPT;
}

bool CParserCreator::checkAudio(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    constexpr int nHeadLen = 8;
    const uint8_t* pHead = plogicData->GetData(nIndex, nHeadLen);
    if (pHead == nullptr)
        return false;
    const int64_t nNextPos = int64_t{nIndex} + nHeadLen + static_cast<int64_t>(LoadLsb(pHead + 6, 2));
    const uint8_t* pNext = GetDataAt(*plogicData, nNextPos, nHeadLen);
    if (pNext == nullptr)
        return false;
    if (LoadUint32Msb(pNext) == sc_wordAudio)
        return true;
    // The second audio head is 8 bytes longer.
    const uint8_t* pNextEx = GetDataAt(*plogicData, nNextPos + nHeadLen, nHeadLen);
    return pNextEx != nullptr && IsLegacyStart(LoadUint32Msb(pNextEx));
}

} // namespace Marvane::FrameSift
