// Accounts for every byte of a recording.
#ifndef FRAMESIFT_APP_CHECK_FRAMEACCOUNT_H
#define FRAMESIFT_APP_CHECK_FRAMEACCOUNT_H

#include "Check/FrameOrder.h"
#include "Check/PayloadSum.h"

namespace Marvane::FrameSift {

struct UNFINISHED_FRAME
{
    int64_t nOffset = 0;
    uint32_t nAnnounced = 0; // its whole length; 0 if that is cut off too
};

// Takes the parser's records in the order of the stream. What lies between two frames is a stretch: heads that were not
// believed, tails without a head and blocks that were stepped over all go into it.
class CFrameAccount
{
public:
    CFrameAccount(CHECK_REPORT& report, const CLOCK_LIMITS& limits) : m_report(report), m_clock(limits) {}

    // The frame's pointers are alive.
    void Take(const FrameInfo& frame, int64_t nOffset);
    // All is taken, and the report's nBytes tells the size.
    void Finish(const std::optional<UNFINISHED_FRAME>& unfinished);
    int64_t End() const { return m_nEnd; } // of the last frame

private:
    void TakeBlock(const FrameInfo& frame, int64_t nOffset);
    void TakeSound(const FrameInfo& frame, const FRAME_MARK& mark);
    void TakeDamaged(const FrameInfo& frame, const FRAME_MARK& mark);
    void FollowOrder(const FrameInfo& frame, const FRAME_MARK& mark);
    void CloseStretch(int64_t nEnd, const std::optional<FRAME_MARK>& after);

    CHECK_REPORT& m_report;
    CSequenceWatch m_sequence;
    CClockWatch m_clock;
    CPayloadSum m_payloadSum;
    int64_t m_nEnd = 0;
    int64_t m_nBlocksEnd = 0; // of the blocks that stand right behind m_nEnd
    std::optional<FRAME_MARK> m_last;
};

// Whether a record stands for a frame, sound or damaged; if not, the bytes that it steps over are in no frame.
bool IsFrame(const FrameInfo& frame);
// A block of another kind, stepped over whole.
bool IsBlock(const FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
