#include "Check/CheckReport.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace Marvane::FrameSift {

namespace {

struct FINDING_ROW
{
    FINDING_KIND eKind;
    const char* pName;
    bool bDamage;
};

constexpr std::array<FINDING_ROW, gsk_findingKinds> sc_kinds = {{
    {FINDING_KIND::LostFrames, "lost-frames", true},
    {FINDING_KIND::DamagedFrame, "damaged-frame", true},
    {FINDING_KIND::Stretch, "stretch", true},
    {FINDING_KIND::Unfinished, "unfinished", true},
    // Recordings that were put one behind the other are a recording, so these two are no damage by themselves.
    {FINDING_KIND::SequenceRestart, "sequence-restart", false},
    {FINDING_KIND::OutOfOrder, "out-of-order", false},
    {FINDING_KIND::RepeatedNumber, "repeated-number", false},
    {FINDING_KIND::ClockJump, "clock-jump", false},
    {FINDING_KIND::NoPayloadSum, "no-payload-sum", false},
    {FINDING_KIND::NoKeyFrame, "no-key-frame", false},
    {FINDING_KIND::Blocks, "blocks", false},
}};

constexpr bool RowsStandAtTheirKind()
{
    for (size_t n = 0; n < gsk_findingKinds; ++n) {
        if (sc_kinds[n].eKind != static_cast<FINDING_KIND>(n))
            return false;
    }
    return true;
}
static_assert(RowsStandAtTheirKind());

uint64_t SumOf(const std::map<int32_t, uint64_t>& counts)
{
    return std::accumulate(counts.begin(), counts.end(), uint64_t{0},
                           [](uint64_t nSum, const auto& entry) { return nSum + entry.second; });
}

} // namespace

const char* FindingName(FINDING_KIND eKind)
{
    return sc_kinds[static_cast<size_t>(eKind)].pName;
}

bool IsDamage(FINDING_KIND eKind)
{
    return sc_kinds[static_cast<size_t>(eKind)].bDamage;
}

FINDING FindingBetween(FINDING_KIND eKind, const FRAME_MARK& before, const FRAME_MARK& after)
{
    return {.eKind = eKind, .nOffset = after.nOffset, .before = before, .after = after};
}

void CFindings::Sort()
{
    std::stable_sort(m_listed.begin(), m_listed.end(), [](const FINDING& left, const FINDING& right) {
        return std::tie(left.nOffset, left.eKind) < std::tie(right.nOffset, right.eKind);
    });
}

void CFindings::Add(const FINDING& finding)
{
    if (m_counts[static_cast<size_t>(finding.eKind)]++ < m_nMaxOfKind)
        m_listed.push_back(finding);
}

uint64_t CFindings::LeftOut(FINDING_KIND eKind) const
{
    return Count(eKind) > m_nMaxOfKind ? Count(eKind) - m_nMaxOfKind : 0;
}

bool CFindings::HasDamage() const
{
    for (const FINDING_ROW& row : sc_kinds) {
        if (row.bDamage && Count(row.eKind) > 0)
            return true;
    }
    return false;
}

uint64_t CHECK_REPORT::GoodFrames() const
{
    return SumOf(goodByType);
}

uint64_t CHECK_REPORT::LostFrames() const
{
    return SumOf(lostByType);
}

} // namespace Marvane::FrameSift
