// Extension heads that describe the sound.
#include <algorithm>
#include <array>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"
#include "Tools/AudioBitRateMap.h"
#include "Tools/AudioSampleMap.h"

namespace Marvane::FrameSift {

namespace {

struct BIT_RATE
{
    uint8_t nCode;
    uint32_t nBitsPerSec;
};

// Head 0x83 has no field for it: some codecs imply their rate.
constexpr BIT_RATE sc_bitRateOfCodec[] = {
    {KX_ENCODE_AUDIO_G726_16, 16000},    {KX_ENCODE_AUDIO_G722_1_16, 16000},  {KX_ENCODE_AUDIO_G726_24, 24000},
    {KX_ENCODE_AUDIO_G722_1_24, 24000},  {KX_ENCODE_AUDIO_G722_1C_24, 24000}, {KX_ENCODE_AUDIO_G726_32, 32000},
    {KX_ENCODE_AUDIO_G722_1, 32000},     {KX_ENCODE_AUDIO_G722_1C_32, 32000}, {KX_ENCODE_AUDIO_G726_40, 40000},
    {KX_ENCODE_AUDIO_G722_1C_48, 48000},
};

// The wire's 10 is G.711 mu-law, which has two public codes.
void SetAudioAttr(uint64_t nCode, EXT_HEAD_TARGET& target)
{
    const auto nEncodeType = static_cast<int32_t>(nCode);
    const bool b8Bits = nEncodeType == KX_ENCODE_AUDIO_TALK || nEncodeType == KX_ENCODE_AUDIO_PCM;
    target.frame.frameEncodeType = nEncodeType == KX_ENCODE_PCM_MULAW ? int32_t{KX_ENCODE_AUDIO_G711U} : nEncodeType;
    target.frame.bitsPerSample = b8Bits ? 8 : 16;
}

void SetAudioAttrWithRate(uint64_t nCode, EXT_HEAD_TARGET& target)
{
    SetAudioAttr(nCode, target);
    const auto* pRow = std::find_if(std::begin(sc_bitRateOfCodec), std::end(sc_bitRateOfCodec),
                                    [nCode](const BIT_RATE& row) { return row.nCode == nCode; });
    if (pRow != std::end(sc_bitRateOfCodec))
        target.frame.audioBitrate = pRow->nBitsPerSec;
}

void TakeSampleRate(uint64_t nSampleType, EXT_HEAD_TARGET& target)
{
    target.frame.samplesPerSec = AudioSampleRate(nSampleType);
}

void TakeBitRate(uint64_t nBitRateType, EXT_HEAD_TARGET& target)
{
    target.frame.audioBitrate = AudioBitRate(nBitRateType);
}

constexpr std::array sc_fields83 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_83, chChannels, frame.channels),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_83, chEncodeType, SetAudioAttrWithRate),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_83, chSampleType, TakeSampleRate),
};
constexpr std::array sc_fields8C = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_8C, chChannels, frame.channels),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_8C, chEncodeType, SetAudioAttr),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_8C, chSampleType, TakeSampleRate),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_8C, chBitRateType, TakeBitRate),
};

constexpr EXT_HEAD_ROW sc_rows[] = {
    {0x83, EXT_HEAD_STEP::Fixed4, sc_fields83, &EXT_FRAME_HEAD::pHead83},
    {0x8C, EXT_HEAD_STEP::Fixed8, sc_fields8C, &EXT_FRAME_HEAD::pHead8C},
};

} // namespace

std::span<const EXT_HEAD_ROW> ExtHeadsOfAudio()
{
    return sc_rows;
}

} // namespace Marvane::FrameSift
