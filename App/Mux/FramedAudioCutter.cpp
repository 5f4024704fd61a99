#include "Mux/FramedAudioCutter.h"

namespace Marvane::FrameSift {

void CFramedAudioCutter::Feed(std::span<const uint8_t> bytes)
{
    m_window.Append(bytes);
    while (Step(false)) {
    }
}

void CFramedAudioCutter::Finish()
{
    while (Step(true)) {
    }
    CountSkipped(m_window.End() - m_window.Begin());
    m_window.Advance(m_window.End());
}

bool CFramedAudioCutter::Step(bool bAtEnd)
{
    const uint64_t nBegin = m_window.Begin();
    if (!HasRoomForHead(nBegin))
        return false;
    const auto head = HeadAt(nBegin);
    const uint64_t nEnd = nBegin + (head ? head->nFrameSize : 0);
    if (head && nEnd > m_window.End() && !bAtEnd)
        return false;
    if (head && !m_bLocked && !HasRoomForHead(nEnd) && !bAtEnd)
        return false;
    const bool bFits = head && nEnd <= m_window.End();
    const bool bSure = bFits && (m_bLocked || nEnd == m_window.End() || (HasRoomForHead(nEnd) && HeadAt(nEnd)));
    if (bSure) {
        DeliverFrame(*head);
    } else {
        CountSkipped(1);
        m_window.Advance(nBegin + 1);
    }
    m_bLocked = bSure;
    return true;
}

std::optional<AUDIO_HEAD> CFramedAudioCutter::HeadAt(uint64_t nPos) const
{
    return m_pfnReadHead(m_window.Range(nPos, nPos + gsk_audioHeadSize));
}

void CFramedAudioCutter::DeliverFrame(const AUDIO_HEAD& head)
{
    const uint64_t nBegin = m_window.Begin();
    const auto bytes = m_window.Range(nBegin, nBegin + head.nFrameSize);
    MediaUnit unit;
    unit.payload.assign(bytes.begin(), bytes.end());
    unit.nOffset = nBegin;
    unit.bKey = true;
    unit.nSamplesPerSec = head.nSamplesPerSec;
    unit.nChannels = head.nChannels;
    unit.nBitsPerSec = head.nBitsPerSec;
    unit.nSamples = head.nSamples;
    Deliver(std::move(unit));
    m_window.Advance(nBegin + head.nFrameSize);
}

} // namespace Marvane::FrameSift
