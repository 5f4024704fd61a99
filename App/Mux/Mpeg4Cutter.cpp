#include "Mux/Mpeg4Cutter.h"

namespace Marvane::FrameSift {

namespace {

// The byte behind 00 00 01, on the wire.
constexpr uint8_t sc_lastVideoObject = 0x1F;
constexpr uint8_t sc_lastVol = 0x2F;
constexpr uint8_t sc_sequence = 0xB0;
constexpr uint8_t sc_groupOfVop = 0xB3;
constexpr uint8_t sc_visualObject = 0xB5;
constexpr uint8_t sc_vop = 0xB6;

bool OpensUnit(uint8_t chCode)
{
    return chCode <= sc_lastVol || chCode == sc_sequence || chCode == sc_groupOfVop || chCode == sc_visualObject ||
           chCode == sc_vop;
}

} // namespace

void CMpeg4Cutter::OnElement(uint64_t nStart, std::span<const uint8_t> body)
{
    const uint8_t chCode = body[0];
    if (m_picture.bSeen && OpensUnit(chCode))
        CutAt(nStart);
    if (chCode == sc_vop) {
        OnVop(body.subspan(1));
    } else if (chCode > sc_lastVideoObject && chCode <= sc_lastVol) {
        if (const auto vol = ReadMpeg4Vol(body.subspan(1)))
            m_vol = *vol;
    }
}

void CMpeg4Cutter::OnVop(std::span<const uint8_t> body)
{
    constexpr UNIT_KIND sc_kinds[] = {UNIT_KIND::I, UNIT_KIND::P, UNIT_KIND::B, UNIT_KIND::P};
    m_picture.bSeen = true;
    m_picture.eKind = body.empty() ? UNIT_KIND::P : sc_kinds[body[0] >> 6]; // vop_coding_type
    m_picture.bKey = m_picture.eKind == UNIT_KIND::I;
    m_picture.nWidth = m_vol.nWidth;
    m_picture.nHeight = m_vol.nHeight;
}

} // namespace Marvane::FrameSift
