#include "Check/StartWatch.h"

namespace Marvane::FrameSift {

void CStartWatch::Follow(const FRAME_MARK& mark)
{
    if (m_bKeySeen || mark.nFrameType != KX_FRAME_TYPE_VIDEO)
        return;
    m_bKeySeen = IsIFrameSubType(mark.nFrameSubType);
    if (m_bKeySeen)
        Tell(mark);
    else if (!m_first)
        m_first = mark;
}

void CStartWatch::Finish()
{
    if (!m_bKeySeen)
        Tell(std::nullopt);
}

void CStartWatch::Tell(const std::optional<FRAME_MARK>& key)
{
    if (m_first)
        m_findings.Add(
            {.eKind = FINDING_KIND::NoKeyFrame, .nOffset = m_first->nOffset, .before = m_first, .after = key});
}

} // namespace Marvane::FrameSift
