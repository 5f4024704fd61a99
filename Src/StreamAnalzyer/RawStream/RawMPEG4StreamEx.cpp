#include "StreamAnalzyer/RawStream/RawMPEG4StreamEx.h"

namespace Marvane::FrameSift {

namespace {

constexpr OLD_AUDIO_FORM sc_audioForm = {sizeof(ZOOLD_STREAM_AUDIO_HEADER_EX), KX_STREAM_TYPE_AUDIO, BAD_SAMPLES::Mend};

} // namespace

bool CRawMPEG4StreamEx::BuildAudioFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame)
{
    return BuildNumberedAudio(*logicData, frameStartPos, sc_audioForm, frame);
}

} // namespace Marvane::FrameSift
