#include "Frames/FrameSummary.h"

#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

// A damaged head or a lost tail is delivered with its magic alone; those four bytes belong to no frame.
constexpr int32_t sc_magicSize = 4;

template <class NAME>
std::string CountsText(const std::map<int32_t, uint64_t>& counts, NAME name)
{
    std::string text;
    for (const auto& [nCode, nCount] : counts)
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", nCount, name(nCode));
    return text;
}

} // namespace

void CFrameSummary::Count(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.frame;
    const int32_t nErrorFlags = frame.errorFlags;
    // A block that is stepped over whole comes with its length and a lost head: no frame either.
    if (frame.frameLen > sc_magicSize && nErrorFlags != KX_ERROR_FLAGS_LOST_HEADER)
        m_nFrameBytes += static_cast<uint64_t>(frame.frameLen);
    if (nErrorFlags != KX_ERROR_FLAGS_NOERROR) {
        ++m_nDamaged;
        ++m_damageByFlag[nErrorFlags];
        return;
    }
    ++m_nFrames;
    ++m_framesByType[int32_t{frame.frameType}];
    if (frame.frameType == KX_FRAME_TYPE_VIDEO)
        ++m_videoBySubType[int32_t{frame.frameSubType}];
    CountTime(KX_TIME(frame.frameTime));
}

void CFrameSummary::CountTime(const KX_TIME& time)
{
    if (!IsCalendarTime(time))
        return;
    if (!m_earliest || TimeToClock(time) < TimeToClock(*m_earliest))
        m_earliest = time;
    if (!m_latest || TimeToClock(time) > TimeToClock(*m_latest))
        m_latest = time;
}

std::string CFrameSummary::FramesText() const
{
    std::string text = fmt::format("{} sound", m_nFrames);
    if (m_nFrames > 0)
        text += ": " + CountsText(m_framesByType, &FrameTypeName);
    if (!m_videoBySubType.empty())
        text += " (video: " +
                CountsText(m_videoBySubType, [](int32_t nCode) { return SubTypeName(KX_FRAME_TYPE_VIDEO, nCode); }) +
                ")";
    return text;
}

// Bytes outside all frames are damage too, though no record tells of them.
std::string CFrameSummary::DamageText(uint64_t nOutside) const
{
    std::string text =
        m_nDamaged == 0 ? std::string() : fmt::format("{}: {}", m_nDamaged, CountsText(m_damageByFlag, &ErrorName));
    if (nOutside > 0)
        text += fmt::format("{}{} bytes in no frame", text.empty() ? "" : "; ", nOutside);
    return text.empty() ? "none" : text;
}

std::string CFrameSummary::TimeSpanText() const
{
    if (!m_earliest)
        return "no frame has one";
    const CLOCK_MS nSpan = TimeToClock(*m_latest) - TimeToClock(*m_earliest);
    return fmt::format("{} to {} ({}.{:03} s) by the recording's own clock, which names no zone", TimeText(*m_earliest),
                       TimeText(*m_latest), nSpan / 1000, nSpan % 1000);
}

std::string CFrameSummary::Text(int32_t nStreamType, uint64_t nBytes, uint64_t nUnfinished) const
{
    // Lost frames can be announced with a length that the stream never had.
    const uint64_t nOutside = nBytes > m_nFrameBytes + nUnfinished ? nBytes - m_nFrameBytes - nUnfinished : 0;
    const std::string end = nUnfinished == 0
                                ? std::string()
                                : fmt::format("end     {} bytes from offset {} on wait for the rest of a frame\n",
                                              nUnfinished, nBytes - nUnfinished);
    return fmt::format("stream  {} ({})\n"
                       "frames  {}\n"
                       "damage  {}\n"
                       "bytes   {} read, {} in frames, {} in no frame\n"
                       "{}"
                       "time    {}\n",
                       StreamTypeName(nStreamType), nStreamType, FramesText(), DamageText(nOutside), nBytes,
                       m_nFrameBytes, nOutside, end, TimeSpanText());
}

} // namespace Marvane::FrameSift
