// What a listing says at its end.
#ifndef FRAMESIFT_APP_FRAMES_FRAMESUMMARY_H
#define FRAMESIFT_APP_FRAMES_FRAMESUMMARY_H

#include <map>
#include <optional>
#include <string>

#include "FrameWriter/RecordingClock.h"
#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

// Counts every frame that was found, whether the listing shows it or not.
class CFrameSummary
{
public:
    void Count(const LISTED_FRAME& listed);
    // Some lines for a reader. nBytes: how much of the stream was read; unfinished: how much of it, at its end, waits for
    // the rest of a frame; none if reading stopped before the end.
    std::string Text(int32_t nStreamType, uint64_t nBytes, std::optional<uint64_t> unfinished) const;

    // Those with bytes: a place where video frames are missing is none.
    uint64_t DamagedFrames() const;
    // Of nBytes, those neither in a frame nor waiting for the rest of one.
    uint64_t OutsideBytes(uint64_t nBytes, uint64_t nUnfinished) const;

private:
    void CountLoss(const FrameInfo& frame);
    void CountCipher(const FrameInfo& parsed);
    void CountTime(const KX_TIME& time);
    std::string FramesText() const;
    std::string DamageText(uint64_t nOutside) const;
    std::string LossText() const;
    std::string CipherText() const;
    std::string BytesText(uint64_t nBytes, uint64_t nOutside, bool bWhole) const;
    std::string TimeSpanText() const;

    uint64_t m_nFrames = 0;
    uint64_t m_nDamaged = 0;
    uint64_t m_nFrameBytes = 0;
    int32_t m_nInnerType = 0; // of the last frame
    bool m_bHasPlaces = true; // false: frames are put together from pieces, and their lengths say nothing of the stream
    std::map<int32_t, uint64_t> m_framesByType;
    std::map<int32_t, uint64_t> m_videoBySubType;
    std::map<int32_t, uint64_t> m_damageByFlag;
    std::optional<uint32_t> m_lastVideoSeq;
    uint64_t m_nGaps = 0;      // places where video frames are missing
    uint64_t m_nLostVideo = 0; // the missing frames, by their numbers
    uint64_t m_nBackwards = 0; // places where the numbers run backwards, so that they tell no count
    uint64_t m_nDeciphered = 0;
    std::map<int32_t, uint64_t> m_encipheredByType;
    std::optional<KX_TIME> m_earliest; // of the good frames
    std::optional<KX_TIME> m_latest;
};

} // namespace Marvane::FrameSift

#endif
