#include "Mux/H264Cutter.h"

#include <algorithm>

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

// nal_unit_type, on the wire.
enum H264_NAL : uint8_t
{
    Slice = 1,
    PartitionA = 2,
    IdrSlice = 5,
    Sei = 6,
    Sps = 7,
    Pps = 8,
    Delimiter = 9,
    Prefix = 14,
    LastReserved = 18
};

constexpr size_t sc_recoveryPoint = 6;

// A number of an SEI head: 255 for each byte FF, and the byte behind them.
size_t ReadSeiNumber(std::span<const uint8_t> sei, size_t& nPos)
{
    size_t nValue = 0;
    for (; nPos < sei.size(); ++nPos) {
        nValue += sei[nPos];
        if (sei[nPos] != 0xFF)
            break;
    }
    ++nPos;
    return nValue;
}

bool HasRecoveryPoint(std::span<const uint8_t> nal)
{
    const auto sei = UnescapeNal(nal, nal.size());
    size_t nPos = 1;
    while (nPos + 2 < sei.size()) { // the trailing bits take one byte
        const size_t nType = ReadSeiNumber(sei, nPos);
        const size_t nSize = ReadSeiNumber(sei, nPos);
        if (nType == sc_recoveryPoint)
            return true;
        if (nPos >= sei.size() || nSize >= sei.size() - nPos)
            break;
        nPos += nSize;
    }
    return false;
}

} // namespace

void CH264Cutter::OnElement(uint64_t nStart, std::span<const uint8_t> body)
{
    const uint8_t nType = body[0] & 0x1F;
    if (nType == Slice || nType == PartitionA || nType == IdrSlice) {
        OnSlice(nStart, body);
    } else if (nType >= Sei && nType <= Delimiter) {
        OnLeader(nStart, true);
        if (nType == Sei)
            m_bRecoveryPoint = m_bRecoveryPoint || HasRecoveryPoint(body);
        else
            TakeParameterSet(body);
    } else if (nType >= Prefix && nType <= LastReserved) {
        // A prefix stands in front of every slice of a scalable stream: only the slice tells whether a picture begins.
        OnLeader(nStart, false);
    }
}

void CH264Cutter::OnLeader(uint64_t nStart, bool bCertain)
{
    if (!m_picture.bSeen)
        return;
    m_nLeader = m_nLeader.value_or(nStart);
    if (bCertain) {
        CutAt(*m_nLeader);
        m_nLeader.reset();
        m_bRecoveryPoint = false;
    }
}

void CH264Cutter::TakeParameterSet(std::span<const uint8_t> body)
{
    const uint8_t nType = body[0] & 0x1F;
    if (nType == Sps) {
        if (const auto sps = ReadH264Sps(body))
            m_sets.spsById[sps->seq_parameter_set_id] = *sps;
    } else if (nType == Pps) {
        if (const auto pps = ReadH264Pps(body))
            m_sets.ppsById[pps->pic_parameter_set_id] = *pps;
    }
}

void CH264Cutter::OnSlice(uint64_t nStart, std::span<const uint8_t> body)
{
    const H264_SLICE_HEAD slice = ReadH264SliceHead(body, m_sets);
    if (m_picture.bSeen && IsNewH264Picture(m_lastSlice, slice)) {
        CutAt(m_nLeader.value_or(nStart));
        m_bRecoveryPoint = false;
    }
    m_nLeader.reset();
    m_lastSlice = slice;
    if (!m_picture.bSeen) {
        m_picture.nWidth = slice.nWidth;
        m_picture.nHeight = slice.nHeight;
    }
    m_picture.bSeen = true;
    m_picture.eKind = std::max(m_picture.eKind, KindOfH264Slice(slice.slice_type));
    m_picture.bKey = m_picture.eKind == UNIT_KIND::I || slice.idr || m_bRecoveryPoint;
}

} // namespace Marvane::FrameSift
