#include "Recordings/TimeSearch.h"

#include <fmt/format.h>

#include "Frames/FrameState.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

void CODEC_RUN::Follow(int32_t nNext, int64_t nOffset)
{
    if (nNext == 0) // not told, as in front of the first key frame
        return;
    if (!nCodec)
        nCodec = nNext;
    else if (!change && nNext != *nCodec)
        change = CODEC_CHANGE{nOffset, *nCodec, nNext};
}

void START_PLACE::Follow(const FrameInfo& frame, int64_t nFrameOffset)
{
    if (frame.frameType == KX_FRAME_TYPE_VIDEO)
        video.Follow(frame.frameEncodeType, nFrameOffset);
    else if (frame.frameType == KX_FRAME_TYPE_AUDIO)
        audio.Follow(frame.frameEncodeType, nFrameOffset);
}

void CLineSearch::Take(const FrameInfo& frame, int64_t nOffset, bool bOfLine, bool bEntry)
{
    if (bOfLine && (bEntry || !m_entry))
        m_entry = START_PLACE{nOffset, {}, {}};
    const KX_TIME time = frame.frameTime;
    const CLOCK_MS nShared = m_sharedTime.Follow(frame); // of all frames: video counts for audio too
    if (bOfLine && IsCalendarTime(time))
        TakeMoment(m_line.Follow(TimeToClock(time), frame.frameRate, nShared), nOffset);
    m_begin.Follow(frame, nOffset);
    if (m_entry)
        m_entry->Follow(frame, nOffset);
    for (auto* pPlace : {&m_first, &m_run, &m_from}) {
        if (*pPlace)
            (*pPlace)->start.Follow(frame, nOffset);
    }
}

void CLineSearch::TakeMoment(const MOMENT& now, int64_t nOffset)
{
    if (m_run && m_run->moment.nClock == now.nClock)
        return;
    if (m_run && m_range.from && !m_from && IsPassed(*m_range.from, now))
        m_from = m_run;
    if (m_run && m_range.to && IsPassed(*m_range.to, now)) {
        if (!m_firstEnd)
            m_firstEnd = nOffset;
        if (m_from && !m_end)
            m_end = nOffset;
    }
    m_run = PLACE{*m_entry, nOffset, now};
    if (!m_first)
        m_first = PLACE{m_begin, nOffset, now};
}

// Or shown: from its own time on a frame is there, even if the clock then jumps back.
bool CLineSearch::IsPassed(const WANTED_TIME& wanted, const MOMENT& now) const
{
    const int64_t nRun = m_run->moment.In(wanted);
    return nRun == wanted.nMs || (nRun < wanted.nMs && wanted.nMs < now.In(wanted));
}

const CLineSearch::PLACE* CLineSearch::FindStart() const
{
    if (!m_range.from)
        return &*m_first;
    if (m_from)
        return &*m_from;
    // No other moment follows the last one, which would pass it.
    if (m_run->moment.In(*m_range.from) == m_range.from->nMs)
        return &*m_run;
    const bool bInFront = m_range.from->bOfClock && m_range.from->nMs < m_line.Earliest();
    return bInFront && m_range.bMayReachOut ? &*m_first : nullptr;
}

// Nothing: it lies in front of the start.
std::optional<int64_t> CLineSearch::FindEnd(const PLACE& start) const
{
    if (!m_range.to)
        return INT64_MAX;
    const auto& passed = &start == &*m_first ? m_firstEnd : m_end;
    if (passed)
        return *passed;
    return start.moment.In(*m_range.to) <= m_range.to->nMs ? std::optional(INT64_MAX) : std::nullopt;
}

FOUND_RANGE CLineSearch::Result(const std::string& name) const
{
    const PLACE* pStart = FindStart();
    const auto end = pStart == nullptr ? std::nullopt : FindEnd(*pStart);
    if (!end)
        ThrowOutside(name);
    FOUND_RANGE found{pStart->start, pStart->nFrame, *end, {}};
    if (m_range.from && pStart == &*m_first && pStart->moment.In(*m_range.from) > m_range.from->nMs)
        found.note = fmt::format("{} begins behind --from: it covers {}", name, m_line.SpanText());
    else if (m_range.to && *end == INT64_MAX && m_line.Last().In(*m_range.to) < m_range.to->nMs)
        found.note = fmt::format("{} ends in front of --to: it covers {}", name, m_line.SpanText());
    return found;
}

void CLineSearch::ThrowOutside(const std::string& name) const
{
    std::string wanted = m_range.from ? "part from " + WantedTimeText(*m_range.from) : std::string("part up");
    if (m_range.to)
        wanted += " to " + WantedTimeText(*m_range.to);
    if (!m_range.bMayReachOut)
        wanted = "frame at " + WantedTimeText(*m_range.from);
    throw CAppError(EXIT_CODE::Usage, fmt::format("{} has no {}: it covers {}", name, wanted, m_line.SpanText()));
}

void CTimeSearch::Take(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.frame;
    const bool bVideo = frame.frameType == KX_FRAME_TYPE_VIDEO;
    const bool bAudio = frame.frameType == KX_FRAME_TYPE_AUDIO;
    if (frame.errorFlags != KX_ERROR_FLAGS_NOERROR || (!bVideo && !bAudio))
        return;
    m_begin.Follow(frame, listed.nFrameOffset);
    m_video.Take(frame, listed.nFrameOffset, bVideo, IsIFrameSubType(frame.frameSubType));
    m_audio.Take(frame, listed.nFrameOffset, bAudio, true); // any audio frame can be started from
}

FOUND_RANGE CTimeSearch::Result(const std::string& name) const
{
    if (!m_bWanted)
        return {m_begin, 0, INT64_MAX, {}};
    const CLineSearch& line = m_video.IsEmpty() ? m_audio : m_video;
    if (line.IsEmpty())
        throw CAppError(EXIT_CODE::Format, name + " has no video or audio frame that tells a time");
    return line.Result(name);
}

} // namespace Marvane::FrameSift
