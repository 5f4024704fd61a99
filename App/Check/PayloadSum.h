// Whether a frame's payload was checked against a sum.
#ifndef FRAMESIFT_APP_CHECK_PAYLOADSUM_H
#define FRAMESIFT_APP_CHECK_PAYLOADSUM_H

#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

namespace Marvane::FrameSift {

// The record of a frame does not tell, so the frame's extension heads are asked again.
class CPayloadSum
{
public:
    // frame: sound, its pointers alive.
    bool WasChecked(const FrameInfo& frame);

private:
    CZOAVStream m_parser;
};

} // namespace Marvane::FrameSift

#endif
