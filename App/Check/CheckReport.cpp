#include "Check/CheckReport.h"

#include <numeric>

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
    {FINDING_KIND::ClockJump, "clock-jump", false},
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

} // namespace

const char* FindingName(FINDING_KIND eKind)
{
    return sc_kinds[static_cast<size_t>(eKind)].pName;
}

bool IsDamage(FINDING_KIND eKind)
{
    return sc_kinds[static_cast<size_t>(eKind)].bDamage;
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

uint64_t CHECK_REPORT::SoundFrames() const
{
    return std::accumulate(soundByType.begin(), soundByType.end(), uint64_t{0},
                           [](uint64_t nSum, const auto& entry) { return nSum + entry.second; });
}

} // namespace Marvane::FrameSift
