#include "FrameWriter/ExtHeads.h"

#include <algorithm>
#include <array>

namespace Marvane::FrameSift {

namespace {

// Indexed by chSampleType. 0 and 2 both mean 8000 Hz; the search finds 0.
constexpr std::array<uint32_t, 14> sc_sampleRates = {8000,  4000,  8000,  11025, 16000,  20000,  22050,
                                                     32000, 44100, 48000, 96000, 128000, 192000, 64000};

// Indexed by chBitRateType; 0 stands for a rate without a code.
constexpr std::array<uint32_t, 22> sc_bitRates = {0,      16000,  32000,  5300,   6300,   8000,   24000,  40000,
                                                  48000,  56000,  64000,  80000,  96000,  112000, 128000, 144000,
                                                  160000, 192000, 224000, 256000, 320000, 384000};

constexpr uint8_t sc_head8CSize = 8;

uint8_t Low(uint16_t nValue)
{
    return static_cast<uint8_t>(nValue & 0xFF);
}

uint8_t High(uint16_t nValue)
{
    return static_cast<uint8_t>(nValue >> 8);
}

} // namespace

Bytes ExtHead80(uint8_t chWidth, uint8_t chHeight, ZOAV_INTERLACE eInterlace)
{
    return {0x80, static_cast<uint8_t>(eInterlace), chWidth, chHeight};
}

Bytes ExtHead81(uint8_t chEncodeType, uint8_t chFrameRate)
{
    return {0x81, 0, chEncodeType, chFrameRate};
}

Bytes ExtHead82(uint16_t nWidth, uint16_t nHeight, ZOAV_INTERLACE eInterlace)
{
    return {0x82, static_cast<uint8_t>(eInterlace), 0, 0, Low(nWidth), High(nWidth), Low(nHeight), High(nHeight)};
}

Bytes ExtHead8A(uint8_t chEncodeType, uint16_t rateValue, uint16_t rateDenominator)
{
    return {0x8A, 0, chEncodeType, 0, Low(rateValue), High(rateValue), Low(rateDenominator), High(rateDenominator)};
}

Bytes ExtHead8B(uint8_t nRotationAngle)
{
    return {0x8B, nRotationAngle, 0, 0};
}

Bytes ExtHead94(uint8_t nAllLevels, uint8_t nLevelOrder)
{
    return {0x94, nAllLevels, nLevelOrder, 0};
}

Bytes ExtHead83(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType)
{
    return {0x83, chChannels, chEncodeType, chSampleType};
}

Bytes ExtHead8C(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType, uint8_t chBitRateType)
{
    return {0x8C, sc_head8CSize, chChannels, chEncodeType, chSampleType, chBitRateType, 0, 0};
}

Bytes ExtHead92(uint16_t companyType, uint16_t tpStreamHeaderLen)
{
    return {0x92, 0, Low(companyType), High(companyType), Low(tpStreamHeaderLen), High(tpStreamHeaderLen), 0, 0};
}

Bytes ExtHead96(uint8_t totalChannels, uint8_t curChannel)
{
    return {0x96, totalChannels, curChannel, 0};
}

Bytes ExtHeadA0(uint16_t nMilliSecond)
{
    return {0xA0, 0, Low(nMilliSecond), High(nMilliSecond)};
}

Bytes ExtHeadA1(uint8_t nIsCompleteFrameFlag)
{
    return {0xA1, nIsCompleteFrameFlag, 0, 0};
}

std::optional<uint8_t> SampleTypeOf(uint32_t nSamplesPerSec)
{
    const auto* pFound = std::find(sc_sampleRates.begin(), sc_sampleRates.end(), nSamplesPerSec);
    if (pFound == sc_sampleRates.end())
        return std::nullopt;
    return static_cast<uint8_t>(pFound - sc_sampleRates.begin());
}

uint8_t BitRateTypeOf(uint32_t nBitsPerSec)
{
    const auto* pFound = std::find(sc_bitRates.begin(), sc_bitRates.end(), nBitsPerSec);
    return pFound == sc_bitRates.end() ? uint8_t{0} : static_cast<uint8_t>(pFound - sc_bitRates.begin());
}

} // namespace Marvane::FrameSift
