// Sums of payloads: which frames have one.
#ifndef FRAMESIFT_APP_CHECK_PAYLOADSUM_H
#define FRAMESIFT_APP_CHECK_PAYLOADSUM_H

#include <map>
#include <utility>
#include <vector>

#include "Check/CheckReport.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

namespace Marvane::FrameSift {

// The record of a frame does not tell of a sum, so the frame's extension heads are asked again.
class CPayloadSums
{
public:
    explicit CPayloadSums(CHECK_REPORT& report) : m_report(report) {}
    // frame: good, parsed without a key, its pointers alive.
    void Follow(const FrameInfo& frame, const FRAME_MARK& mark);
    // NoPayloadSum for each frame without a sum, where most of its kind have one.
    void Finish();

private:
    using KIND_AND_SUBTYPE = std::pair<int32_t, int32_t>;
    struct SHARE
    {
        uint64_t nWith = 0;
        uint64_t nWithout = 0;
        std::vector<FRAME_MARK> without; // so many as can be listed
    };

    bool HasSum(const FrameInfo& frame, const STD_FRAME_HEAD& head);

    CHECK_REPORT& m_report;
    CZOAVStream m_parser;
    std::map<KIND_AND_SUBTYPE, SHARE> m_shares;
};

} // namespace Marvane::FrameSift

#endif
