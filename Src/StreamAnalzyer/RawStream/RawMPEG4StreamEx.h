// The MPEG-4 elementary stream inside HB blocks.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_RAWMPEG4STREAMEX_H
#define FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_RAWMPEG4STREAMEX_H

#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"

namespace Marvane::FrameSift {

// Its audio frames have the long head, and are never doubted.
class CRawMPEG4StreamEx : public CRawMPEG4Stream
{
public:
    bool BuildAudioFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame) override;
    bool FrameLengthVerify(CLogicData*, int, int) override { return true; }
};

} // namespace Marvane::FrameSift

#endif
