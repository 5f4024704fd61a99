// Whether the numbers of the frames leave some out.
#ifndef FRAMESIFT_APP_CHECK_NUMBERWATCH_H
#define FRAMESIFT_APP_CHECK_NUMBERWATCH_H

#include <array>
#include <deque>
#include <optional>
#include <vector>

#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

// Video frames and audio frames, each kind by itself. Most recorders number the kinds apart; some number all frames
// together, and then frames of other kinds have the numbers that a kind leaves out. Video frames are numbered by one in
// any case; audio frames only count as lost if theirs ran by one around the gap. A stream of several channels is not
// judged.
class CNumberWatch
{
public:
    explicit CNumberWatch(CHECK_REPORT& report) : m_report(report) {}
    // LostFrames, SequenceRestart, OutOfOrder and RepeatedNumber go to the report, some of them frames later.
    void Follow(const FrameInfo& frame, const FRAME_MARK& mark);
    void Finish(); // no frame follows

private:
    struct GAP
    {
        FRAME_MARK before;
        FRAME_MARK after;
        uint32_t nLost = 0;
        bool bOwnKind = true;       // else it may be frames of another kind that are lost
        bool bConfirmed = true;     // else it is none if the next number does not go on by one
        std::vector<uint32_t> late; // its numbers that came behind it
    };
    // What one kind's numbers have to do with those of another.
    struct OTHER_KIND
    {
        bool bSeen = false;
        bool bSinceLast = false;
        bool bApart = false; // one of the two ran by one across a frame of the other
    };
    struct LINE
    {
        int32_t nFrameType = KX_FRAME_TYPE_UNKNOWN;
        std::optional<FRAME_MARK> last = std::nullopt; // the highest number
        std::optional<FRAME_MARK> back = std::nullopt; // a lower one; the next frame tells what it was
        uint32_t nRun = 0;                             // frames up to the last whose numbers ran by one
        std::deque<GAP> gaps = {};                     // late frames may still fill them
        uint32_t nFilled = 0;                          // numbers behind the last that other kinds have
        uint32_t nHighestFilled = 0;
        std::array<OTHER_KIND, 4> others = {}; // by KX_FRAME_TYPE_*
    };

    static bool IsRegular(const LINE& line);
    static bool IsOwnNumbering(const LINE& line);
    static void NoteOther(LINE& line, const FRAME_MARK& mark);
    void TakeNumber(LINE& line, const FRAME_MARK& mark);
    void Advance(LINE& line, const FRAME_MARK& mark);
    void ProveApart(LINE& line);
    static void OpenGap(LINE& line, const FRAME_MARK& mark);
    bool FillGap(LINE& line, const FRAME_MARK& mark);
    void JudgeBack(LINE& line, const FRAME_MARK& next);
    void Restart(LINE& line, FRAME_MARK mark);
    void SettleGaps(LINE& line, uint32_t nWindow);
    void Tell(FINDING_KIND eKind, const LINE& line, const FRAME_MARK& mark);

    CHECK_REPORT& m_report;
    std::array<LINE, 2> m_lines = {LINE{KX_FRAME_TYPE_VIDEO}, LINE{KX_FRAME_TYPE_AUDIO}};
};

} // namespace Marvane::FrameSift

#endif
