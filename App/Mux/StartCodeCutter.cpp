#include "Mux/StartCodeCutter.h"

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

constexpr uint64_t sc_prefixSize = 3;

} // namespace

void CStartCodeCutter::Feed(std::span<const uint8_t> bytes)
{
    m_window.Append(bytes);
    Scan();
    // Rubbish in front of the first start code must not pile up. A start code may have begun in the last 3 bytes.
    if (!m_bInElement && m_window.End() - m_window.Begin() > sc_prefixSize)
        CutAt(m_window.End() - sc_prefixSize);
}

void CStartCodeCutter::Finish()
{
    if (m_bInElement)
        EndElement(m_window.End());
    CutAt(m_window.End());
}

void CStartCodeCutter::Scan()
{
    m_nScan = std::max(m_nScan, m_window.Begin());
    while (m_nScan + sc_prefixSize <= m_window.End()) {
        const auto bytes = m_window.Range(m_nScan, m_window.End());
        constexpr uint8_t prefix[] = {0, 0, 1};
        const auto found = std::search(bytes.begin(), bytes.end(), std::begin(prefix), std::end(prefix));
        if (found == bytes.end()) {
            m_nScan = m_window.End() - (sc_prefixSize - 1);
            return;
        }
        const uint64_t nPrefix = m_nScan + static_cast<uint64_t>(found - bytes.begin());
        BeginElement(nPrefix);
        m_nScan = nPrefix + sc_prefixSize;
    }
}

void CStartCodeCutter::BeginElement(uint64_t nPrefix)
{
    const uint64_t nLowest = m_bInElement ? m_nBody : m_window.Begin();
    const bool bZeroBefore = nPrefix > nLowest && m_window.At(nPrefix - 1) == 0;
    const uint64_t nStart = bZeroBefore && m_eZeroByte == ZERO_BYTE::PartOfStartCode ? nPrefix - 1 : nPrefix;
    if (m_bInElement)
        EndElement(nStart);
    else
        CutAt(nStart);
    m_bInElement = true;
    m_nElement = nStart;
    m_nBody = nPrefix + sc_prefixSize;
}

void CStartCodeCutter::EndElement(uint64_t nEnd)
{
    m_bInElement = false;
    const auto body = m_window.Range(m_nBody, nEnd);
    if (!body.empty())
        OnElement(m_nElement, body);
}

void CStartCodeCutter::CutAt(uint64_t nPos)
{
    const auto bytes = m_window.Range(m_window.Begin(), nPos);
    if (m_picture.bSeen) {
        MediaUnit unit;
        unit.payload.assign(bytes.begin(), bytes.end());
        unit.nOffset = m_window.Begin();
        unit.eKind = m_picture.eKind;
        unit.bKey = m_picture.bKey;
        unit.nWidth = m_picture.nWidth;
        unit.nHeight = m_picture.nHeight;
        Deliver(std::move(unit));
    } else {
        CountSkipped(bytes.size());
    }
    m_window.Advance(nPos);
    m_picture = PICTURE_FACTS();
}

} // namespace Marvane::FrameSift
