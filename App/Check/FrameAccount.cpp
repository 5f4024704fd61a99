#include "Check/FrameAccount.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_magicSize = 4;
constexpr int32_t sc_blockHeadSize = 8;

// The head has a sum of its own; the sums behind these flags are of what it carries.
bool IsHeadSound(int32_t nErrorFlags)
{
    return nErrorFlags == KX_ERROR_FLAGS_NOERROR || nErrorFlags == KX_ERROR_FLAGS_DATA_VERIFY ||
           nErrorFlags == KX_ERROR_FLAGS_WATERMARK || nErrorFlags == KX_ERROR_FLAGS_DECRYPTION_FAILURE;
}

bool IsEnciphered(const FrameInfo& frame)
{
    return frame.nEncryptType != KX_ENCRYPT_UNKOWN && frame.bHasDecrypt == 0;
}

FRAME_MARK MarkOf(const FrameInfo& frame, int64_t nOffset)
{
    return {nOffset, frame.frameType, frame.frameSubType, static_cast<uint32_t>(frame.frameSeq),
            KX_TIME(frame.frameTime)};
}

} // namespace

// A head that was not believed is stepped over with its magic alone. The parser's own record of lost frames has no bytes
// at all, and does not tell how many they are: the numbers do.
bool IsFrame(const FrameInfo& frame)
{
    return frame.errorFlags != KX_ERROR_FLAGS_LOST_HEADER && frame.frameLen > sc_magicSize;
}

bool IsBlock(const FrameInfo& frame)
{
    return frame.errorFlags == KX_ERROR_FLAGS_LOST_HEADER && frame.frameLen >= sc_blockHeadSize;
}

void CFrameAccount::Take(const FrameInfo& frame, int64_t nOffset)
{
    if (!IsFrame(frame)) {
        TakeBlock(frame, nOffset);
        return;
    }
    const FRAME_MARK mark = MarkOf(frame, nOffset);
    CloseStretch(nOffset, mark);
    if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
        TakeSound(frame, mark);
    else
        TakeDamaged(frame, mark);
    if (IsHeadSound(frame.errorFlags))
        FollowOrder(frame, mark);
    if (IsEnciphered(frame)) {
        ++m_report.nEnciphered;
        m_report.firstEnciphered = m_report.firstEnciphered.value_or(nOffset);
    }
    m_nEnd = nOffset + frame.frameLen;
    m_nBlocksEnd = m_nEnd;
    m_last = mark;
}

void CFrameAccount::TakeBlock(const FrameInfo& frame, int64_t nOffset)
{
    if (IsBlock(frame) && nOffset == m_nBlocksEnd)
        m_nBlocksEnd += frame.frameLen;
}

void CFrameAccount::TakeSound(const FrameInfo& frame, const FRAME_MARK& mark)
{
    ++m_report.soundByType[mark.nFrameType];
    m_report.nSoundBytes += static_cast<uint64_t>(frame.frameLen);
    m_report.nSummed += m_payloadSum.WasChecked(frame) ? 1 : 0;
    if (!IsCalendarTime(mark.time))
        return;
    const CLOCK_MS nClock = TimeToClock(mark.time);
    if (!m_report.earliest || nClock < TimeToClock(*m_report.earliest))
        m_report.earliest = mark.time;
    if (!m_report.latest || nClock > TimeToClock(*m_report.latest))
        m_report.latest = mark.time;
}

void CFrameAccount::TakeDamaged(const FrameInfo& frame, const FRAME_MARK& mark)
{
    FINDING finding;
    finding.eKind = FINDING_KIND::DamagedFrame;
    finding.nOffset = mark.nOffset;
    finding.nBytes = static_cast<uint64_t>(frame.frameLen);
    finding.after = mark;
    finding.nErrorFlags = frame.errorFlags;
    ++m_report.damagedByFlag[finding.nErrorFlags];
    m_report.nDamagedBytes += finding.nBytes;
    m_report.findings.Add(finding);
}

void CFrameAccount::FollowOrder(const FrameInfo& frame, const FRAME_MARK& mark)
{
    if (const auto finding = m_sequence.Follow(frame, mark)) {
        m_report.nLostFrames += finding->nLost;
        m_report.findings.Add(*finding);
    }
    if (const auto finding = m_clock.Follow(frame, mark))
        m_report.findings.Add(*finding);
}

void CFrameAccount::CloseStretch(int64_t nEnd, const std::optional<FRAME_MARK>& after)
{
    if (nEnd <= m_nEnd)
        return;
    FINDING finding;
    finding.eKind = m_nBlocksEnd == nEnd ? FINDING_KIND::Blocks : FINDING_KIND::Stretch;
    finding.nOffset = m_nEnd;
    finding.nBytes = static_cast<uint64_t>(nEnd - m_nEnd);
    finding.before = m_last;
    finding.after = after;
    m_report.nOutsideBytes += finding.nBytes;
    m_report.nBlockBytes += finding.eKind == FINDING_KIND::Blocks ? finding.nBytes : 0;
    m_report.findings.Add(finding);
}

void CFrameAccount::Finish(const std::optional<UNFINISHED_FRAME>& unfinished)
{
    const auto nSize = static_cast<int64_t>(m_report.nBytes);
    CloseStretch(unfinished ? unfinished->nOffset : nSize, std::nullopt);
    if (!unfinished)
        return;
    FINDING finding;
    finding.eKind = FINDING_KIND::Unfinished;
    finding.nOffset = unfinished->nOffset;
    finding.nBytes = static_cast<uint64_t>(nSize - unfinished->nOffset);
    finding.before = m_last;
    finding.nAnnounced = unfinished->nAnnounced;
    m_report.nUnfinishedBytes = finding.nBytes;
    m_report.findings.Add(finding);
}

} // namespace Marvane::FrameSift
