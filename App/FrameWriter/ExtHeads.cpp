#include "FrameWriter/ExtHeads.h"

#include <algorithm>

#include "Tools/AudioBitRateMap.h"
#include "Tools/AudioSampleMap.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_head8CSize = 8;

uint8_t Low(uint16_t nValue)
{
    return static_cast<uint8_t>(nValue & 0xFF);
}

uint8_t High(uint16_t nValue)
{
    return static_cast<uint8_t>(nValue >> 8);
}

void AppendLsb32(Bytes& to, uint32_t nValue)
{
    for (int nShift = 0; nShift < 32; nShift += 8)
        to.push_back(static_cast<uint8_t>(nValue >> nShift));
}

} // namespace

Bytes ExtHead81(uint8_t chEncodeType, uint8_t chFrameRate)
{
    return {0x81, 0, chEncodeType, chFrameRate};
}

Bytes ExtHead82(uint16_t nWidth, uint16_t nHeight)
{
    return {0x82, 0, 0, 0, Low(nWidth), High(nWidth), Low(nHeight), High(nHeight)};
}

Bytes ExtHead8A(uint8_t chEncodeType, uint16_t rateValue, uint16_t rateDenominator)
{
    return {0x8A, 0, chEncodeType, 0, Low(rateValue), High(rateValue), Low(rateDenominator), High(rateDenominator)};
}

Bytes ExtHead83(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType)
{
    return {0x83, chChannels, chEncodeType, chSampleType};
}

Bytes ExtHead8C(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType, uint8_t chBitRateType)
{
    return {0x8C, sc_head8CSize, chChannels, chEncodeType, chSampleType, chBitRateType, 0, 0};
}

Bytes ExtHead88(uint8_t chType, uint32_t nValue)
{
    Bytes head = {0x88};
    AppendLsb32(head, nValue);
    return head + Bytes{0, 0, chType};
}

Bytes ExtHead89(uint8_t chType)
{
    return {0x89, chType, 0, 0};
}

Bytes ExtHead95(uint8_t chType, uint16_t noffset, uint32_t nActualDataLen)
{
    Bytes head = {0x95, chType, Low(noffset), High(noffset)};
    AppendLsb32(head, nActualDataLen);
    return head;
}

Bytes ExtHeadA0(uint16_t nMilliSecond)
{
    return {0xA0, 0, Low(nMilliSecond), High(nMilliSecond)};
}

// 0 and 2 both mean 8000 Hz; the search finds 0.
std::optional<uint8_t> SampleTypeOf(uint32_t nSamplesPerSec)
{
    const auto* pFound =
        std::find(gsk_AudioSampleMap.begin(), gsk_AudioSampleMap.end(), static_cast<int32_t>(nSamplesPerSec));
    if (pFound == gsk_AudioSampleMap.end())
        return std::nullopt;
    return static_cast<uint8_t>(pFound - gsk_AudioSampleMap.begin());
}

uint8_t BitRateTypeOf(uint32_t nBitsPerSec)
{
    const auto* pFound = std::find(gsk_audioBitRateMap.begin(), gsk_audioBitRateMap.end(), nBitsPerSec);
    return pFound == gsk_audioBitRateMap.end() ? uint8_t{0}
                                               : static_cast<uint8_t>(pFound - gsk_audioBitRateMap.begin());
}

} // namespace Marvane::FrameSift
