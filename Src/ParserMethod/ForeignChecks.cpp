// Checks for formats that have no parser here.
#include <algorithm>
#include <array>
#include <string_view>

#include "Memory/WindowRead.h"
#include "ParserMethod/ParserCreator.h"
#include "Tools/FourCC.h"

namespace Marvane::FrameSift {

namespace {

using IDENTIFIER = std::array<uint8_t, 16>;

constexpr IDENTIFIER sc_asf = {0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9, 0xCF, 0x11,
                               0x8E, 0xE4, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
constexpr IDENTIFIER sc_ifv = {0x11, 0xD2, 0xD3, 0xAB, 0xBA, 0xA9, 0xCF, 0x11,
                               0x8E, 0xE6, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};

constexpr std::array<uint32_t, 6> sc_rmWords = {FourCC("PROP"), FourCC("CONT"), FourCC("MDPR"),
                                                FourCC("DATA"), FourCC(".RMF"), FourCC("INDX")};
constexpr std::array<std::string_view, 3> sc_hbV30Names = {"HBGKSTREAMV30", "HBGKIPCH", "HBGKIPCB"};

constexpr int sc_tsPacketLen = 188;
constexpr uint8_t sc_tsSync = 0x47;

bool StandsAt(CLogicData& logicData, int32_t nIndex, const IDENTIFIER& identifier)
{
    const uint8_t* pBytes = logicData.GetData(nIndex, static_cast<int>(identifier.size()));
    return pBytes != nullptr && std::equal(identifier.begin(), identifier.end(), pBytes);
}

} // namespace

// WAVE is not recognised, whatever kind of RIFF file follows the word.
uint32_t CParserCreator::checkRIFF(CLogicData*, uint32_t, int32_t)
{
    return KX_STREAM_TYPE_UNKNOWN;
}

bool CParserCreator::checkASF(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    return StandsAt(*plogicData, nIndex, sc_asf);
}

bool CParserCreator::checkIFV(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    return StandsAt(*plogicData, nIndex, sc_ifv);
}

bool CParserCreator::checkRMID(CLogicData*, uint32_t nScanID, int32_t)
{
    return std::find(sc_rmWords.begin(), sc_rmWords.end(), nScanID) != sc_rmWords.end();
}

// The count goes on over calls; ten sync bytes in a row, a packet apart, decide.
bool CParserCreator::checkTS(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    const int64_t nSize = plogicData->Size();
    for (int64_t nPos = int64_t{nIndex} + sc_tsPacketLen; nPos < nSize; nPos += sc_tsPacketLen) {
        if (plogicData->GetByte(static_cast<int>(nPos)) != sc_tsSync) {
            tsCount = 0;
            return false;
        }
        if (++tsCount == 10)
            return true;
    }
    return false;
}

bool CParserCreator::checkMDVRX(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    const uint8_t* pBytes = GetDataAt(*plogicData, int64_t{nIndex} + 4, 1);
    return pBytes != nullptr && *pBytes == 'X';
}

bool CParserCreator::checkHBV30(CLogicData* plogicData, uint32_t, int32_t nIndex)
{
    const uint8_t* pBytes = plogicData->GetData(0, nIndex);
    if (pBytes == nullptr)
        return false;
    const uint8_t* pEnd = pBytes + nIndex;
    return std::any_of(sc_hbV30Names.begin(), sc_hbV30Names.end(), [&](std::string_view name) {
        return std::search(pBytes, pEnd, name.begin(), name.end()) != pEnd;
    });
}

} // namespace Marvane::FrameSift
