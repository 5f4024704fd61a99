// Fields of MPEG-4 heads that the framings read beside the parser of the payload.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_MPEG4FIELDS_H
#define FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_MPEG4FIELDS_H

#include <cstdint>

#include "ESParse/MPEG4ESParser.h"
#include "IAnalyzer/FrameInfo.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

// The frames of a raw stream begin at these, among others.
inline constexpr uint32_t gsk_firstObject = MPEG4_FIRST_OBJECT;
inline constexpr uint32_t gsk_secondObject = MPEG4_FIRST_OBJECT + 1;

// In the user data that recorders write, the byte at this place behind the start code is the frame rate.
inline constexpr int gsk_userDataRatePos = 6;
inline constexpr int gsk_userDataLen = 7;
inline constexpr int gsk_groupTimeLen = 3;

// 255 stands for one picture a second; what is above 100 is no rate.
constexpr int32_t UserDataRate(uint8_t chRate)
{
    if (chRate == 255)
        return 1;
    return chRate > 100 ? 25 : chRate;
}

// The time code of a group of VOPs, gsk_groupTimeLen bytes: 5 bits of hours, 6 of minutes, a marker, 6 of seconds. The
// day stays as it is, that is 0, in the time stamp too.
inline void TakeGroupTime(const uint8_t* pTimeCode, FrameInfo& frame)
{
    KX_TIME time = frame.frameTime;
    time.nHour = pTimeCode[0] >> 3;
    time.nMinute = (pTimeCode[0] & 7) << 3 | pTimeCode[1] >> 5;
    time.nSecond = (pTimeCode[1] & 15) << 2 | pTimeCode[2] >> 6;
    frame.frameTime = time;
    frame.timeStamp = static_cast<int32_t>(CKXConvert::KXTimeToTimeStamp(time));
}

} // namespace Marvane::FrameSift

#endif
