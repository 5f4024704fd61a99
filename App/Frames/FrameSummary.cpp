#include "Frames/FrameSummary.h"

#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FrameState.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

// A damaged head or a lost tail is delivered with its magic alone; those four bytes belong to no frame.
constexpr int32_t sc_magicSize = 4;

} // namespace

void CFrameSummary::Count(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.frame;
    const int32_t nErrorFlags = frame.errorFlags;
    m_nInnerType = listed.nInnerType;
    m_bHasPlaces = m_bHasPlaces && m_nInnerType != KX_STREAM_TYPE_HB;
    // A block that is stepped over whole comes with its length and a lost head: no frame either.
    if (frame.frameLen > sc_magicSize && nErrorFlags != KX_ERROR_FLAGS_LOST_HEADER)
        m_nFrameBytes += static_cast<uint64_t>(frame.frameLen);
    CountLoss(frame);
    CountCipher(listed.parsed);
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

void CFrameSummary::CountLoss(const FrameInfo& frame)
{
    const auto nSeq = static_cast<uint32_t>(frame.frameSeq);
    if (IsLostFrame(frame)) {
        // Numbers wrap, so only the way of the difference tells ahead from back.
        const auto nAhead = static_cast<int32_t>(nSeq - m_lastVideoSeq.value_or(nSeq));
        m_nLostVideo += nAhead > 0 ? static_cast<uint64_t>(nAhead) : 0;
        (nAhead > 0 ? m_nGaps : m_nBackwards) += 1;
    } else if (frame.frameType == KX_FRAME_TYPE_VIDEO && frame.frameLen > sc_magicSize) {
        m_lastVideoSeq = nSeq;
    }
}

void CFrameSummary::CountCipher(const FrameInfo& parsed)
{
    const CIPHER_STATE eState = CipherStateOf(parsed);
    if (eState == CIPHER_STATE::Enciphered)
        ++m_encipheredByType[int32_t{parsed.nEncryptType}];
    m_nDeciphered += eState == CIPHER_STATE::Deciphered ? 1 : 0;
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
    std::string text = fmt::format("{} good", m_nFrames);
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
    if (!m_bHasPlaces)
        text += fmt::format("{}not looked at: pictures are put together from blocks", text.empty() ? "" : "; else ");
    return text.empty() ? "none" : text;
}

std::string CFrameSummary::LossText() const
{
    if (m_nGaps + m_nBackwards == 0)
        return {};
    const std::string back = m_nBackwards == 0 ? std::string() : fmt::format(", steps back: {}", m_nBackwards);
    return fmt::format("lost    {} video frames by their numbers (gaps: {}{})\n", m_nLostVideo, m_nGaps, back);
}

std::string CFrameSummary::CipherText() const
{
    if (m_nDeciphered == 0 && m_encipheredByType.empty())
        return {};
    std::string text = "cipher  ";
    if (m_nDeciphered > 0)
        text += fmt::format("{} deciphered{}", m_nDeciphered, m_encipheredByType.empty() ? "" : "; ");
    if (!m_encipheredByType.empty())
        text += "still enciphered: " + CountsText(m_encipheredByType, &CipherName);
    const bool bKeyWouldDo = m_nDeciphered == 0 && m_encipheredByType.count(KX_ENCRYPT_AES) > 0;
    return text + (bKeyWouldDo ? " (--key deciphers aes)\n" : "\n");
}

std::string CFrameSummary::TimeSpanText() const
{
    if (!m_earliest)
        return "no frame has one";
    const CLOCK_MS nSpan = TimeToClock(*m_latest) - TimeToClock(*m_earliest);
    return fmt::format("{} to {} ({}.{:03} s) by the recording's own clock, which names no zone", TimeText(*m_earliest),
                       TimeText(*m_latest), nSpan / 1000, nSpan % 1000);
}

uint64_t CFrameSummary::DamagedFrames() const
{
    const auto lost = m_damageByFlag.find(KX_ERROR_FLAGS_LOSTFRAME);
    return m_nDamaged - (lost == m_damageByFlag.end() ? 0 : lost->second);
}

uint64_t CFrameSummary::OutsideBytes(uint64_t nBytes, uint64_t nUnfinished) const
{
    if (!m_bHasPlaces)
        return 0;
    // Lost frames can be announced with a length that the stream never had.
    return nBytes > m_nFrameBytes + nUnfinished ? nBytes - m_nFrameBytes - nUnfinished : 0;
}

std::string CFrameSummary::BytesText(uint64_t nBytes, uint64_t nOutside, bool bWhole) const
{
    if (!m_bHasPlaces)
        return fmt::format("{} read; pictures are put together from blocks, so that no byte is counted as theirs",
                           nBytes);
    return fmt::format("{} read, {} in frames, {} {}", nBytes, m_nFrameBytes, nOutside,
                       bWhole ? "in no frame" : "not looked at");
}

std::string CFrameSummary::Text(int32_t nStreamType, uint64_t nBytes, std::optional<uint64_t> unfinished) const
{
    const uint64_t nUnfinished = unfinished.value_or(0);
    const uint64_t nOutside = OutsideBytes(nBytes, nUnfinished);
    std::string end;
    if (!unfinished)
        end = "end     stopped at the limit of lines: the totals are of what was read so far\n";
    else if (nUnfinished == sc_magicSize)
        end = fmt::format("end     4 bytes from offset {} on only end the last frame\n", nBytes - nUnfinished);
    else if (nUnfinished > 0)
        end = fmt::format("end     {} bytes from offset {} on wait for the rest of a frame\n", nUnfinished,
                          nBytes - nUnfinished);
    return fmt::format("stream  {}\n"
                       "frames  {}\n"
                       "damage  {}\n"
                       "{}{}"
                       "bytes   {}\n"
                       "{}"
                       "time    {}\n",
                       StreamFormatText(nStreamType, m_nInnerType), FramesText(), DamageText(unfinished ? nOutside : 0),
                       LossText(), CipherText(), BytesText(nBytes, nOutside, unfinished.has_value()), end,
                       TimeSpanText());
}

} // namespace Marvane::FrameSift
