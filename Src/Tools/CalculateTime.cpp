#include "Tools/CalculateTime.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Memory/TryAlloc.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/Tools/CalculateTime";

constexpr int sc_none = -1;
constexpr int sc_oneSecond = 1000;
constexpr int sc_jump = 10; // an interval of more than that many times the one before it
// Fewer frames need not be in display order yet.
constexpr size_t sc_mostUnwalked = 2;
constexpr uint32_t sc_mostRate = UINT16_MAX;

// Time stamps are 32 bits of the wire, so that their differences and sums need not fit.
int Saturated(int64_t nValue)
{
    using limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<int64_t>(nValue, limits::min(), limits::max()));
}

// Sequences count on from the largest to the smallest number.
bool IsSuccessor(int nSeq, int nLastSeq)
{
    return static_cast<uint32_t>(nSeq) == static_cast<uint32_t>(nLastSeq) + 1;
}

} // namespace

float CCalculateTime::GetFrameRate(FrameInfo* frame)
{
    constexpr auto fOutOfMemory = static_cast<float>(KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    if (frame == nullptr)
        return m_frame_rate;
    const bool bBFrame = frame->frameSubType == KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
    const bool bForward = frame->timeStamp >= m_preTimeStamp;
    if (m_frame_last_seq == sc_none || !IsSuccessor(frame->frameSeq, m_frame_last_seq) || (!bForward && !bBFrame)) {
        m_frame_count = 0;
        time_diff = 0;
        m_pre_pts = sc_none;
        m_InfoMap.clear();
        return NoteFrame(*frame) ? m_frame_rate : fOutOfMemory;
    }
    if (bForward && !bBFrame && m_InfoMap.size() > sc_mostUnwalked)
        WalkNotedFrames();
    if (!NoteFrame(*frame))
        return fOutOfMemory;
    DealRate(m_nRateValue, m_nRateDenominator);
    frame->rateValue = static_cast<uint16_t>(m_nRateValue);
    frame->rateDenominator = static_cast<uint16_t>(m_nRateDenominator);
    return m_frame_rate;
}

bool CCalculateTime::NoteFrame(const FrameInfo& frame)
{
    const int nTimeStamp = frame.timeStamp;
    const int nSubType = frame.frameSubType;
    if (!TryAlloc([&] { m_InfoMap.insert_or_assign(nTimeStamp, nSubType); }))
        return false;
    m_frame_last_seq = frame.frameSeq;
    m_preTimeStamp = nTimeStamp;
    return true;
}

// In display order, as the map sorts them.
void CCalculateTime::WalkNotedFrames()
{
    for (const auto& [nTimeStamp, nSubType] : m_InfoMap) {
        if (m_pre_pts != sc_none)
            TakeInterval(int64_t{nTimeStamp} - m_pre_pts);
        m_pre_pts = nTimeStamp;
    }
    m_InfoMap.clear();
}

void CCalculateTime::TakeInterval(int64_t nInterval)
{
    const int64_t nLastInterval = m_nPreTimeDiff;
    m_nPreTimeDiff = Saturated(nInterval);
    m_frame_count = Saturated(int64_t{m_frame_count} + 1);
    // A jump counts as a frame, but not as time. Deliberate.
    if (nLastInterval != 0 && nInterval > sc_jump * nLastInterval)
        return;
    time_diff = Saturated(time_diff + nInterval);
    const bool bSecond = time_diff >= sc_oneSecond;
    // Frames that share one time stamp tell no rate.
    if ((bSecond || m_bBeginCal) && time_diff != 0)
        m_frame_rate = static_cast<float>(std::trunc(m_frame_count * 1000.0 / time_diff + 0.5));
    if (bSecond) {
        m_bBeginCal = false;
        m_frame_count = 0;
        time_diff = 0;
    }
}

void CCalculateTime::SeekClear()
{
    m_InfoMap.clear();
    m_frame_count = 0;
    m_last_frame = 0;
    time_diff = 0;
    m_nPreTimeDiff = 0;
    m_frame_alingn = 0;
    m_pre_pts = sc_none;
    m_frame_last_seq = sc_none;
    m_preTimeStamp = sc_none;
    m_bBeginCal = true;
}

bool CCalculateTime::DealRate(uint32_t& rateValue, uint32_t& rateDenominator)
{
    uint32_t nValue = rateValue;
    uint32_t nDenominator = rateDenominator;
    while (nValue > sc_mostRate || nDenominator > sc_mostRate) {
        if (nValue < 10 || nDenominator < 10) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "Rate is Error, rateValue:%u,rateDenominator:%u\n", rateValue,
                         rateDenominator);
            return false;
        }
        nValue /= 10;
        nDenominator /= 10;
    }
    rateValue = nValue;
    rateDenominator = nDenominator;
    return true;
}

} // namespace Marvane::FrameSift
