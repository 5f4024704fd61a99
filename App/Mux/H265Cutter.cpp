#include "Mux/H265Cutter.h"

#include <algorithm>

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

// nal_unit_type, on the wire.
enum H265_NAL : uint8_t
{
    FirstRandomAccess = 16, // BLA_W_LP
    LastRandomAccess = 23,
    LastSlice = 31,
    Vps = 32,
    Sps = 33,
    Pps = 34,
    Delimiter = 35,
    PrefixSei = 39
};

constexpr size_t sc_nalHeadSize = 2;
constexpr size_t sc_sliceHeadBytes = 64; // far above the fields that are read here
constexpr uint32_t sc_typeB = 0;
constexpr uint32_t sc_typeP = 1;

// The NAL units that open an access unit if they follow the slices of another.
bool IsLeader(uint8_t nType)
{
    return (nType >= Vps && nType <= Delimiter) || nType == PrefixSei || (nType >= 41 && nType <= 44) ||
           (nType >= 48 && nType <= 55);
}

bool IsRandomAccess(uint8_t nType)
{
    return nType >= FirstRandomAccess && nType <= LastRandomAccess;
}

UNIT_KIND KindOfSlice(uint32_t slice_type)
{
    return slice_type == sc_typeB ? UNIT_KIND::B : slice_type == sc_typeP ? UNIT_KIND::P : UNIT_KIND::I;
}

} // namespace

void CH265Cutter::OnElement(uint64_t nStart, std::span<const uint8_t> body)
{
    if (body.size() <= sc_nalHeadSize)
        return;
    const uint8_t nType = body[0] >> 1 & 0x3F;
    const int nLayer = (body[0] & 1) << 5 | body[1] >> 3;
    if (nLayer != 0)
        return; // a layer above the base belongs to the unit of its base picture
    if (nType <= LastSlice) {
        OnSlice(nStart, body);
    } else if (IsLeader(nType)) {
        if (m_picture.bSeen)
            CutAt(nStart);
        TakeParameterSet(nType, body);
    }
}

void CH265Cutter::TakeParameterSet(uint8_t nType, std::span<const uint8_t> body)
{
    if (nType == Sps) {
        if (const auto sps = ReadH265Sps(body))
            m_spsById[sps->sps_seq_parameter_set_id] = *sps;
    } else if (nType == Pps) {
        if (const auto pps = ReadH265Pps(body))
            m_ppsById[pps->pps_pic_parameter_set_id] = *pps;
    }
}

void CH265Cutter::OnSlice(uint64_t nStart, std::span<const uint8_t> body)
{
    const uint8_t nType = body[0] >> 1 & 0x3F;
    const bool first_slice_segment_in_pic_flag = (body[sc_nalHeadSize] & 0x80) != 0;
    if (m_picture.bSeen && first_slice_segment_in_pic_flag)
        CutAt(nStart);
    m_picture.bSeen = true;
    m_picture.bKey = IsRandomAccess(nType);
    TakeSliceHead(nType, body);
}

void CH265Cutter::TakeSliceHead(uint8_t nType, std::span<const uint8_t> body)
{
    const auto bytes = UnescapeNal(body, sc_sliceHeadBytes);
    CBitReader bits(bytes);
    bits.Skip(8 * sc_nalHeadSize);
    const bool bFirst = bits.Flag();
    if (IsRandomAccess(nType))
        bits.Skip(1); // no_output_of_prior_pics_flag
    const auto pps = m_ppsById.find(bits.Ue());
    if (pps == m_ppsById.end())
        return;
    const auto sps = m_spsById.find(pps->second.pps_seq_parameter_set_id);
    if (sps == m_spsById.end())
        return;
    m_picture.nWidth = sps->second.nWidth;
    m_picture.nHeight = sps->second.nHeight;
    const bool bDependent = !bFirst && pps->second.dependent_slice_segments_enabled_flag && bits.Flag();
    if (bDependent)
        return; // it has the type of the slice before
    if (!bFirst)
        bits.Skip(sps->second.sliceAddressBits);
    bits.Skip(pps->second.num_extra_slice_header_bits);
    m_picture.eKind = std::max(m_picture.eKind, KindOfSlice(bits.Ue()));
}

} // namespace Marvane::FrameSift
