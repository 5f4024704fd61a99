// Where a decoder can start.
#ifndef FRAMESIFT_APP_CHECK_STARTWATCH_H
#define FRAMESIFT_APP_CHECK_STARTWATCH_H

#include <optional>

#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

// NoKeyFrame, if the first good video frame is none.
class CStartWatch
{
public:
    explicit CStartWatch(CFindings& findings) : m_findings(findings) {}
    void Follow(const FRAME_MARK& mark); // of a good frame
    void Finish();                       // no frame follows

private:
    void Tell(const std::optional<FRAME_MARK>& key);

    CFindings& m_findings;
    std::optional<FRAME_MARK> m_first;
    bool m_bKeySeen = false;
};

} // namespace Marvane::FrameSift

#endif
