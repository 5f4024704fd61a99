// Finds out what a stream is, and makes the parser for it.
#ifndef FRAMESIFT_SRC_PARSERMETHOD_PARSERCREATOR_H
#define FRAMESIFT_SRC_PARSERMETHOD_PARSERCREATOR_H

#include <cstdint>
#include <memory>
#include <vector>

#include "IAnalyzer/IFileAnalzyer.h"
#include "IAnalyzer/IStreamAnalzyer.h"

namespace Marvane::FrameSift {

class CLogicData;

// Looks at a window of its own, from the first byte at each call until 32 KiB have been seen without a result. From
// then on it looks at each new chunk with 3 bytes of look-behind.
class CParserCreator
{
public:
    // The stream type, or 0 while it is not known.
    uint32_t GetAnalyType(CLogicData* logicData);

    // One place of the scan: nScanID is the word, nIndex where it starts in the window.
    uint32_t JudeType(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    uint32_t ReJudgeType(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);

    // Null for a type without a parser, and without memory.
    static std::unique_ptr<IStreamAnalzyer> CreateStreamAnalyzer(uint32_t nStreamType);
    // The same for recordings.
    static std::unique_ptr<IFileAnalzyer> CreateFileAnalyzer(uint32_t nStreamType);

    // The checks of the chain.
    bool checkZOAV(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkNew(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkNewEx(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkNewEx1(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkZOPT(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkAudio(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);

    // Checks for formats that have no parser; the chain does not use them.
    uint32_t checkRIFF(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkASF(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkIFV(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkRMID(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkTS(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkMDVRX(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);
    bool checkHBV30(CLogicData* plogicData, uint32_t nScanID, int32_t nIndex);

    // Formats that are known by name only: no stream is ever taken for one of them.
    bool checkRM(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkDali(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkHuanghe(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkSANLI(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkLC(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkTDWY(CLogicData*, uint32_t, int32_t) { return false; }
    bool cheackSSAV(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkCrearoStream(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkLiyuan(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkZLAV(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkRuiming(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkXGZT(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkPS(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkPU8000(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkStarStreamEx(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkAACADTS(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkMP3(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkLX(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkRawMJPEG(CLogicData*, uint32_t, int32_t) { return false; }
    bool checkMP4VOD(CLogicData*, uint32_t, int32_t) { return false; }
    bool IsMpeg4Raw(CLogicData*, uint32_t, int32_t) { return false; }
    bool IsMpeg2Raw(CLogicData*, uint32_t, int32_t) { return false; }
    bool IsH264Raw(CLogicData*, uint32_t, int32_t) { return false; }
    bool IsH265Raw(CLogicData*, uint32_t, int32_t) { return false; }
    bool IsSVACRaw(CLogicData*, uint32_t, int32_t) { return false; }
    uint32_t AnalyzerNalType(CLogicData*, uint32_t, int32_t) { return 0; }
    uint32_t JudgeRawType(CLogicData*, uint32_t, int32_t) { return 0; }

private:
    std::vector<uint8_t> m_NalTypeArray;

    // Sightings of weak signs. They survive from one call to the next while the window is scanned again from its first
    // byte, so one word counts once per call for as long as it stays in the window. Kept: a few chunks with one or two
    // such words reach the limit.
    int32_t hbCount = 0, zoptCount = 0, tsCount = 0, audioCount = 0;
    // For the formats that are known by name only.
    [[maybe_unused]] int32_t tdwyCount = 0, dvrCount = 0, hhCount = 0, jvsCount = 0, h3cCount = 0, hengyiCount = 0;
    [[maybe_unused]] int32_t huangheCount = 0, daliCount = 0, lvffCount = 0, pu8000Count = 0, starCount = 0;
    [[maybe_unused]] int32_t mp4Count = 0, cgiCount = 0, psCount = 0, starExCount = 0;

    bool enoughForRawType = false; // latched: 4 KiB have been seen at once
    bool enoughDelete = false;     // latched: 32 KiB have been seen at once
    [[maybe_unused]] std::vector<uint32_t> lsCGIPos;
    [[maybe_unused]] int32_t m_bMpeg2Feature = 0;
};

} // namespace Marvane::FrameSift

#endif
