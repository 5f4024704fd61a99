#include "FrameWriter/ZOAVFrameWriter.h"

#include <array>
#include <numeric>
#include <string_view>

namespace Marvane::FrameSift {

namespace {

constexpr std::array<std::string_view, 4> sc_headMagics = {"ZOAV", "MYAV", "LXAV", "WMAV"};
constexpr std::array<std::string_view, 4> sc_tailMagics = {"zoav", "myav", "lxav", "wmav"};
constexpr uint32_t sc_headSize = 24;
constexpr uint32_t sc_tailSize = 8;

void Append(Bytes& to, std::string_view text)
{
    to.insert(to.end(), text.begin(), text.end());
}

void AppendLsb(Bytes& to, uint32_t nValue, int nBytes)
{
    for (int n = 0; n < nBytes; ++n)
        to.push_back(static_cast<uint8_t>(nValue >> (8 * n)));
}

uint32_t PackDateTime(const KX_TIME& time)
{
    const auto field = [](int32_t nValue, int nShift) { return static_cast<uint32_t>(nValue) << nShift; };
    return field(time.nSecond, 0) | field(time.nMinute, 6) | field(time.nHour, 12) | field(time.nDay, 17) |
           field(time.nMonth, 22) | field(time.nYear - 2000, 26);
}

} // namespace

Bytes operator+(Bytes left, const Bytes& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

ZoavFrame& ZoavFrame::Family(ZOAV_FAMILY eFamily)
{
    m_eFamily = eFamily;
    return *this;
}

ZoavFrame& ZoavFrame::Type(ZOAV_FRAME eType, uint8_t chSubType)
{
    return RawType(static_cast<uint8_t>(eType), chSubType);
}

ZoavFrame& ZoavFrame::RawType(uint8_t chType, uint8_t chSubType)
{
    m_chType = chType;
    m_chSubType = chSubType;
    return *this;
}

ZoavFrame& ZoavFrame::Seq(uint32_t dwSeq)
{
    m_dwSeq = dwSeq;
    return *this;
}

ZoavFrame& ZoavFrame::Time(const KX_TIME& time)
{
    m_dateTime = PackDateTime(time);
    return *this;
}

ZoavFrame& ZoavFrame::TimeStamp(uint16_t nTimeStamp)
{
    m_nTimeStamp = nTimeStamp;
    return *this;
}

ZoavFrame& ZoavFrame::ExtHead(std::span<const uint8_t> head)
{
    m_extHeads.insert(m_extHeads.end(), head.begin(), head.end());
    return *this;
}

ZoavFrame& ZoavFrame::ExtHead(std::initializer_list<uint8_t> head)
{
    m_extHeads.insert(m_extHeads.end(), head);
    return *this;
}

ZoavFrame& ZoavFrame::Payload(std::span<const uint8_t> payload)
{
    m_payload.assign(payload.begin(), payload.end());
    return *this;
}

ZoavFrame& ZoavFrame::WrongSum()
{
    m_bWrongSum = true;
    return *this;
}

ZoavFrame& ZoavFrame::WrongTailMagic()
{
    m_bWrongTailMagic = true;
    return *this;
}

ZoavFrame& ZoavFrame::WrongTailLength()
{
    m_bWrongTailLength = true;
    return *this;
}

ZoavFrame& ZoavFrame::TailFamily(ZOAV_FAMILY eFamily)
{
    m_eTailFamily = eFamily;
    return *this;
}

ZoavFrame& ZoavFrame::ClaimLength(uint32_t dwFrameLen)
{
    m_claimedLength = dwFrameLen;
    return *this;
}

ZoavFrame& ZoavFrame::ClaimExtLength(uint8_t nExtFrameLen)
{
    m_claimedExtLength = nExtFrameLen;
    return *this;
}

ZoavFrame& ZoavFrame::DamagedPayload(size_t nOffset)
{
    m_damagedOffset = nOffset;
    return *this;
}

Bytes ZoavFrame::BuildHead(uint32_t dwFrameLen) const
{
    Bytes head;
    Append(head, sc_headMagics[static_cast<size_t>(m_eFamily)]);
    head.insert(head.end(), {m_chType, m_chSubType, 0, 0}); // chChannel and chSubSeq, which no reader uses
    AppendLsb(head, m_dwSeq, 4);
    AppendLsb(head, m_claimedLength.value_or(dwFrameLen), 4);
    AppendLsb(head, m_dateTime, 4);
    AppendLsb(head, m_nTimeStamp, 2);
    head.push_back(m_claimedExtLength.value_or(static_cast<uint8_t>(m_extHeads.size())));
    const auto nSum = std::accumulate(head.begin(), head.end(), 0U) + (m_bWrongSum ? 1U : 0U);
    head.push_back(static_cast<uint8_t>(nSum));
    return head;
}

Bytes ZoavFrame::BuildTail(uint32_t dwFrameLen) const
{
    Bytes tail;
    const auto nFamily = static_cast<size_t>(m_eTailFamily.value_or(m_eFamily));
    Append(tail, m_bWrongTailMagic ? "none" : sc_tailMagics[nFamily]);
    AppendLsb(tail, dwFrameLen + (m_bWrongTailLength ? 1U : 0U), 4);
    return tail;
}

Bytes ZoavFrame::Build() const
{
    const auto dwFrameLen = static_cast<uint32_t>(sc_headSize + m_extHeads.size() + m_payload.size() + sc_tailSize);
    Bytes payload = m_payload;
    if (m_damagedOffset && *m_damagedOffset < payload.size())
        payload[*m_damagedOffset] ^= 1;
    return BuildHead(dwFrameLen) + m_extHeads + payload + BuildTail(dwFrameLen);
}

} // namespace Marvane::FrameSift
