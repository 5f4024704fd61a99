#include "StreamAnalzyer/OldStream/OldAudio.h"

#include "Memory/WindowRead.h"
#include "Tools/AudioSampleMap.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_nextIdLen = 4;

constexpr bool IsEightBit(uint8_t chType)
{
    return chType == KX_ENCODE_AUDIO_PCM || chType == KX_ENCODE_AUDIO_TALK;
}

} // namespace

bool BuildOldAudioFrame(CLogicData& logicData, int nFramePos, const OLD_AUDIO_FORM& form, FrameInfo& frame)
{
    if (logicData.GetData(nFramePos, form.nHeadLen) == nullptr)
        return false;
    const auto head = ReadRecordAt<ZOOLD_STREAM_AUDIO_HEADER>(logicData, nFramePos);
    if (!head.has_value() || int64_t{nFramePos} + form.nHeadLen + head->nDataLen + sc_nextIdLen > logicData.Size())
        return false;
    const int nFrameLen = form.nHeadLen + head->nDataLen;
    uint8_t* pFrame = logicData.GetData(nFramePos, nFrameLen);
    if (pFrame == nullptr)
        return false;
    const bool bBadSamples = head->samples == 0 || head->samples >= gsk_AudioSampleMap.size();
    if (bBadSamples && form.eBadSamples == BAD_SAMPLES::Mend)
        pFrame[offsetof(ZOOLD_STREAM_AUDIO_HEADER, samples)] = 0;
    const uint8_t chSamples = bBadSamples && form.eBadSamples != BAD_SAMPLES::AsTold ? 0 : head->samples;
    frame.frameType = KX_FRAME_TYPE_AUDIO;
    frame.streamType = form.nStreamType;
    frame.streamLen = head->nDataLen;
    frame.frameLen = nFrameLen;
    frame.framePointer = pFrame;
    frame.streamPointer = pFrame + form.nHeadLen;
    frame.frameEncodeType = head->type;
    frame.samplesPerSec = AudioSampleRate(chSamples);
    frame.channels = 1;
    frame.bitsPerSample = IsEightBit(head->type) ? 8 : 16;
    return true;
}

} // namespace Marvane::FrameSift
