#include "Mux/FixedSizeCutter.h"

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_framesPerSec = 50;

uint32_t BytesPerSample(const RAW_AUDIO& format)
{
    return format.nChannels * format.nBitsPerSample / 8;
}

} // namespace

CFixedSizeCutter::CFixedSizeCutter(const RAW_AUDIO& format) : m_format(format)
{
    if (m_format.nFrameSize == 0)
        m_format.nFrameSize = m_format.nSamplesPerSec / sc_framesPerSec * BytesPerSample(m_format);
}

void CFixedSizeCutter::Feed(std::span<const uint8_t> bytes)
{
    m_window.Append(bytes);
    while (m_window.End() - m_window.Begin() >= m_format.nFrameSize)
        DeliverUpTo(m_window.Begin() + m_format.nFrameSize);
}

void CFixedSizeCutter::Finish()
{
    if (m_window.End() > m_window.Begin())
        DeliverUpTo(m_window.End());
}

void CFixedSizeCutter::DeliverUpTo(uint64_t nEnd)
{
    const auto bytes = m_window.Range(m_window.Begin(), nEnd);
    MediaUnit unit;
    unit.payload.assign(bytes.begin(), bytes.end());
    unit.nOffset = m_window.Begin();
    unit.bKey = true;
    unit.nSamplesPerSec = m_format.nSamplesPerSec;
    unit.nChannels = m_format.nChannels;
    unit.nBitsPerSec = BytesPerSample(m_format) * 8 * m_format.nSamplesPerSec;
    unit.nSamples = static_cast<uint32_t>(bytes.size()) / std::max(BytesPerSample(m_format), 1U);
    Deliver(std::move(unit));
    m_window.Advance(nEnd);
}

} // namespace Marvane::FrameSift
