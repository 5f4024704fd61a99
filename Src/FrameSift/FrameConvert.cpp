#include "FrameSift/FrameConvert.h"

namespace Marvane::FrameSift {

void ChangeFrameToKXFrame(const FrameInfo& frame, const ExtZOAVIFrameInfo&, KX_FRAME_INFO& target)
{
    target.frameType = frame.frameType;
    target.frameSubType = frame.frameSubType;
    target.frameEncodeType = frame.frameEncodeType;
    target.streamType = frame.streamType;
    target.framePointer = frame.framePointer;
    target.streamPointer = frame.streamPointer;
    target.frameLen = frame.frameLen;
    target.streamLen = frame.streamLen;
    target.frameTime = frame.frameTime;
    target.timeStamp = frame.timeStamp;
    target.frameSeq = frame.frameSeq;
    target.frameRate = frame.frameRate;
    target.width = frame.width;
    target.height = frame.height;
    target.bitsPerSample = frame.bitsPerSample;
    target.channels = frame.channels;
    target.samplesPerSec = frame.samplesPerSec;
    target.errorFlags = frame.errorFlags;
}

} // namespace Marvane::FrameSift
