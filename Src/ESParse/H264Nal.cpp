#include "ESParse/H264Nal.h"

#include <algorithm>

#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

// What the standard asks of nal_ref_idc (ITU-T H.264, 7.4.1).
enum REF_RULE : int8_t
{
    REF_NOT_ZERO = -1,
    REF_ANY = 0,
    REF_ZERO = 1,
    REF_UNCHECKED = 2 // types of no rule; as legal as REF_ANY
};

// By type.
constexpr std::array<REF_RULE, 32> ref_zero = [] {
    std::array<REF_RULE, 32> rules{};
    rules.fill(REF_UNCHECKED);
    for (const uint32_t nType : {1U, 2U, 3U, 4U, 19U})
        rules[nType] = REF_ANY;
    for (const uint32_t nType : {5U, 7U, 8U, 13U})
        rules[nType] = REF_NOT_ZERO;
    for (const uint32_t nType : {6U, 9U, 10U, 11U, 12U})
        rules[nType] = REF_ZERO;
    return rules;
}();

} // namespace

bool IsLegalH264Nal(uint8_t nHeader)
{
    constexpr uint8_t nForbiddenBit = 0x80;
    constexpr uint8_t nRefIdcMask = 0x60;
    const REF_RULE eRule = ref_zero[H264NalType(nHeader)];
    const bool bLegalRef = (nHeader & nRefIdcMask) != 0 ? eRule != REF_ZERO : eRule != REF_NOT_ZERO;
    return bLegalRef && (nHeader & nForbiddenBit) == 0;
}

CH264NalHead::CH264NalHead(const uint8_t* pNal, uint32_t nalSize)
    : m_nSize(std::min(nalSize, static_cast<uint32_t>(m_bytes.size())))
{
    if (pNal == nullptr)
        m_nSize = 0;
    std::copy_n(pNal, m_nSize, m_bytes.begin());
    Unescape();
}

// Not the standard's way, and kept: the last bytes are not looked at; the walk does not go back to the front once the
// start code is gone; and what a removal joins is looked at again, so that 00 00 03 00 03 loses both threes.
void CH264NalHead::Unescape()
{
    constexpr uint32_t nHeadLen = gsk_startCodeLen + 1;
    bool bStartCodeFound = false;
    for (uint32_t nPos = 0; nPos + nHeadLen < m_nSize; ++nPos) {
        if (!bStartCodeFound && IsStartCodeAt(m_bytes, nPos)) {
            bStartCodeFound = true;
            Erase(0, nPos + nHeadLen);
        }
        // Inside the copy even if the unit has just got shorter; then it is the start code's end that stands there still.
        if (m_bytes[nPos] == 0 && m_bytes[nPos + 1] == 0 && m_bytes[nPos + 2] == 3)
            Erase(nPos + 2, nPos + 3);
    }
}

// The places that get free at the end keep what they held; see Bits.
void CH264NalHead::Erase(uint32_t nFirst, uint32_t nEnd)
{
    std::copy(m_bytes.begin() + nEnd, m_bytes.begin() + m_nSize, m_bytes.begin() + nFirst);
    m_nSize -= nEnd - nFirst;
}

// The two words that the reader starts with are taken whole from the copy, though the unit may end in them. It matters
// for a short parameter set at the end of a buffer, whose last byte is cut off: left-over bytes follow it, not ones.
CBitsStream CH264NalHead::Bits() const
{
    CBitsStream bits;
    bits.Init(m_bytes.data(), m_nSize, gsk_h264NalHeadLen);
    return bits;
}

} // namespace Marvane::FrameSift
