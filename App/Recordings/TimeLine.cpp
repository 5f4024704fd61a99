#include "Recordings/TimeLine.h"

#include <fmt/format.h>

#include <algorithm>

#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

constexpr int64_t sc_defaultInterval = 40; // 25 frames in a second

std::string ClockText(CLOCK_MS nClock)
{
    const auto time = ClockToTime(nClock);
    return time ? TimeText(*time) : fmt::format("{} ms", nClock);
}

} // namespace

MOMENT CTimeLine::Follow(CLOCK_MS nClock, int32_t nFrameRate, CLOCK_MS nShared)
{
    if (!m_last) {
        m_nEarliest = nClock;
        m_nLatest = nClock;
    }
    const MOMENT now{nClock, m_last ? m_last->nRunning + StepTo(nClock, nFrameRate, nShared) : 0};
    m_nEarliest = std::min(m_nEarliest, nClock);
    m_nLatest = std::max(m_nLatest, nClock);
    m_nLongest = std::max(m_nLongest, now.nRunning);
    m_last = now;
    return now;
}

int64_t CTimeLine::StepTo(CLOCK_MS nClock, int32_t nFrameRate, CLOCK_MS nShared)
{
    const int64_t nStep = nClock - m_last->nClock;
    if (!m_limits.IsJump(nStep, nShared)) {
        ++m_nSteps;
        m_nStepsMs += nStep;
        return nStep;
    }
    ++m_nJumps;
    if (nShared > 0)
        return nShared;
    // The mean, since a clock without milliseconds stands still between its seconds, and a time-lapse may tell any rate.
    if (m_nSteps > 0)
        return std::max<int64_t>(m_nStepsMs / m_nSteps, 1);
    return nFrameRate > 0 ? std::max(1000 / nFrameRate, 1) : sc_defaultInterval;
}

std::string CTimeLine::SpanText() const
{
    std::string text = fmt::format("{} to {} on its clock", ClockText(m_nEarliest), ClockText(m_nLatest));
    if (m_nJumps > 0)
        text += fmt::format(" ({} jump{})", m_nJumps, m_nJumps == 1 ? "" : "s");
    text += fmt::format(", 0 to {} from its start", SecondsText(m_nLongest));
    return text;
}

} // namespace Marvane::FrameSift
