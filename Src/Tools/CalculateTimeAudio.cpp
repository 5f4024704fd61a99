// Durations of audio frames.
#include <algorithm>
#include <array>
#include <cstddef>

#include "Tools/CalculateTime.h"

namespace Marvane::FrameSift {

namespace {

// The versions as GetMPEGBitRateByIndex takes them.
constexpr int sc_mpeg1 = 1;
constexpr int sc_mpeg2 = 2;
constexpr int sc_mpeg25 = 25;

constexpr int sc_aacSamples = 1024;
constexpr uint32_t sc_adtsLengthEnd = 6; // bytes of an ADTS head up to its frame length
constexpr uint32_t sc_mpegHeadUsed = 3;  // bytes of an MPEG audio head that are read

// Two-bit fields of an MPEG audio head's second byte.
int VersionField(uint8_t nByte)
{
    return nByte >> 3 & 3;
}

int LayerField(uint8_t nByte)
{
    return nByte >> 1 & 3;
}

// A reserved field leaves what the frame before had.
void TakeVersion(int nField, int& nVersion)
{
    constexpr std::array<int, 4> versions = {sc_mpeg25, 0, sc_mpeg2, sc_mpeg1};
    if (nField != 1)
        nVersion = versions[static_cast<size_t>(nField)];
}

void TakeLayer(int nField, int& nLayer)
{
    if (nField != 0)
        nLayer = 4 - nField;
}

double MP2Duration(const uint8_t* pStream, uint32_t nLen, int32_t nSampleRate)
{
    const uint32_t nFrames = CCalculateTime::GetMP2FrameNum(pStream, nLen, static_cast<uint32_t>(nSampleRate));
    if (nFrames == 0)
        return 0.0;
    const int nSamples = CCalculateTime::CalMPEGSampleBit(VersionField(pStream[1]), LayerField(pStream[1]));
    return 1000.0 * nFrames * nSamples / nSampleRate;
}

} // namespace

double CCalculateTime::GetAudioDuration(const FrameInfo* frame)
{
    if (frame == nullptr || frame->samplesPerSec <= 0)
        return 0.0;
    const double dRate = frame->samplesPerSec;
    // A frame that is shorter than its heads has no payload.
    const auto nLen = static_cast<uint32_t>(std::max(int32_t{frame->streamLen}, 0));
    switch (frame->frameEncodeType) {
    case KX_ENCODE_AUDIO_MP2:
        return MP2Duration(frame->streamPointer, nLen, frame->samplesPerSec);
    case KX_ENCODE_AUDIO_AAC:
        return 1000.0 * sc_aacSamples * GetAACFrameNum(frame->streamPointer, nLen) / dRate;
    case KX_ENCODE_AUDIO_PCM16:
        return nLen * 1000.0 / (dRate * 2);
    case KX_ENCODE_AUDIO_G711A:
    case KX_ENCODE_AUDIO_G711U:
    case KX_ENCODE_AUDIO_PCM:
        return nLen * 1000.0 / dRate;
    default:
        return 0.0;
    }
}

int CCalculateTime::CalMPEGSampleBit(int version, int layer)
{
    if (version < 0 || version > 3 || version == 1)
        return 0;
    switch (layer) {
    case 1: // layer III, which has half as many samples at low rates
        return version == 3 ? 1152 : 576;
    case 2:
        return 1152;
    case 3:
        return 384;
    default:
        return 0;
    }
}

int CCalculateTime::GetMPEGBitRateByIndex(int version, int layer, int index)
{
    // Layer II: ISO/IEC 11172-3, 2.4.2.3, and ISO/IEC 13818-3, 2.4.2.3.
    constexpr std::array<int, 15> rates = {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
    constexpr std::array<int, 15> lowRates = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
    if (layer != 2 || index < 1 || index > 14)
        return 0;
    if (version == sc_mpeg1)
        return rates[static_cast<size_t>(index)];
    return version == sc_mpeg2 || version == sc_mpeg25 ? lowRates[static_cast<size_t>(index)] : 0;
}

uint32_t CCalculateTime::GetAACFrameNum(const uint8_t* data, uint32_t len)
{
    uint32_t nFrames = 0;
    for (uint32_t nPos = 0; data != nullptr && len - nPos >= 2;) {
        const uint8_t* pHead = data + nPos;
        if (pHead[0] != 0xFF || pHead[1] != 0xF1)
            break;
        ++nFrames;
        if (len - nPos < sc_adtsLengthEnd)
            break;
        const uint32_t nFrameLen = (pHead[3] & 3U) << 11 | uint32_t{pHead[4]} << 3 | pHead[5] >> 5;
        // Without a length the same frame would count for ever.
        if (nFrameLen == 0 || nFrameLen > len - nPos)
            break;
        nPos += nFrameLen;
    }
    return nFrames;
}

uint32_t CCalculateTime::GetMP2FrameNum(const uint8_t* data, uint32_t len, uint32_t sampleRate)
{
    uint32_t nFrames = 0;
    int nVersion = 0;
    int nLayer = 0;
    for (uint32_t nPos = 0; data != nullptr && len - nPos >= sc_mpegHeadUsed;) {
        const uint8_t* pHead = data + nPos;
        if (pHead[0] != 0xFF || pHead[1] < 0xE0)
            break;
        TakeVersion(VersionField(pHead[1]), nVersion);
        TakeLayer(LayerField(pHead[1]), nLayer);
        const auto nRate = static_cast<uint32_t>(GetMPEGBitRateByIndex(nVersion, nLayer, pHead[2] >> 4));
        ++nFrames;
        // Half as long at low rates, as only frames of layer III are: in such a stream of layer II the walk ends behind
        // the first frame. Kept.
        const uint32_t nScale = nVersion == sc_mpeg1 ? 144000 : 72000;
        // Not the padding bit, which is that of the third byte. Kept; layer II never sets this one.
        const uint32_t nPadding = pHead[1] >> 1 & 1;
        const uint32_t nStep = (sampleRate != 0 ? nScale * nRate / sampleRate : 0) + nPadding;
        // Standing still, the same frame would count for ever.
        if (nStep == 0 || nStep > len - nPos)
            break;
        nPos += nStep;
    }
    return nFrames;
}

} // namespace Marvane::FrameSift
