// Accounts for every byte of a recording.
#ifndef FRAMESIFT_APP_CHECK_FRAMEACCOUNT_H
#define FRAMESIFT_APP_CHECK_FRAMEACCOUNT_H

#include "Check/CheckOptions.h"
#include "Check/ClockWatch.h"
#include "Check/KeyTrial.h"
#include "Check/NumberWatch.h"
#include "Check/PayloadSum.h"
#include "Check/StartWatch.h"

namespace Marvane::FrameSift {

struct UNFINISHED_FRAME
{
    int64_t nOffset = 0;
    uint32_t nAnnounced = 0; // its whole length; 0 if that is cut off too
    bool bOpenEnd = false;   // only a next frame would end it
};

// Takes the parser's records in the order of the stream. What lies between two frames is a stretch: heads that were not
// believed, tails without a head and blocks that were stepped over all go into it.
class CFrameAccount
{
public:
    CFrameAccount(CHECK_REPORT& report, const CHECK_OPTIONS& options);

    // The record of a parser without a key; its pointers are alive. A record that came already is passed over.
    void Take(const FrameInfo& frame, int64_t nOffset);
    // A head that bytes are missing behind. It is the end of the recording, unless a frame follows.
    void TakeWaiting(const UNFINISHED_FRAME& waiting);
    // The last bytes of a recording of one of the older formats, from nOffset on; nBytes above 0. The frame that they are
    // waits for a next one; gsk_endMarkSize of them are no frame, and only end the one in front.
    void TakeOldTail(int64_t nOffset, uint64_t nBytes);
    // All is taken, and the report's nBytes tells the size.
    void Finish();
    int64_t End() const { return m_nEnd; } // of the last frame

private:
    void TakeFrame(const FrameInfo& frame, const FRAME_MARK& mark);
    void TakeNoFrame(const FrameInfo& frame, int64_t nOffset);
    int32_t JudgeCipher(const FrameInfo& frame, const FRAME_MARK& mark);
    void TakeGood(const FrameInfo& frame, const FRAME_MARK& mark);
    void TakeDamaged(const FrameInfo& frame, const FRAME_MARK& mark, int32_t nErrorFlags);
    void CloseStretch(int64_t nEnd, const std::optional<FRAME_MARK>& after);
    void TellUnfinished(const UNFINISHED_FRAME& unfinished);

    CHECK_REPORT& m_report;
    CNumberWatch m_numbers;
    CClockWatch m_clock;
    CStartWatch m_start;
    CPayloadSums m_sums;
    CKeyTrial m_keyTrial;
    int64_t m_nEnd = 0;
    int64_t m_nBlocksEnd = 0;  // of the blocks that stand right behind m_nEnd
    int64_t m_nRecordsEnd = 0; // of all records so far
    std::optional<FRAME_MARK> m_last;
    STRETCH_CONTENTS m_contents;               // since m_nEnd
    std::optional<UNFINISHED_FRAME> m_waiting; // the first one since m_nEnd
    STRETCH_CONTENTS m_beforeWaiting;
};

// Whether a record stands for a block of another kind, stepped over whole.
bool IsBlock(const FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
