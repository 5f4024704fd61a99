// What the legacy parsers share: frame counts, and what other frames take from key frames.
#ifndef FRAMESIFT_SRC_TOOLS_FRAMEHELPER_H
#define FRAMESIFT_SRC_TOOLS_FRAMEHELPER_H

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

class CFrameHelper
{
public:
    virtual ~CFrameHelper() = default;

    // A stream that never ends counts on from the largest number to the smallest.
    static void CountOn(int& nNumber) { nNumber = static_cast<int>(static_cast<uint32_t>(nNumber) + 1); }
    static void CountBack(int& nNumber) { nNumber = static_cast<int>(static_cast<uint32_t>(nNumber) - 1); }

    // From 1 on, each kind by itself.
    int genVideoSeq() { return Next(m_nVideoFrameNumber); }
    int genAudioSeq() { return Next(m_nAudioFrameNumber); }
    int genDataSeq() { return Next(m_nDataFrameNumber); }

    // An I frame is kept, with a rate of 25 if it tells none; any other frame takes codec, picture and rate from the one
    // kept. It looks at no frame type beyond that: give it video only.
    void fillPFrameByKeyFrameInfo(FrameInfo& frame);
    void Clear();

protected:
    int m_nVideoFrameNumber = 0;
    int m_nAudioFrameNumber = 0;
    int m_nDataFrameNumber = 0;
    FrameInfo m_prevIframeInfo{}; // its pointers are stale once its cycle is over

private:
    static int Next(int& nNumber)
    {
        CountOn(nNumber);
        return nNumber;
    }
};

// Copies what a picture's payload tells of colour and luminance.
void TakeColour(const FrameInfo& from, FrameInfo& to);

} // namespace Marvane::FrameSift

#endif
