#include "ParserMethod/ParserCreator.h"

#include <algorithm>
#include <array>

#include "FileAnalzyer/SimulateByStream/RawMPEG4File.h"
#include "FileAnalzyer/SimulateByStream/ZOAVFile.h"
#include "FileAnalzyer/SimulateByStream/ZOOldFile.h"
#include "Memory/TryAlloc.h"
#include "Memory/WindowRead.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/OldStream/ZOOldStream.h"
#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"
#include "StreamAnalzyer/WordSlider.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/FourCC.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ParserMethod/ParserCreator";
constexpr uint32_t sc_enoughForRawType = 4095;
constexpr uint32_t sc_enoughDelete = 32767;

struct FAMILY_MAGIC
{
    uint32_t nWord;
    uint32_t nStreamType;
};

// The lower-case words are tails: a stream taken up in mid-frame may show one first. Read as a head it is normally
// refused, and the next word decides.
constexpr std::array<FAMILY_MAGIC, 8> sc_familyMagics = {{
    {FourCC("ZOAV"), KX_STREAM_TYPE_ZOSTD},
    {FourCC("zoav"), KX_STREAM_TYPE_ZOSTD},
    {FourCC("MYAV"), KX_STREAM_TYPE_STD_MY},
    {FourCC("myav"), KX_STREAM_TYPE_STD_MY},
    {FourCC("LXAV"), KX_STREAM_TYPE_STD_LX},
    {FourCC("lxav"), KX_STREAM_TYPE_STD_LX},
    {FourCC("WMAV"), KX_STREAM_TYPE_STD_WM},
    {FourCC("wmav"), KX_STREAM_TYPE_STD_WM},
}};

const FAMILY_MAGIC* FindFamily(uint32_t nWord)
{
    const auto row = std::find_if(sc_familyMagics.begin(), sc_familyMagics.end(),
                                  [nWord](const FAMILY_MAGIC& magic) { return magic.nWord == nWord; });
    return row != sc_familyMagics.end() ? &*row : nullptr;
}

// Whether the chain can answer anything for this word, or count it. For any other word it looks at the window's first
// word alone.
bool IsRemarkable(uint32_t nWord)
{
    return IsLegacyStart(nWord) || nWord == sc_wordHB || nWord == FourCC("RIFF") || nWord == FourCC("ZOII") ||
           nWord == sc_wordZOPT || FindFamily(nWord) != nullptr;
}

} // namespace

uint32_t CParserCreator::GetAnalyType(CLogicData* logicData)
{
    // Unremarkable words are nearly all there are. What the chain would answer for them depends on the window's first
    // word only, and holds from the first byte on; so it is asked once, and the scan stops at remarkable words alone.
    uint32_t nType = JudeType(logicData, CWordSlider::EMPTY_WORD, -3);
    CWordSlider slider(*logicData, logicData->Size());
    const auto judge = [&](int nWord) {
        if (IsRemarkable(static_cast<uint32_t>(nWord)))
            nType = JudeType(logicData, static_cast<uint32_t>(nWord), slider.WordPos());
        return nType != KX_STREAM_TYPE_UNKNOWN;
    };
    if (nType == KX_STREAM_TYPE_UNKNOWN)
        slider.SlideTo(judge);

    const uint32_t nSize = logicData->Size();
    enoughForRawType = enoughForRawType || nSize > sc_enoughForRawType;
    enoughDelete = enoughDelete || nSize > sc_enoughDelete;
    if (nType != KX_STREAM_TYPE_UNKNOWN) {
        KX_WRITE_LOG(KX_LOG_LevelTrace, sc_sourcePath, "StreamType:%d\n", static_cast<int>(nType));
        return nType;
    }
    if (!enoughForRawType)
        m_NalTypeArray.clear();
    // A window of fewer than 3 bytes is kept whole: they may begin a magic.
    const int nSizeIndex = CWordSlider::ToIndex(nSize);
    logicData->SetCurParseIndex(enoughDelete ? std::max(nSizeIndex - 3, 0) : 0);
    return KX_STREAM_TYPE_UNKNOWN;
}

uint32_t CParserCreator::JudeType(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex)
{
    const uint32_t nType = ReJudgeType(plogicData, nScanID, nIndex);
    if (nType != KX_STREAM_TYPE_UNKNOWN)
        KX_WRITE_LOG(KX_LOG_LevelTrace, sc_sourcePath, "StreamType:%d\n", static_cast<int>(nType));
    return nType;
}

uint32_t CParserCreator::ReJudgeType(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex)
{
    if (nScanID == FourCC("RIFF"))
        return checkRIFF(plogicData, nScanID, nIndex);
    if (nScanID == FourCC("ZOII") && nIndex == 0)
        return KX_STREAM_TYPE_ZOSTD;
    if (const FAMILY_MAGIC* pFamily = FindFamily(nScanID); pFamily != nullptr)
        return checkZOAV(plogicData, nScanID, nIndex) ? pFamily->nStreamType : uint32_t{KX_STREAM_TYPE_UNKNOWN};
    if (checkNew(plogicData, nScanID, nIndex) || checkNewEx(plogicData, nScanID, nIndex) ||
        checkNewEx1(plogicData, nScanID, nIndex) || checkZOPT(plogicData, nScanID, nIndex))
        return KX_STREAM_TYPE_OLD;
    // The two counts differ on purpose: the sixth sighting of an HB word decides, the twelfth of an audio word.
    if (nScanID == sc_wordHB)
        return ++hbCount > 5 ? KX_STREAM_TYPE_OLD : KX_STREAM_TYPE_UNKNOWN;
    if (nScanID == sc_wordAudio && checkAudio(plogicData, nScanID, nIndex))
        return audioCount++ > 10 ? KX_STREAM_TYPE_OLD : KX_STREAM_TYPE_UNKNOWN;
    return KX_STREAM_TYPE_UNKNOWN;
}

bool CParserCreator::checkZOAV(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    const auto head = ReadRecordAt<STD_FRAME_HEAD>(*plogicData, nIndex);
    return head.has_value() && CZOAVStream::CheckStdFrameHead(&*head);
}

std::unique_ptr<IStreamAnalzyer> CParserCreator::CreateStreamAnalyzer(uint32_t nStreamType)
{
    switch (nStreamType) {
    case KX_STREAM_TYPE_MPEG4:
        return TryMake<CRawMPEG4Stream>();
    case KX_STREAM_TYPE_OLD:
        return TryMake<CZOOldStream>();
    case KX_STREAM_TYPE_ZOSTD:
    case KX_STREAM_TYPE_STD_MY:
    case KX_STREAM_TYPE_STD_LX:
    case KX_STREAM_TYPE_STD_WM:
        return TryMake<CZOAVStream>();
    default:
        return nullptr;
    }
}

std::unique_ptr<IFileAnalzyer> CParserCreator::CreateFileAnalyzer(uint32_t nStreamType)
{
    switch (nStreamType) {
    case KX_STREAM_TYPE_MPEG4:
        return TryMake<CRawMPEG4File>();
    case KX_STREAM_TYPE_OLD:
        return TryMake<CZOOldFile>();
    case KX_STREAM_TYPE_ZOSTD:
    case KX_STREAM_TYPE_STD_MY:
    case KX_STREAM_TYPE_STD_LX:
    case KX_STREAM_TYPE_STD_WM:
        return TryMake<CZOAVFile>();
    default:
        return nullptr;
    }
}

} // namespace Marvane::FrameSift
