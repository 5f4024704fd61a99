// The end of a recording, where no more bytes come.
#ifndef FRAMESIFT_APP_CHECK_TAILSCAN_H
#define FRAMESIFT_APP_CHECK_TAILSCAN_H

#include <vector>

#include "Check/FrameAccount.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

namespace Marvane::FrameSift {

// A parser waits behind a head that promises more bytes than have come. If the rest of that frame was cut out of the
// file, intact frames may stand behind the head, and nothing will ever wake the parser: here every magic is judged by
// the same parser's rules, and one that waits is passed by. Each place is judged once, so the work is linear.
class CTailScan
{
public:
    CTailScan();

    // tail: what the stream's parser has not taken; nOffset: where it begins.
    void Scan(std::vector<uint8_t> tail, int64_t nOffset, CFrameAccount& account);

private:
    struct STEP
    {
        FrameInfo frame = {};
        bool bWaits = false;
        size_t nLength = 4; // how far to go from the magic on
    };

    STEP JudgeMagic(CLogicData& window, size_t nPos);
    bool EndsInPadding(const FrameInfo& frame, size_t nPos) const;
    UNFINISHED_FRAME DescribeWaiting(size_t nPos) const;

    CZOAVStream m_parser;
    std::vector<uint8_t> m_tail; // with padding
    size_t m_nSize = 0;          // without
    int64_t m_nOffset = 0;
};

} // namespace Marvane::FrameSift

#endif
