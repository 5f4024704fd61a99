#include "AudioParser/AudioParser.h"

#include <array>
#include <cstddef>

namespace Marvane::FrameSift {

namespace {

constexpr int sc_adtsHeadLen = 7; // without its check sum

// By sampling_frequency_index, ISO/IEC 14496-3, 1.6.3.4. Two indices behind these are reserved; the last one stands for
// a rate that ADTS has no room for.
constexpr std::array<int32_t, 13> sc_samplingFrequencies = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                                            22050, 16000, 12000, 11025, 8000,  7350};

} // namespace

int CAudioParser::ParseAAC(const uint8_t* data, int len, FrameInfo* frame)
{
    if (data == nullptr || frame == nullptr)
        return KX_ERROR_EMPTY_PTR;
    if (len < sc_adtsHeadLen)
        return KX_ERROR_PARAMETER;
    const auto nIndex = static_cast<size_t>(data[2] >> 2 & 15);
    if (nIndex < sc_samplingFrequencies.size())
        frame->samplesPerSec = sc_samplingFrequencies[nIndex];
    frame->channels = (data[2] & 1) << 2 | data[3] >> 6; // channel_configuration
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
