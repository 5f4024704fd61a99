#include "Mux/JpegCutter.h"

namespace Marvane::FrameSift {

namespace {

// The byte behind FF, on the wire.
constexpr uint8_t sc_tem = 0x01;
constexpr uint8_t sc_sof0 = 0xC0;
constexpr uint8_t sc_dht = 0xC4;
constexpr uint8_t sc_jpg = 0xC8;
constexpr uint8_t sc_dac = 0xCC;
constexpr uint8_t sc_sof15 = 0xCF;
constexpr uint8_t sc_rst0 = 0xD0;
constexpr uint8_t sc_rst7 = 0xD7;
constexpr uint8_t sc_soi = 0xD8;
constexpr uint8_t sc_eoi = 0xD9;
constexpr uint8_t sc_sos = 0xDA;

bool IsFrameHead(uint8_t chMarker)
{
    return chMarker >= sc_sof0 && chMarker <= sc_sof15 && chMarker != sc_dht && chMarker != sc_jpg &&
           chMarker != sc_dac;
}

bool IsRestart(uint8_t chMarker)
{
    return chMarker >= sc_rst0 && chMarker <= sc_rst7;
}

} // namespace

void CJpegCutter::Feed(std::span<const uint8_t> bytes)
{
    m_window.Append(bytes);
    while (Step()) {
    }
}

void CJpegCutter::Finish()
{
    if (m_eState == STATE::Outside)
        CountSkipped(m_window.End() - m_window.Begin());
    else
        EndPicture(m_window.End());
    m_window.Advance(m_window.End());
}

bool CJpegCutter::Step()
{
    if (m_nPos + 2 > m_window.End())
        return false;
    switch (m_eState) {
    case STATE::Outside:
        return FindPicture();
    case STATE::Marker:
        return TakeMarker();
    case STATE::Scan:
        break;
    }
    return SkipScan();
}

bool CJpegCutter::FindPicture()
{
    while (m_nPos + 2 <= m_window.End() && (m_window.At(m_nPos) != 0xFF || m_window.At(m_nPos + 1) != sc_soi))
        ++m_nPos;
    CountSkipped(m_nPos - m_window.Begin());
    m_window.Advance(m_nPos);
    if (m_nPos + 2 > m_window.End())
        return false;
    m_nPos += 2;
    m_nWidth = 0;
    m_nHeight = 0;
    m_eState = STATE::Marker;
    return true;
}

bool CJpegCutter::TakeMarker()
{
    const uint8_t chMarker = m_window.At(m_nPos + 1);
    if (m_window.At(m_nPos) != 0xFF || chMarker == 0) {
        m_eState = STATE::Scan; // damaged: look for the next marker
    } else if (chMarker == 0xFF) {
        ++m_nPos; // fill byte
    } else if (chMarker == sc_eoi) {
        EndPicture(m_nPos + 2);
    } else if (chMarker == sc_soi) {
        EndPicture(m_nPos); // the picture before it was cut off
    } else if (chMarker == sc_tem || IsRestart(chMarker)) {
        m_nPos += 2;
    } else {
        return TakeSegment(chMarker);
    }
    return true;
}

bool CJpegCutter::TakeSegment(uint8_t chMarker)
{
    constexpr uint64_t sc_sizeFields = 9; // marker, length, precision, height, width
    if (m_nPos + 4 > m_window.End())
        return false;
    const auto word = [this](uint64_t nPos) {
        return static_cast<uint32_t>(m_window.At(nPos) << 8 | m_window.At(nPos + 1));
    };
    const uint64_t nEnd = m_nPos + 2 + word(m_nPos + 2);
    if (nEnd > m_window.End())
        return false;
    if (IsFrameHead(chMarker) && m_nPos + sc_sizeFields <= nEnd) {
        m_nHeight = word(m_nPos + 5);
        m_nWidth = word(m_nPos + 7);
    }
    m_nPos = nEnd;
    m_eState = chMarker == sc_sos ? STATE::Scan : STATE::Marker;
    return true;
}

bool CJpegCutter::SkipScan()
{
    for (; m_nPos + 2 <= m_window.End(); ++m_nPos) {
        const uint8_t chNext = m_window.At(m_nPos + 1);
        if (m_window.At(m_nPos) == 0xFF && chNext != 0 && chNext != 0xFF && !IsRestart(chNext)) {
            m_eState = STATE::Marker;
            return true;
        }
    }
    return false;
}

void CJpegCutter::EndPicture(uint64_t nEnd)
{
    const auto bytes = m_window.Range(m_window.Begin(), nEnd);
    MediaUnit unit;
    unit.payload.assign(bytes.begin(), bytes.end());
    unit.nOffset = m_window.Begin();
    unit.eKind = UNIT_KIND::I;
    unit.bKey = true;
    unit.nWidth = m_nWidth;
    unit.nHeight = m_nHeight;
    Deliver(std::move(unit));
    m_window.Advance(nEnd);
    m_nPos = nEnd;
    m_eState = STATE::Outside;
}

} // namespace Marvane::FrameSift
