#include "Mux/Mpeg2Cutter.h"

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

// The byte behind 00 00 01, on the wire.
constexpr uint8_t sc_pictureCode = 0x00;
constexpr uint8_t sc_sequenceCode = 0xB3;
constexpr uint8_t sc_extensionCode = 0xB5;
constexpr uint8_t sc_groupCode = 0xB8;

constexpr uint32_t sc_sequenceExtension = 1;
constexpr uint32_t sc_typeI = 1;
constexpr uint32_t sc_typeB = 3;

} // namespace

void CMpeg2Cutter::OnElement(uint64_t nStart, std::span<const uint8_t> body)
{
    const uint8_t chCode = body[0];
    if (m_picture.bSeen && (chCode == sc_pictureCode || chCode == sc_sequenceCode || chCode == sc_groupCode))
        CutAt(nStart);
    if (chCode == sc_sequenceCode)
        OnSequence(body.subspan(1));
    else if (chCode == sc_extensionCode)
        OnExtension(body.subspan(1));
    else if (chCode == sc_pictureCode)
        OnPicture(body.subspan(1));
}

void CMpeg2Cutter::OnSequence(std::span<const uint8_t> body)
{
    CBitReader bits(body);
    m_nWidth = bits.Bits(12);
    m_nHeight = bits.Bits(12);
}

// Sizes above 4095 have their upper two bits here.
void CMpeg2Cutter::OnExtension(std::span<const uint8_t> body)
{
    CBitReader bits(body);
    if (bits.Bits(4) != sc_sequenceExtension)
        return;
    bits.Skip(8 + 1 + 2); // profile_and_level_indication, progressive_sequence, chroma_format
    m_nWidth = (m_nWidth & 0xFFF) | bits.Bits(2) << 12;
    m_nHeight = (m_nHeight & 0xFFF) | bits.Bits(2) << 12;
}

void CMpeg2Cutter::OnPicture(std::span<const uint8_t> body)
{
    CBitReader bits(body);
    bits.Skip(10); // temporal_reference
    const uint32_t picture_coding_type = bits.Bits(3);
    m_picture.bSeen = true;
    m_picture.bKey = picture_coding_type == sc_typeI;
    m_picture.eKind = m_picture.bKey ? UNIT_KIND::I : picture_coding_type == sc_typeB ? UNIT_KIND::B : UNIT_KIND::P;
    m_picture.nWidth = m_nWidth;
    m_picture.nHeight = m_nHeight;
}

} // namespace Marvane::FrameSift
