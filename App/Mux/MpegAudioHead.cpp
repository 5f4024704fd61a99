#include "Mux/AudioHead.h"
#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

// Values of the head, on the wire.
constexpr uint32_t sc_version25 = 0;
constexpr uint32_t sc_versionReserved = 1;
constexpr uint32_t sc_version1 = 3;
constexpr uint32_t sc_layer3 = 1;
constexpr uint32_t sc_layer2 = 2;
constexpr uint32_t sc_mono = 3;

// In kbit/s. Index 0, the free format, does not tell the length of the frame; 15 is forbidden.
constexpr uint32_t sc_rates1Layer2[15] = {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr uint32_t sc_rates1Layer3[15] = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr uint32_t sc_rates2[15] = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
constexpr uint32_t sc_sampleRates1[3] = {44100, 48000, 32000};

std::optional<AUDIO_HEAD> ReadMpegHead(std::span<const uint8_t> bytes, uint32_t nWantedLayer)
{
    CBitReader bits(bytes);
    const uint32_t nSync = bits.Bits(11);
    const uint32_t nVersion = bits.Bits(2);
    const uint32_t nLayer = bits.Bits(2);
    bits.Skip(1);
    const uint32_t nBitRateIndex = bits.Bits(4);
    const uint32_t nSampleRateIndex = bits.Bits(2);
    const uint32_t nPadding = bits.Bits(1);
    bits.Skip(1);
    const uint32_t nMode = bits.Bits(2);
    if (bits.Overrun() || nSync != 0x7FF || nVersion == sc_versionReserved || nLayer != nWantedLayer ||
        nBitRateIndex == 0 || nBitRateIndex == 15 || nSampleRateIndex == 3)
        return std::nullopt;

    const bool bVersion1 = nVersion == sc_version1;
    const uint32_t nSlower = bVersion1 ? 1 : nVersion == sc_version25 ? 4 : 2;
    const auto& rates = !bVersion1 ? sc_rates2 : nLayer == sc_layer2 ? sc_rates1Layer2 : sc_rates1Layer3;
    AUDIO_HEAD head;
    head.nSamplesPerSec = sc_sampleRates1[nSampleRateIndex] / nSlower;
    head.nBitsPerSec = rates[nBitRateIndex] * 1000;
    head.nSamples = nLayer == sc_layer3 && !bVersion1 ? 576 : 1152;
    head.nChannels = nMode == sc_mono ? 1 : 2;
    head.nFrameSize = head.nSamples / 8 * head.nBitsPerSec / head.nSamplesPerSec + nPadding;
    return head;
}

} // namespace

std::optional<AUDIO_HEAD> ReadMpegLayer2Head(std::span<const uint8_t> bytes)
{
    return ReadMpegHead(bytes, sc_layer2);
}

std::optional<AUDIO_HEAD> ReadMpegLayer3Head(std::span<const uint8_t> bytes)
{
    return ReadMpegHead(bytes, sc_layer3);
}

} // namespace Marvane::FrameSift
