// The clock of a recording and its running time, followed from frame to frame.
#ifndef FRAMESIFT_APP_RECORDINGS_TIMELINE_H
#define FRAMESIFT_APP_RECORDINGS_TIMELINE_H

#include <optional>
#include <string>

#include "Check/CheckOptions.h"
#include "Recordings/TimeOption.h"

namespace Marvane::FrameSift {

struct MOMENT
{
    CLOCK_MS nClock = 0;
    int64_t nRunning = 0; // since the first frame, jumps of the clock left out

    // In the measure that the user has chosen.
    int64_t In(const WANTED_TIME& wanted) const { return wanted.bOfClock ? nClock : nRunning; }
};

// Of the frames of one kind. Holds a few sums, however long the recording.
class CTimeLine
{
public:
    // The next frame in file order. nShared: as CSharedTime answers for it.
    MOMENT Follow(CLOCK_MS nClock, int32_t nFrameRate, CLOCK_MS nShared);

    bool IsEmpty() const { return !m_last; }
    const MOMENT& Last() const { return *m_last; }
    CLOCK_MS Earliest() const { return m_nEarliest; }
    // "2026-01-31T10:00:00.000 to 2026-01-31T10:00:01.960 on its clock, 0 to 1.960 s from its start"
    std::string SpanText() const;

private:
    int64_t StepTo(CLOCK_MS nClock, int32_t nFrameRate, CLOCK_MS nShared);

    CLOCK_LIMITS m_limits; // as "check" calls it a jump, unless told otherwise
    std::optional<MOMENT> m_last;
    CLOCK_MS m_nEarliest = 0;
    CLOCK_MS m_nLatest = 0;
    int64_t m_nLongest = 0; // running time
    int64_t m_nSteps = 0;   // between neighbours without a jump
    int64_t m_nStepsMs = 0; // their sum
    uint64_t m_nJumps = 0;
};

} // namespace Marvane::FrameSift

#endif
