#include "Mux/AudioHead.h"
#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_rates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                 22050, 16000, 12000, 11025, 8000,  7350};
constexpr uint32_t sc_samplesPerBlock = 1024;

} // namespace

std::optional<AUDIO_HEAD> ReadAdtsHead(std::span<const uint8_t> bytes)
{
    CBitReader bits(bytes);
    if (bits.Bits(12) != 0xFFF)
        return std::nullopt;
    bits.Skip(1); // ID: MPEG-4 or MPEG-2
    const uint32_t layer = bits.Bits(2);
    bits.Skip(1 + 2); // protection_absent, profile
    const uint32_t sampling_frequency_index = bits.Bits(4);
    bits.Skip(1);
    const uint32_t channel_configuration = bits.Bits(3);
    bits.Skip(4);
    const uint32_t aac_frame_length = bits.Bits(13);
    bits.Skip(11); // adts_buffer_fullness
    const uint32_t nBlocks = bits.Bits(2) + 1;
    if (bits.Overrun() || layer != 0 || sampling_frequency_index >= std::size(sc_rates) ||
        aac_frame_length <= gsk_audioHeadSize)
        return std::nullopt;
    AUDIO_HEAD head;
    head.nFrameSize = aac_frame_length;
    head.nSamplesPerSec = sc_rates[sampling_frequency_index];
    head.nChannels = channel_configuration == 7 ? 8 : channel_configuration;
    head.nSamples = nBlocks * sc_samplesPerBlock;
    return head;
}

} // namespace Marvane::FrameSift
