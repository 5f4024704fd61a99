#include "Check/FrameAccount.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_magicSize = 4;
constexpr int32_t sc_blockHeadSize = 8;

// The head has a sum of its own; the sums behind these flags are of what it carries.
bool IsHeadGood(int32_t nErrorFlags)
{
    return nErrorFlags == KX_ERROR_FLAGS_NOERROR || nErrorFlags == KX_ERROR_FLAGS_DATA_VERIFY ||
           nErrorFlags == KX_ERROR_FLAGS_WATERMARK || nErrorFlags == KX_ERROR_FLAGS_DECRYPTION_FAILURE;
}

// A head that was not believed is stepped over with its magic alone. The parser's own record of lost frames has no bytes
// at all, and does not tell how many they are: the numbers do.
bool IsFrame(const FrameInfo& frame)
{
    return frame.errorFlags != KX_ERROR_FLAGS_LOST_HEADER && frame.frameLen > sc_magicSize;
}

// In the older formats the parser counts the frames itself, and there are no sums.
bool HasNumberAndSums(const FrameInfo& frame)
{
    switch (frame.streamType) {
    case KX_STREAM_TYPE_ZOPT:
    case KX_STREAM_TYPE_NEW:
    case KX_STREAM_TYPE_HB:
    case KX_STREAM_TYPE_AUDIO:
    case KX_STREAM_TYPE_RAW_MPEG4:
        return false;
    default:
        return true;
    }
}

FRAME_MARK MarkOf(const FrameInfo& frame, int64_t nOffset)
{
    return {nOffset, frame.frameType, frame.frameSubType, static_cast<uint32_t>(frame.frameSeq),
            KX_TIME(frame.frameTime)};
}

void TakeTime(const KX_TIME& time, CHECK_REPORT& report)
{
    if (!IsCalendarTime(time))
        return;
    const CLOCK_MS nClock = TimeToClock(time);
    if (!report.earliest || nClock < TimeToClock(*report.earliest))
        report.earliest = time;
    if (!report.latest || nClock > TimeToClock(*report.latest))
        report.latest = time;
}

} // namespace

bool IsBlock(const FrameInfo& frame)
{
    return frame.errorFlags == KX_ERROR_FLAGS_LOST_HEADER && frame.frameLen >= sc_blockHeadSize;
}

CFrameAccount::CFrameAccount(CHECK_REPORT& report, const CHECK_OPTIONS& options)
    : m_report(report),
      m_numbers(report),
      m_clock(options.clock),
      m_start(report.findings),
      m_sums(report),
      m_keyTrial(options.key)
{}

void CFrameAccount::Take(const FrameInfo& frame, int64_t nOffset)
{
    if (nOffset < m_nRecordsEnd || frame.frameLen < sc_magicSize)
        return;
    m_nRecordsEnd = nOffset + frame.frameLen;
    if (IsFrame(frame))
        TakeFrame(frame, MarkOf(frame, nOffset));
    else
        TakeNoFrame(frame, nOffset);
}

void CFrameAccount::TakeFrame(const FrameInfo& frame, const FRAME_MARK& mark)
{
    CloseStretch(mark.nOffset, mark);
    const int32_t nErrorFlags = JudgeCipher(frame, mark);
    if (nErrorFlags == KX_ERROR_FLAGS_NOERROR)
        TakeGood(frame, mark);
    else
        TakeDamaged(frame, mark, nErrorFlags);
    if (IsHeadGood(nErrorFlags)) {
        if (HasNumberAndSums(frame))
            m_numbers.Follow(frame, mark);
        if (const auto finding = m_clock.Follow(frame, mark))
            m_report.findings.Add(*finding);
    }
    m_nEnd = m_nRecordsEnd;
    m_nBlocksEnd = m_nEnd;
    m_last = mark;
}

void CFrameAccount::TakeNoFrame(const FrameInfo& frame, int64_t nOffset)
{
    if (IsBlock(frame)) {
        ++m_contents.nBlocks;
        m_nBlocksEnd += nOffset == m_nBlocksEnd ? int32_t{frame.frameLen} : 0;
    } else {
        ++(frame.errorFlags == KX_ERROR_FLAGS_LOST_HEADER ? m_contents.nTails : m_contents.nHeads);
    }
}

