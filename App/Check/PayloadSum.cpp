#include "Check/PayloadSum.h"

#include <cstring>
#include <span>

namespace Marvane::FrameSift {

void CPayloadSums::Follow(const FrameInfo& frame, const FRAME_MARK& mark)
{
    if (frame.framePointer == nullptr || frame.frameLen < gsk_stdFrameHeadSize)
        return;
    STD_FRAME_HEAD head = {};
    std::memcpy(&head, frame.framePointer, sizeof head);
    // Nobody can sum up nothing.
    if (frame.frameLen <= gsk_stdFrameHeadSize + head.nExtFrameLen + gsk_stdFrameTailSize)
        return;
    SHARE& share = m_shares[{mark.nFrameType, mark.nFrameSubType}];
    if (HasSum(frame, head)) {
        ++share.nWith;
        // The parser does not check it for ciphers that it does not know.
        const bool bChecked = frame.nEncryptType == KX_ENCRYPT_UNKOWN || frame.nEncryptType == KX_ENCRYPT_AES;
        m_report.nSummed += bChecked ? 1 : 0;
        return;
    }
    ++share.nWithout;
    if (share.without.size() < m_report.findings.MaxOfKind())
        share.without.push_back(mark);
}

bool CPayloadSums::HasSum(const FrameInfo& frame, const STD_FRAME_HEAD& head)
{
    const std::span<const uint8_t> bytes(frame.framePointer, static_cast<size_t>(frame.frameLen));
    FrameInfo unused = frame;
    ExtZOAVIFrameInfo ext = {};
    m_parser.DoInit(); // drops what it has copied of the frame before
    m_parser.ParseExtHead(bytes.subspan(sizeof head), head.nExtFrameLen, unused, ext);
    return m_parser.GetExtFrameHead().pHead88 != nullptr;
}

void CPayloadSums::Finish()
{
    for (const auto& [kind, share] : m_shares) {
        if (share.nWith <= share.nWithout)
            continue;
        for (const FRAME_MARK& mark : share.without)
            m_report.findings.Add({.eKind = FINDING_KIND::NoPayloadSum, .nOffset = mark.nOffset, .after = mark});
        m_report.findings.AddUnlisted(FINDING_KIND::NoPayloadSum, share.nWithout - share.without.size());
    }
}

} // namespace Marvane::FrameSift
