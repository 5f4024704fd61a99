// How long frames last: a frame rate from time stamps, an audio frame's duration from its payload.
#ifndef FRAMESIFT_SRC_TOOLS_CALCULATETIME_H
#define FRAMESIFT_SRC_TOOLS_CALCULATETIME_H

#include <cstdint>
#include <map>

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

// A tool for whoever needs it; no parser does. One object measures one stream.
class CCalculateTime
{
public:
    // The estimate in frames a second, 0 before the first one. To be called for each video frame in stream order, with
    // time stamps in milliseconds. It is refreshed once a second; within the first second, at each P frame. A gap in
    // frameSeq, or a step back of a frame that is no B frame, begins a new second and keeps the estimate. Also writes
    // rateValue and rateDenominator. KX_ERROR_SYSTEM_OUT_OF_MEMORY as a rate if a frame cannot be noted.
    float GetFrameRate(FrameInfo* frame);
    // Forgets what has been measured, but the estimate.
    void SeekClear();

    // Divides both by 10 until they fit into the 16 bits of a frame's fields. False, and both as they were, if that
    // would take all digits of one of them.
    static bool DealRate(uint32_t& rateValue, uint32_t& rateDenominator);

    // In milliseconds; 0 for a codec whose frames do not tell, and without a sample rate.
    static double GetAudioDuration(const FrameInfo* frame);

    // Samples in a frame of MPEG audio, by the two-bit fields version and layer of its head; 0 for reserved ones.
    static int CalMPEGSampleBit(int version, int layer);
    // In kbit/s, for layer 2 alone; 0 for all else. version: 1, 2, or 25 for 2.5; index: bitrate_index.
    static int GetMPEGBitRateByIndex(int version, int layer, int index);
    // The frames that follow each other from the front on. ADTS frames count only if they are of MPEG-4 and have no
    // check sum. A frame that is cut off counts, and ends the count, as does one that tells no length.
    static uint32_t GetAACFrameNum(const uint8_t* data, uint32_t len);
    static uint32_t GetMP2FrameNum(const uint8_t* data, uint32_t len, uint32_t sampleRate);

private:
    bool NoteFrame(const FrameInfo& frame);
    void WalkNotedFrames();
    void TakeInterval(int64_t nInterval);

    int m_pre_pts = -1;        // time stamp last walked; -1: none
    int m_frame_count = 0;     // intervals counted in this second
    int m_frame_last_seq = -1; // of the frame last given; -1: none
    int m_preTimeStamp = -1;
    int m_last_frame = 0;         // never read
    float m_frame_alingn = 0;     // never read
    float m_frame_rate = 0;       // the estimate
    int time_diff = 0;            // milliseconds summed in this second
    std::map<int, int> m_InfoMap; // timeStamp to frameSubType of the frames not yet walked, which are in decoding order
    int m_nPreTimeDiff = 0;       // last interval
    uint32_t m_nRateValue = 0;    // a rate as a fraction; nothing sets it but DealRate, which finds 0 in it
    uint32_t m_nRateDenominator = 0;
    bool m_bBeginCal = true; // no full second has been measured yet
};

} // namespace Marvane::FrameSift

#endif
