// What the head of an audio payload says.
#ifndef FRAMESIFT_SRC_AUDIOPARSER_AUDIOPARSER_H
#define FRAMESIFT_SRC_AUDIOPARSER_AUDIOPARSER_H

#include <cstdint>

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

class CAudioParser
{
public:
    // Fills samplesPerSec and channels from the ADTS head at the front, the sync word of which is not looked at. A
    // sampling index that stands for no rate leaves samplesPerSec as it is. KX_SUCCESS, KX_ERROR_EMPTY_PTR for a null
    // pointer, KX_ERROR_PARAMETER for less than a head.
    static int ParseAAC(const uint8_t* data, int len, FrameInfo* frame);
};

} // namespace Marvane::FrameSift

#endif