void CFrameAccount::TakeWaiting(const UNFINISHED_FRAME& waiting)
{
    if (!m_waiting) {
        m_waiting = waiting;
        m_beforeWaiting = m_contents;
    }
    ++m_contents.nHeads;
}

void CFrameAccount::TakeOldTail(int64_t nOffset, uint64_t nBytes)
{
    if (nBytes != gsk_endMarkSize)
        return TakeWaiting({.nOffset = nOffset, .bOpenEnd = true});
    ++m_contents.nBlocks;
    m_nBlocksEnd += nOffset == m_nBlocksEnd ? static_cast<int64_t>(gsk_endMarkSize) : 0;
}

// Answers the frame's error, that of deciphering it included.
int32_t CFrameAccount::JudgeCipher(const FrameInfo& frame, const FRAME_MARK& mark)
{
    if (frame.nEncryptType == KX_ENCRYPT_UNKOWN)
        return frame.errorFlags;
    const KEY_RESULT result = m_keyTrial.Try(frame);
    if (result.bDeciphered) {
        ++m_report.nDeciphered;
    } else {
        ++m_report.nEnciphered;
        m_report.firstEnciphered = m_report.firstEnciphered.value_or(mark.nOffset);
    }
    if (frame.errorFlags != KX_ERROR_FLAGS_NOERROR)
        return frame.errorFlags;
    m_report.nDecipheredKeys += result.bTellsOfKey ? 1 : 0;
    m_report.nUnlikePicture += result.bTellsOfKey && !result.bLikePicture ? 1 : 0;
    return result.nErrorFlags;
}

void CFrameAccount::TakeGood(const FrameInfo& frame, const FRAME_MARK& mark)
{
    ++m_report.goodByType[mark.nFrameType];
    m_report.nGoodBytes += static_cast<uint64_t>(frame.frameLen);
    TakeTime(mark.time, m_report);
    m_start.Follow(mark);
    if (HasNumberAndSums(frame))
        m_sums.Follow(frame, mark);
}

void CFrameAccount::TakeDamaged(const FrameInfo& frame, const FRAME_MARK& mark, int32_t nErrorFlags)
{
    const auto nBytes = static_cast<uint64_t>(frame.frameLen);
    ++m_report.damagedByFlag[nErrorFlags];
    m_report.nDamagedBytes += nBytes;
    m_report.findings.Add({.eKind = FINDING_KIND::DamagedFrame,
                           .nOffset = mark.nOffset,
                           .nBytes = nBytes,
                           .after = mark,
                           .nErrorFlags = nErrorFlags});
}

void CFrameAccount::CloseStretch(int64_t nEnd, const std::optional<FRAME_MARK>& after)
{
    if (nEnd > m_nEnd) {
        const auto eKind = m_nBlocksEnd == nEnd ? FINDING_KIND::Blocks : FINDING_KIND::Stretch;
        const auto nBytes = static_cast<uint64_t>(nEnd - m_nEnd);
        m_report.nOutsideBytes += nBytes;
        m_report.nBlockBytes += eKind == FINDING_KIND::Blocks ? nBytes : 0;
        m_report.findings.Add({.eKind = eKind,
                               .nOffset = m_nEnd,
                               .nBytes = nBytes,
                               .before = m_last,
                               .after = after,
                               .contents = m_contents});
    }
    m_contents = {};
    m_waiting.reset();
}

void CFrameAccount::Finish()
{
    const auto nSize = static_cast<int64_t>(m_report.nBytes);
    if (const auto unfinished = m_waiting) {
        m_contents = m_beforeWaiting; // what is behind it belongs to it
        CloseStretch(unfinished->nOffset, std::nullopt);
        TellUnfinished(*unfinished);
    } else {
        CloseStretch(nSize, std::nullopt);
    }
    m_numbers.Finish();
    m_start.Finish();
    m_sums.Finish();
    m_report.findings.Sort();
}

void CFrameAccount::TellUnfinished(const UNFINISHED_FRAME& unfinished)
{
    m_report.nUnfinishedBytes = m_report.nBytes - static_cast<uint64_t>(unfinished.nOffset);
    m_report.findings.Add({.eKind = FINDING_KIND::Unfinished,
                           .nOffset = unfinished.nOffset,
                           .nBytes = m_report.nUnfinishedBytes,
                           .before = m_last,
                           .nAnnounced = unfinished.nAnnounced,
                           .bOpenEnd = unfinished.bOpenEnd});
}

} // namespace Marvane::FrameSift
